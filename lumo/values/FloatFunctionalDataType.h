#pragma once

#include "lumo/types/UnitInformation.h"
#include "lumo/values/IDataValue.h"
#include "lumo/values/Parameters.h"

/// What curves share: the unit of the figures and the parameters on which they depend.
class LUMO_API FloatFunctionalDataType : public IDataValue {
 public:
  FloatFunctionalDataType() = default;
  explicit FloatFunctionalDataType(XmlNode<char> const* node);

  /// Never null after construction.
  SmartPtr<UnitInformation> GetUnit() const { return m_unit; }
  void SetUnit(SmartPtr<UnitInformation> const& unit) { m_unit = unit; }
  /// Never null after construction.
  SmartPtr<Parameters> GetParameters() const { return m_parameters; }
  void SetParameters(SmartPtr<Parameters> const& parameters) { m_parameters = parameters; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  SmartPtr<UnitInformation> m_unit = UnitInformation::CreateOne();
  SmartPtr<Parameters> m_parameters = Parameters::CreateOne();
};

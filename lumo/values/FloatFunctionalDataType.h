#pragma once

#include "lumo/platform/core/LazyPart.h"
#include "lumo/types/UnitInformation.h"
#include "lumo/values/IDataValue.h"
#include "lumo/values/Parameters.h"

/// What curves share: the unit of the figures and the parameters on which they depend.
class LUMO_API FloatFunctionalDataType : public IDataValue {
 public:
  FloatFunctionalDataType() = default;
  explicit FloatFunctionalDataType(XmlNode<char> const* node);

  /// Never null after construction.
  SmartPtr<UnitInformation> GetUnit() const { return m_unit.Get(); }
  void SetUnit(SmartPtr<UnitInformation> const& unit) { m_unit = unit; }
  /// Never null after construction.
  SmartPtr<Parameters> GetParameters() const { return m_parameters.Get(); }
  void SetParameters(SmartPtr<Parameters> const& parameters) { m_parameters = parameters; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  lumo::LazyPart<UnitInformation> m_unit;
  lumo::LazyPart<Parameters> m_parameters;
};

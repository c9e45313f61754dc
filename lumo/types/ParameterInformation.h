#pragma once

#include <string>

#include "lumo/platform/core/LazyPart.h"
#include "lumo/types/ParameterReference.h"
#include "lumo/types/UnitInformation.h"

/// A parameter with its name and unit.
class LUMO_API ParameterInformation : public lumo::FromXml<ParameterInformation> {
 public:
  ParameterInformation() = default;
  explicit ParameterInformation(XmlNode<char> const* node);

  /// Name of the parameter.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// Never null after construction; empty for a parameter without a unit.
  SmartPtr<UnitInformation> GetUnit() const { return m_unit.Get(); }
  void SetUnit(SmartPtr<UnitInformation> const& unit) { m_unit = unit; }
  /// Null when the reply did not say which parameter it is; not sent then.
  SmartPtr<ParameterReference> GetParameterReference() const { return m_parameterReference; }
  void SetParameterReference(SmartPtr<ParameterReference> const& parameter) {
    m_parameterReference = parameter;
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<ParameterReference> m_parameterReference;
  std::string m_name;
  lumo::LazyPart<UnitInformation> m_unit;
};

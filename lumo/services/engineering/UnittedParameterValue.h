#pragma once

#include <string>

#include "lumo/values/ParameterReferenceAndValue.h"

/// A parameter, its value and the unit of the value, for an exporter. Copied, not shared.
class LUMO_API UnittedParameterValue {
 public:
  /// Null leaves the element empty, unit included.
  SmartPtr<ParameterReferenceAndValue> GetParameterValue() const { return m_parameterValue; }
  void SetParameterValue(SmartPtr<ParameterReferenceAndValue> const& value) {
    m_parameterValue = value;
  }
  /// Not sent when empty.
  std::string const& GetUnitSymbol() const { return m_unitSymbol; }
  void SetUnitSymbol(std::string const& symbol) { m_unitSymbol = symbol; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<ParameterReferenceAndValue> m_parameterValue;
  std::string m_unitSymbol;
};

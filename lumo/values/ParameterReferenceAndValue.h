#pragma once

#include <vector>

#include "lumo/platform/core/LazyPart.h"
#include "lumo/types/ParameterReference.h"
#include "lumo/values/ParameterValue.h"

/// A parameter and the value it takes.
class LUMO_API ParameterReferenceAndValue : public lumo::FromXml<ParameterReferenceAndValue> {
 public:
  ParameterReferenceAndValue() = default;
  explicit ParameterReferenceAndValue(XmlNode<char> const* node);

  /// Never null after construction.
  SmartPtr<ParameterReference> GetParameter() const { return m_parameter.Get(); }
  void SetParameter(SmartPtr<ParameterReference> const& parameter) { m_parameter = parameter; }
  /// Never null after construction.
  SmartPtr<ParameterValue> GetParameterValue() const { return m_parameterValue.Get(); }
  void SetParameterValue(SmartPtr<ParameterValue> const& value) { m_parameterValue = value; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  lumo::LazyPart<ParameterReference> m_parameter;
  lumo::LazyPart<ParameterValue> m_parameterValue;
};

/// The parameter values under which a figure holds.
class LUMO_API ParameterReferencesAndValues : public lumo::FromXml<ParameterReferencesAndValues> {
 public:
  ParameterReferencesAndValues() = default;
  explicit ParameterReferencesAndValues(XmlNode<char> const* node);

  std::vector<SmartPtr<ParameterReferenceAndValue>>& AccessParameterWithValue() {
    return m_parametersWithValues;
  }
  std::vector<SmartPtr<ParameterReferenceAndValue>> const& AccessParameterWithValue() const {
    return m_parametersWithValues;
  }
  void AddParameterWithValue(SmartPtr<ParameterReferenceAndValue> const& parameter) {
    m_parametersWithValues.push_back(parameter);
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::vector<SmartPtr<ParameterReferenceAndValue>> m_parametersWithValues;
};

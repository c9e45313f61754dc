#pragma once

#include <string>
#include <vector>

#include "lumo/values/ParameterValue.h"
#include "lumo/xml/FromXml.h"

/// The values that a parameter of a curve may take.
class LUMO_API ParameterDomain : public lumo::FromXml<ParameterDomain> {
 public:
  ParameterDomain() = default;
  explicit ParameterDomain(XmlNode<char> const* node);

  /// Empty unless the server puts a blank before the attribute's name.
  std::string const& GetExporterParameterId() const { return m_exporterParameterId; }
  void SetExporterParameterId(std::string const& exporterParameterId) {
    m_exporterParameterId = exporterParameterId;
  }
  /// Whether values between the given ones may be asked for.
  bool GetInterpolable() const { return m_interpolable; }
  void SetInterpolable(bool interpolable) { m_interpolable = interpolable; }
  std::vector<SmartPtr<ParameterValue>>& AccessValues() { return m_values; }
  std::vector<SmartPtr<ParameterValue>> const& AccessValues() const { return m_values; }
  void AddValue(SmartPtr<ParameterValue> const& value) { m_values.push_back(value); }

 private:
  std::string m_exporterParameterId;
  bool m_interpolable = false;
  std::vector<SmartPtr<ParameterValue>> m_values;
};

/// The domains of the parameters of one curve.
class LUMO_API GraphDomain : public lumo::FromXml<GraphDomain> {
 public:
  GraphDomain() = default;
  explicit GraphDomain(XmlNode<char> const* node);

  std::vector<SmartPtr<ParameterDomain>>& AccessParameterDomains() { return m_parameterDomains; }
  std::vector<SmartPtr<ParameterDomain>> const& AccessParameterDomains() const {
    return m_parameterDomains;
  }
  void AddParameterDomain(SmartPtr<ParameterDomain> const& domain) {
    m_parameterDomains.push_back(domain);
  }

 private:
  std::vector<SmartPtr<ParameterDomain>> m_parameterDomains;
};

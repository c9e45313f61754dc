#pragma once

#include <string>
#include <vector>

#include "lumo/services/engineering/ExporterParameter.h"
#include "lumo/services/engineering/GraphDomain.h"
#include "lumo/types/NamedAttribute.h"

/// What an exporter needs of one attribute, and whether a record has it.
class LUMO_API AttributeExporterParameters : public lumo::FromXml<AttributeExporterParameters> {
 public:
  /// Whether a record has the data that an exporter needs.
  enum eDataPresence : int {
    Unknown = 0,
    Present = 1,
    NotApplicable = 2,
    Missing = 3,
    DataIncompatibleWithConfiguration = 4,
  };
  /// `Unknown` for an unknown word.
  static eDataPresence DataPresence_FromString(std::string const& text);

  AttributeExporterParameters() = default;
  explicit AttributeExporterParameters(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<NamedAttribute> GetAttribute() const { return m_attribute; }
  void SetAttribute(SmartPtr<NamedAttribute> const& attribute) { m_attribute = attribute; }
  /// Whether the record has the data of the attribute.
  eDataPresence GetDataPresence() const { return m_dataPresence; }
  void SetDataPresence(eDataPresence dataPresence) { m_dataPresence = dataPresence; }
  std::vector<SmartPtr<ExporterParameter>>& AccessParameters() { return m_parameters; }
  std::vector<SmartPtr<ExporterParameter>> const& AccessParameters() const { return m_parameters; }
  void AddParameter(SmartPtr<ExporterParameter> const& parameter) {
    m_parameters.push_back(parameter);
  }
  /// Where the curves of the attribute are defined.
  std::vector<SmartPtr<GraphDomain>>& AccessGraphDomains() { return m_graphDomains; }
  std::vector<SmartPtr<GraphDomain>> const& AccessGraphDomains() const { return m_graphDomains; }
  void AddGraphDomain(SmartPtr<GraphDomain> const& domain) { m_graphDomains.push_back(domain); }

 private:
  SmartPtr<NamedAttribute> m_attribute;
  eDataPresence m_dataPresence = Unknown;
  std::vector<SmartPtr<ExporterParameter>> m_parameters;
  std::vector<SmartPtr<GraphDomain>> m_graphDomains;
};

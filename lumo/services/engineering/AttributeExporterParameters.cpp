#include "lumo/services/engineering/AttributeExporterParameters.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<AttributeExporterParameters::eDataPresence> kWords[] = {
    {AttributeExporterParameters::Present, "Present"},
    {AttributeExporterParameters::NotApplicable, "NotApplicable"},
    {AttributeExporterParameters::Missing, "Missing"},
    {AttributeExporterParameters::DataIncompatibleWithConfiguration,
     "DataIncompatibleWithConfiguration"},
};

}  // namespace

AttributeExporterParameters::eDataPresence AttributeExporterParameters::DataPresence_FromString(
    std::string const& text) {
  return lumo::ValueOf(kWords, text, Unknown);
}

AttributeExporterParameters::AttributeExporterParameters(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("Attribute", m_attribute);
  in.Attribute("data", m_dataPresence, DataPresence_FromString);
  in.In("Parameters").Children("Parameter", m_parameters);
  in.In("GraphDomains").Children("GraphDomain", m_graphDomains);
}

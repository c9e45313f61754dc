#include "lumo/services/engineering/Exporter.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<ExporterPopulation::ePopulationState> kStateWords[] = {
    {ExporterPopulation::FullyPopulated, "FullyPopulated"},
    {ExporterPopulation::PartiallyPopulated, "PartiallyPopulated"},
};

}  // namespace

ExporterTransform::ExporterTransform(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Attribute("id", m_id);
}

Exporter::Exporter(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("key", m_key);
  in.Child("package", m_package);
  in.Child("model", m_model);
  in.Child("description", m_description);
  in.In("transforms").Children("transform", m_transforms);
  in.Attribute("name", m_name);
  in.Attribute("version", m_version);
  in.Attribute("validatedOK", m_validatedOK);
}

ExporterPopulation::ExporterPopulation(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Child("populationState", m_populationState,
           [](std::string_view text) { return lumo::ValueOf(kStateWords, text, Unknown); });
}

ExportersForRecord::ExportersForRecord(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("record", m_record);
  in.In("exporters").Children("exporter", m_exporters);
}

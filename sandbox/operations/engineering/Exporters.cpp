#include "sandbox/operations/engineering/Exporters.h"

#include <algorithm>

#include "sandbox/Fault.h"
#include "sandbox/model/Tables.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

std::vector<Exporter> const& Exporters() {
  static std::vector<Exporter> const kExporters = {
      {"table-1", "Tab-separated table", 1, "Spreadsheet", "Table",
       "One line per record, one column per attribute", "table", Format::Table},
      {"card-1", "Elastic-plastic card", 1, "Solver", "Elastic-plastic",
       "Material card for a solver, superseded by version 2", "card", Format::Card},
      {"card-2", "Elastic-plastic card", 2, "Solver", "Elastic-plastic",
       "Material card for a solver; yield strength at a temperature when one is given", "card",
       Format::Card},
  };
  return kExporters;
}

Exporter const& FindExporter(std::string const& key) {
  for (Exporter const& exporter : Exporters()) {
    if (exporter.key == key) return exporter;
  }
  throw Fault("there is no exporter with the key \"" + key + "\"");
}

void WriteExporter(pugi::xml_node node, Exporter const& exporter) {
  node.append_attribute("name") = exporter.name;
  node.append_attribute("version") = exporter.version;
  node.append_attribute("validatedOK") = "true";
  AddText(node, "key", exporter.key);
  AddText(node, "package", exporter.package);
  AddText(node, "model", exporter.model);
  AddText(node, "description", exporter.description);
  pugi::xml_node transforms = node.append_child("transforms");
  for (char const* const id : kTransforms) {
    transforms.append_child("transform").append_attribute("id") = id;
  }
}

void Wanted::ReadPackageAndModel(Checker& in) {
  if (auto const node = in.Optional("eng:package")) package = FilledTextOf(node);
  if (auto const node = in.Optional("eng:model")) model = FilledTextOf(node);
}

void Wanted::ReadPolicyAndTag(Checker& in) {
  if (auto const node = in.Optional("eng:versionPolicy")) {
    std::string const policy = TextOf(node);
    if (policy != "IncludeAll" && policy != "LatestVersionPerName") {
      throw Fault("<eng:versionPolicy> does not know the word \"" + policy + "\"");
    }
    latestOnly = policy == "LatestVersionPerName";
  }
  if (auto const node = in.Optional("eng:applicabilityTag")) tag = FilledTextOf(node);
}

bool Wanted::Holds(Exporter const& exporter) const {
  bool const isLatest =
      std::none_of(Exporters().begin(), Exporters().end(), [&exporter](Exporter const& other) {
        return std::string(other.name) == exporter.name && other.version > exporter.version;
      });
  return (package.empty() || package == exporter.package) &&
         (model.empty() || model == exporter.model) && (tag.empty() || tag == exporter.tag) &&
         (isLatest || !latestOnly);
}

bool IsMaterial(Store& store, int tableId) { return TableOf(store, tableId).name == "Materials"; }

}  // namespace sandbox

#include <algorithm>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/engineering/Exporters.h"
#include "sandbox/operations/engineering/Figures.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

void ExportersForRecords(Store& store, Checker& request, pugi::xml_node response) {
  Wanted wanted;
  bool const needsBoth = BooleanOf(request.Required("eng:packageAndModelRequired"));
  bool const singleOnly = BooleanOf(request.Required("eng:specificAttributeExportersOnly"));
  wanted.ReadPackageAndModel(request);
  if (needsBoth && (wanted.package.empty() || wanted.model.empty())) {
    throw Fault("package and model are required");
  }
  wanted.ReadPolicyAndTag(request);
  auto const records = ReadRecords(store, request.Required("zbt:recordReferences"));
  request.End();
  pugi::xml_node list = response.append_child("records");
  for (Record const& record : records) {
    pugi::xml_node node = list.append_child("record");
    WriteRecord(node.append_child("record"), record);
    pugi::xml_node exporters = node.append_child("exporters");
    if (singleOnly || !IsMaterial(store, record.tableId)) continue;
    std::vector<Figure> const figures = NeededFigures(store, record);
    auto const missing = std::count_if(figures.begin(), figures.end(),
                                       [](Figure const& figure) { return !figure.value; });
    for (Exporter const& exporter : Exporters()) {
      if (!wanted.Holds(exporter)) continue;
      pugi::xml_node element = exporters.append_child("exporter");
      WriteExporter(element, exporter);
      AddText(element, "populationState", missing == 0 ? "FullyPopulated" : "PartiallyPopulated");
    }
  }
}

}  // namespace sandbox

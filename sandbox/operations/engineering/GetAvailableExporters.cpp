#include <string>

#include "sandbox/model/Tables.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/engineering/Exporters.h"

namespace sandbox {

void GetAvailableExporters(Store& store, Checker& request, pugi::xml_node response) {
  Wanted wanted;
  wanted.ReadPackageAndModel(request);
  std::string dbKey;
  if (auto const node = request.Optional("eng:dbKey")) dbKey = KnownKey(store, node);
  bool isForMaterials = dbKey.empty() || dbKey == "ENG_MATERIALS";
  if (request.IsNext("eng:table")) {
    Checker table(request.RequiredWithAnyOf("eng:table", {"eng:matchDatabase"}));
    TableName name = ReadTableIdentifiers(table);
    table.End();
    name.dbKey = dbKey.empty() ? "ENG_MATERIALS" : dbKey;
    isForMaterials = FindTable(store, name).name == "Materials";
  }
  wanted.ReadPolicyAndTag(request);
  request.End();
  for (Exporter const& exporter : Exporters()) {
    if (isForMaterials && wanted.Holds(exporter)) {
      WriteExporter(response.append_child("exporter"), exporter);
    }
  }
}

}  // namespace sandbox

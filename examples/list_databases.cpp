// Lists the databases of a server, then their tables and the subsets of these.
//
//     list-databases http://server/service_layer [user password]

#include <iomanip>
#include <iostream>
#include <string>

#include "Common.h"

namespace {

void Row(std::string const& first, std::string const& second, std::string const& third) {
  std::cout << std::left << std::setw(28) << first << std::setw(28) << second << third << '\n';
}

bool ListSubsets(BrowseService& browse, SmartPtr<TableReference> const& table) {
  auto const request = GetSubsets::CreateOne();
  request->SetTable(table);
  GetSubsetsResponse response;
  browse.GetGetSubsetsImpl()->GetSubsets(request, &response);
  if (!Succeeded(response)) return false;
  for (auto const& subset : response.AccessSubsetDetails()) {
    auto const reference = subset->GetSubset();
    Row("    " + subset->GetName(), "subset",
        reference ? "identity " + std::to_string(reference->GetSubsetIdentity()) : "");
  }
  return true;
}

bool ListTables(BrowseService& browse, std::string const& dbKey) {
  auto const request = GetTables::CreateOne();
  request->SetDBKey(dbKey);
  GetTablesResponse response;
  browse.GetGetTablesImpl()->RequestTables(request, &response);
  if (!Succeeded(response)) return false;
  for (auto const& table : response.AccessTableDetails()) {
    auto const reference = table->GetTableReference();
    if (!reference) continue;
    Row("  " + reference->GetTableName(), "table",
        std::to_string(table->AccessAttributeReferences().size()) + " attributes");
    if (!ListSubsets(browse, reference)) return false;
  }
  return true;
}

bool ListDatabases(BrowseService& browse) {
  GetDatabasesResponse response;
  browse.GetGetDatabaseImpl()->GetDatabases(&response);
  if (!Succeeded(response)) return false;
  for (auto const& database : response.AccessDatabases()) {
    Row(database->GetName(), "database", "key " + database->GetDBKey());
    if (!ListTables(browse, database->GetDBKey())) return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2 && argc != 4) {
    std::cerr << "usage: list-databases URL [USER PASSWORD]\n";
    return 2;
  }
  return RunExample(argv[1], argc == 4 ? argv[2] : "", argc == 4 ? argv[3] : "",
                    [](LumoServiceLayerServices& services) {
                      return ListDatabases(*services.GetBrowseService());
                    });
}

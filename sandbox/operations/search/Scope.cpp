#include "sandbox/operations/search/Scope.h"

#include <algorithm>

#include "sandbox/Fault.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

bool IsInTables(Store& store, Record const& record, Scope const& scope,
                std::vector<Table> const& tables) {
  bool const isWanted =
      tables.empty() || std::any_of(tables.begin(), tables.end(),
                                    [&](Table const& table) { return table.id == record.tableId; });
  if (!isWanted || scope.tableFilter == "NoFilter") return isWanted;
  return !store
              .Rows("SELECT 1 FROM table_filter WHERE table_id = ? AND word = ?",
                    {Id(record.tableId), scope.tableFilter})
              .empty();
}

}  // namespace

void ReadMode(Checker& request) {
  auto const node = request.Optional("sear:searchMode");
  if (!node) return;
  std::string const mode = TextOf(node);
  if (mode != "Normal" && mode != "ReadOnly") {
    throw Fault("<sear:searchMode> does not know the word \"" + mode + "\"");
  }
}

std::string Pattern(std::string const& text) {
  std::string pattern = "%";
  for (char const c : text) {
    if (c == '%' || c == '_' || c == '\\') pattern += '\\';
    pattern += c;
  }
  return pattern + "%";
}

void WriteResults(Store& store, pugi::xml_node response, std::vector<Record> const& records,
                  Scope const& scope, std::vector<Table> const& tables) {
  for (Record const& record : records) {
    if (record.isFolder || !Passes(store, record, scope.subsets)) continue;
    if (!IsInTables(store, record, scope, tables)) continue;
    pugi::xml_node result = response.append_child("resultRecords");
    result.append_attribute("color") = record.color.c_str();
    result.append_attribute("type") = "Record";
    WriteNamedRecord(result, record, scope.withGuids);
    AddText(result, "b:ranking", "1");
  }
}

}  // namespace sandbox

#include <algorithm>
#include <string>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/search/Scope.h"

namespace sandbox {

void SimpleTextSearch(Store& store, Checker& request, pugi::xml_node response) {
  Scope scope;
  scope.dbKey = KnownKey(store, request.Required("sear:dbKey"));
  std::string const text = TextOf(request.Required("sear:searchValue"));
  scope.tableFilter = TextOf(request.Required("sear:searchFilter"));
  ReadMode(request);
  scope.withGuids = BooleanOf(request.Required("sear:populateGUIDs"));
  scope.subsets = ReadFilter(store, request.Optional("sear:recordFilter"));
  std::vector<Table> tables;
  if (auto const node = request.Optional("sear:restrictToTables")) {
    Checker in(node);
    do {
      Checker table(in.Required("sear:table"));
      TableName name = ReadTableIdentifiers(table);
      table.End();
      name.dbKey = scope.dbKey;
      tables.push_back(FindTable(store, name));
    } while (in.HasMore());
  }
  request.End();
  // Every word must stand somewhere in the record's names or values.
  std::string condition = "d.key = ? AND r.is_current = 1";
  std::vector<std::string> values = {scope.dbKey};
  std::size_t words = 0;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t const end = std::min(text.find(' ', at), text.size());
    if (end > at) {
      std::string const pattern = Pattern(text.substr(at, end - at));
      condition +=
          " AND (r.short_name LIKE ? ESCAPE '\\' OR r.long_name LIKE ? ESCAPE '\\' OR EXISTS"
          " (SELECT 1 FROM attribute_value v WHERE v.record_id = r.id AND v.text LIKE ?"
          " ESCAPE '\\'))";
      values.insert(values.end(), {pattern, pattern, pattern});
      ++words;
    }
    at = end + 1;
  }
  if (words == 0) throw Fault("<sear:searchValue> holds no word to search for");
  WriteResults(store, response, Records(store, condition + " ORDER BY r.id", values), scope,
               tables);
}

}  // namespace sandbox

#include <string>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/search/Scope.h"

namespace sandbox {

void RecordNameSearch(Store& store, Checker& request, pugi::xml_node response) {
  Table const table = ReadTable(store, request.Required("sear:table"));
  std::string const name = TextOf(request.Required("sear:recordName"));
  Scope scope;
  scope.tableFilter = "NoFilter";
  scope.subsets = ReadFilter(store, request.Optional("sear:recordFilter"));
  auto const options =
      request.Required("sear:options", {"sear:populateGUIDs", "sear:searchFullNames",
                                        "sear:searchShortNames", "sear:caseSensitive"});
  request.End();
  auto const flag = [&options](char const* attribute) {
    std::string const text = options.attribute(attribute).value();
    if (text != "0" && text != "1") throw Fault(std::string(attribute) + " must be 0 or 1");
    return text == "1";
  };
  scope.withGuids = flag("sear:populateGUIDs");
  std::string const collation = flag("sear:caseSensitive") ? "" : " COLLATE NOCASE";
  std::string condition = "r.table_id = ? AND r.is_current = 1 AND (0";
  std::vector<std::string> values = {Id(table.id)};
  if (flag("sear:searchFullNames")) {
    condition += " OR r.long_name = ?" + collation;
    values.push_back(name);
  }
  if (flag("sear:searchShortNames")) {
    condition += " OR r.short_name = ?" + collation;
    values.push_back(name);
  }
  WriteResults(store, response, Records(store, condition + ") ORDER BY r.id", values), scope);
}

}  // namespace sandbox

#include "sandbox/model/Tables.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/browse/TreeRecords.h"

namespace sandbox {

void GetRootNode(Store& store, Checker& request, pugi::xml_node response) {
  Table const table = ReadTable(store, request.Required("brow:table"));
  request.End();
  auto const roots =
      Records(store, "r.table_id = ? AND r.parent_id IS NULL", {std::to_string(table.id)});
  WriteTreeRecord(store, response.append_child("rootNode"), roots.at(0), 1, {});
}

}  // namespace sandbox

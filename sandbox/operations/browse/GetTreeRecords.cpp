#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/browse/TreeRecords.h"

namespace sandbox {

void GetTreeRecords(Store& store, Checker& request, pugi::xml_node response) {
  std::vector<Record> const wanted = ReadRecords(store, request.Required("zbt:recordReferences"));
  request.End();
  pugi::xml_node records = response.append_child("treeRecords");
  for (Record const& record : wanted) {
    WriteTreeRecord(store, records.append_child("b:treeRecord"), record, 0, {});
  }
}

}  // namespace sandbox

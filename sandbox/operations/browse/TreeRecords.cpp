#include "sandbox/operations/browse/TreeRecords.h"

#include <utility>

#include "sandbox/wire/Soap.h"

namespace sandbox {

std::vector<Record> ChildrenOf(Store& store, Record const& parent, Filter const& filter) {
  std::vector<Record> children =
      Records(store, "r.parent_id = ? AND r.is_current = 1 ORDER BY r.is_folder DESC, r.id",
              {std::to_string(parent.id)});
  std::vector<Record> passing;
  for (Record& child : children) {
    if (Passes(store, child, filter)) passing.push_back(std::move(child));
  }
  return passing;
}

void WriteTreeRecord(Store& store, pugi::xml_node node, Record const& record, int depth,
                     Listing const& listing) {
  node.append_attribute("color") = record.color.c_str();
  node.append_attribute("type") = record.isFolder ? "Folder" : "Record";
  WriteNamedRecord(node, record, listing.withGuids);
  pugi::xml_node children = node.append_child("b:children");
  if (depth > 0) {
    for (Record const& child : ChildrenOf(store, record, listing.filter)) {
      WriteTreeRecord(store, children.append_child("b:treeRecord"), child, depth - 1, listing);
    }
  }
  if (record.parentId == 0) return;
  Record const parent = Records(store, "r.id = ?", {std::to_string(record.parentId)}).at(0);
  AddText(node, "b:parentRecordHistoryIdentity", std::to_string(parent.historyId));
}

}  // namespace sandbox

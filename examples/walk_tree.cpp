// Prints the record tree of a table.
//
//     walk-tree DATABASE TABLE http://server/service_layer

#include <iostream>
#include <string>

#include "Common.h"

namespace {

void PrintRecord(TreeRecord const& record, int depth) {
  std::cout << std::string(static_cast<std::size_t>(depth) * 2, ' ') << record.GetShortName();
  if (record.GetLongName() != record.GetShortName())
    std::cout << "  (" << record.GetLongName() << ')';
  std::cout << '\n';
  for (auto const& child : record.AccessChildren()) PrintRecord(*child, depth + 1);
}

bool PrintTree(BrowseService& browse, SmartPtr<TableReference> const& table) {
  auto const top = GetRootNode::CreateOne();
  top->SetTable(table);
  GetRootNodeResponse root;
  browse.GetGetRootNodeImpl()->RequestRootNode(top, &root);
  if (!Succeeded(root) || !root.GetRootNode()) return false;
  std::cout << root.GetRootNode()->GetShortName() << '\n';

  auto const below = GetChildNodes::CreateOne();
  below->SetParent(root.GetRootNode()->GetRecordReference());
  below->SetRecurse(true);  // the whole tree in one call
  GetChildNodesResponse children;
  browse.GetGetChildNodesImpl()->RequestChildNodes(below, &children);
  if (!Succeeded(children)) return false;
  for (auto const& child : children.AccessTreeRecords()) PrintRecord(*child, 1);
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: walk-tree DATABASE TABLE URL\n";
    return 2;
  }
  return RunExample(argv[3], "", "", [&](LumoServiceLayerServices& services) {
    return PrintTree(*services.GetBrowseService(), TableNamed(argv[1], argv[2]));
  });
}

#include "tests/sandbox/Sandbox.h"

std::string serverUrl;

namespace {

SmartPtr<RecordReference> Find(std::vector<SmartPtr<TreeRecord>> const& records,
                               std::string const& name) {
  for (auto const& record : records) {
    if (record->GetShortName() == name) return record->GetRecordReference();
    if (auto found = Find(record->AccessChildren(), name)) return found;
  }
  return nullptr;
}

}  // namespace

SmartPtr<RecordReference> RecordNamed(std::string const& name, std::string const& table) {
  auto const top = GetRootNode::CreateOne();
  top->SetTable(TableNamed(table));
  GetRootNodeResponse root;
  Browse()->GetGetRootNodeImpl()->RequestRootNode(top, &root);
  if (!IsFine(root)) return nullptr;
  auto const below = GetChildNodes::CreateOne();
  below->SetParent(root.GetRootNode()->GetRecordReference());
  below->SetRecurse(true);
  GetChildNodesResponse children;
  Browse()->GetGetChildNodesImpl()->RequestChildNodes(below, &children);
  return Find(children.AccessTreeRecords(), name);
}

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  if (argc < 2) return 2;
  serverUrl = argv[argc - 1];
  kpxtkLumoServiceLayer::Initialize();
  int const result = RUN_ALL_TESTS();
  kpxtkLumoServiceLayer::Shutdown();
  return result;
}

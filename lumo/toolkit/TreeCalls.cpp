#include "lumo/toolkit/TreeCalls.h"

#include "lumo/toolkit/Text.h"

namespace lumo {

RecordId IdOf(NamedRecord const& record, std::string const& dbKey) {
  auto const reference = record.GetRecordReference();
  if (!reference) return {dbKey, 0, ""};
  return {dbKey, reference->GetIdentity(), reference->GetRecordGUID()};
}

RecordHead HeadOf(NamedRecord const& record, std::string const& dbKey) {
  return {IdOf(record, dbKey), record.GetShortName(), record.GetLongName(), ""};
}

bool IsFolder(TreeRecord const& record) {
  return record.GetHasChildren() || EqualIgnoringCase(record.GetType(), "Folder");
}

std::vector<SmartPtr<TreeRecord>> TreeRecordsOf(
    Connection& connection, std::vector<SmartPtr<RecordReference>> const& records) {
  auto const request = GetTreeRecordsRequest::CreateOne();
  for (auto const& record : records) request->AddRecord(record);
  auto const found = connection.Ask<GetTreeRecordsResponse>([&](auto* into) {
    connection.Browse()->GetGetTreeRecordsImpl()->RequestTreeNodes(request, into);
  });
  std::vector<SmartPtr<TreeRecord>> there;
  for (auto const& record : found->AccessTreeRecords()) {
    if (record && record->GetRecordReference()) there.push_back(record);
  }
  return there;
}

std::vector<SmartPtr<TreeRecord>> ChildrenOf(Connection& connection, RecordId const& parent,
                                             SmartPtr<RecordFilter> const& filter) {
  auto const request = GetChildNodes::CreateOne();
  request->SetParent(ReferenceTo(parent));
  request->SetRecordFilter(filter);
  auto const found = connection.Ask<GetChildNodesResponse>([&](auto* into) {
    connection.Browse()->GetGetChildNodesImpl()->RequestChildNodes(request, into);
  });
  std::vector<SmartPtr<TreeRecord>> children;
  for (auto const& child : found->AccessTreeRecords()) {
    if (child && child->GetRecordReference()) children.push_back(child);
  }
  return children;
}

}  // namespace lumo

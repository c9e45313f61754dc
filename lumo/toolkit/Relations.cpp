#include "lumo/toolkit/Relations.h"

#include <algorithm>
#include <set>
#include <utility>

#include "lumo/toolkit/Client.h"
#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/OpenedTable.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

bool IsTable(SmartPtr<TableReference> const& reference, TableInfo const& table) {
  return reference && reference->GetTableName() == table.Name() &&
         (reference->GetDBKey().empty() || reference->GetDBKey() == table.DatabaseKey());
}

LinkGroup GroupOf(std::string const& name, std::string const& type,
                  SmartPtr<RecordLinkGroupReference> const& reference,
                  SmartPtr<TableReference> const& to, std::string const& dbKey) {
  LinkGroup group{name, reference, dbKey, "", ""};
  if (to && !to->GetDBKey().empty()) group.database = to->GetDBKey();
  if (to) group.table = to->GetTableName();
  if (EqualIgnoringCase(type, "dynamic")) {
    group.fault = "these links follow from values of the records, and cannot be changed";
  } else if (group.database != dbKey) {
    group.fault = "these links lead into another database, and are not imported";
  } else if (group.table.empty() || !reference) {
    group.fault = "the server does not say into which table these links lead";
  }
  return group;
}

/// Those of the records that are called just so.
std::vector<RecordHead> Named(Connection& connection, TableInfo const& table,
                              std::string const& name) {
  std::vector<RecordHead> found = FindByName(connection, table, name, "");
  found.erase(std::remove_if(found.begin(), found.end(),
                             [&](RecordHead const& head) { return head.name != name; }),
              found.end());
  FolderPaths().Fill(connection, found);
  return found;
}

std::vector<RecordHead> In(std::string const& folder, std::vector<RecordHead> const& records) {
  std::vector<RecordHead> there;
  for (RecordHead const& head : records) {
    if (head.folder == folder) there.push_back(head);
  }
  return there;
}

}  // namespace

std::vector<LinkGroup> LinkGroupsOf(Connection& connection, TableInfo const& table) {
  auto const request = GetRecordLinkGroups::CreateOne();
  request->SetDBKey(table.DatabaseKey());
  auto const found = connection.Ask<GetRecordLinkGroupsResponse>([&](auto* into) {
    connection.Browse()->GetGetRecordLinkGroupsImpl()->GetRecordLinkGroups(request, into);
  });
  std::vector<LinkGroup> groups;
  for (auto const& one : found->AccessRecordLinkGroupDetails()) {
    if (!one) continue;
    std::string const& key = table.DatabaseKey();
    std::string const& type = one->GetLinkGroupType();
    if (IsTable(one->GetFromTable(), table)) {
      groups.push_back(
          GroupOf(one->GetName(), type, one->GetRecordLinkGroup(), one->GetToTable(), key));
    }
    if (IsTable(one->GetToTable(), table)) {
      groups.push_back(GroupOf(one->GetReverseName(), type, one->GetReverseRecordLinkGroup(),
                               one->GetFromTable(), key));
    }
  }
  return groups;
}

std::map<int, std::vector<LinkedRecords::Group>> LinkedRecordsOf(
    Connection& connection, std::vector<RecordHead> const& records,
    std::vector<SmartPtr<RecordLinkGroupReference>> const& groups) {
  auto const request = GetLinkedRecordsRequest::CreateOne();
  for (RecordHead const& head : records) request->AddRecordReference(ReferenceTo(head.id));
  request->SetRecordLinkGroups(groups);
  auto const found = connection.Ask<GetLinkedRecordsResponse>([&](auto* into) {
    connection.Browse()->GetGetLinkedRecordsImpl()->GetLinkedRecords(request, into);
  });
  std::map<int, std::vector<LinkedRecords::Group>> all;
  for (auto const& one : found->AccessSourceRecords()) {
    if (!one || !one->GetRecord()) continue;
    auto& links = all[one->GetRecord()->GetIdentity()];
    for (auto const& group : one->AccessRecordLinkGroups()) {
      if (!group) continue;
      links.push_back({group->GetName(), {}});
      for (auto const& to : group->AccessLinkedRecords()) {
        links.back().records.push_back({to->GetDBKey(), to->GetIdentity(), to->GetRecordGUID()});
      }
    }
  }
  return all;
}

std::map<int, std::vector<std::string>> SubsetsOf(Connection& connection, TableInfo const& table,
                                                  std::vector<RecordHead> const& records) {
  std::map<int, std::vector<std::string>> all;
  if (records.empty()) return all;
  // Of a record that is asked for twice some servers answer twice.
  std::map<int, RecordId> ids;
  for (RecordHead const& head : records) ids.emplace(head.id.identity, head.id);
  for (std::string const& subset : table.Subsets(connection)) {
    auto name = AttributeReference::CreateOne();
    name->MakePseudoAttribute(AttributeReference::PseudoAttrs::Name);
    auto const request = GetRecordAttributesByRefRequest::CreateOne();
    for (auto const& [identity, id] : ids) request->AddRecordReference(ReferenceTo(id));
    request->AccessAttributeReferences().push_back(name);
    request->SetFilter(table.FilterOf(connection, subset));
    auto const found = connection.Ask<GetRecordAttributesByRefResponse>([&](auto* into) {
      connection.Export()->GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(request,
                                                                                           into);
    });
    for (auto const& data : found->AccessRecordData()) {
      if (!data || !data->GetRecordReference()) continue;
      all[data->GetRecordReference()->GetIdentity()].push_back(subset);
    }
  }
  return all;
}

RecordHead FindExactly(Connection& connection, TableInfo const& table, std::string const& text) {
  constexpr std::size_t kGuid = 36;
  if (StartsIgnoringCase(text, "id:") || (text.size() == kGuid && text[8] == '-')) {
    RecordHead head = FindRecord(connection, table, text);
    for (RecordHead const& one : Named(connection, table, head.name)) {
      if (one.id.identity == head.id.identity) return one;
    }
    throw Error(ErrorCode::NotFound, Quoted(text) + " is not a record of " + Quoted(table.Name()));
  }
  std::vector<RecordHead> found = Named(connection, table, text);
  if (found.size() > 1) {
    std::vector<RecordHead> const top = In("", found);  // whose path is the name alone
    if (top.size() == 1) return top[0];
  }
  std::vector<std::string> parts = PathParts(text);
  if (found.empty() && !parts.empty()) {
    std::string const name = parts.back();
    parts.pop_back();
    std::string folder;
    for (std::string const& part : parts) folder = PathBelow(folder, part);
    found = In(folder, Named(connection, table, name));
  }
  if (found.size() == 1) return found[0];
  RecordHead guess = FindRecord(connection, table, text);  // throws for several of that name
  std::vector<RecordHead> guesses = {std::move(guess)};
  FolderPaths().Fill(connection, guesses);
  throw Error(ErrorCode::NotFound, "there is no record " + Quoted(text),
              {HintCode::DidYouMean, {PathBelow(guesses[0].folder, guesses[0].name)}});
}

std::vector<Relations> RelationsOf(Table const& table, std::vector<RecordHead> const& records) {
  std::vector<Relations> all(records.size());
  if (records.empty()) return all;
  auto const connection = table.Opened()->pool->Lend();
  auto const links = LinkedRecordsOf(*connection, records);
  auto const subsets = SubsetsOf(*connection, table.Opened()->info, records);
  std::map<int, RecordHead> others;
  for (auto const& [identity, groups] : links) {
    for (auto const& group : groups) {
      for (RecordId const& id : group.records) others[id.identity].id = id;
    }
  }
  std::vector<RecordHead> heads;
  heads.reserve(others.size());
  for (auto const& [identity, head] : others) heads.push_back(head);
  FolderPaths().Fill(*connection, heads);
  std::map<int, std::string> paths;
  for (RecordHead const& head : heads) {
    paths[head.id.identity] =
        head.name.empty() ? IdentityText(head.id) : PathBelow(head.folder, head.name);
  }
  for (std::size_t i = 0; i < records.size(); ++i) {
    auto const linked = links.find(records[i].id.identity);
    for (auto const& group :
         linked == links.end() ? std::vector<LinkedRecords::Group>() : linked->second) {
      if (group.records.empty()) continue;
      all[i].links.push_back({group.name, {}});
      for (RecordId const& id : group.records) {
        all[i].links.back().records.push_back(paths[id.identity]);
      }
    }
    auto const member = subsets.find(records[i].id.identity);
    if (member != subsets.end()) all[i].subsets = member->second;
  }
  return all;
}

}  // namespace lumo

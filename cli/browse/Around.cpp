// Links and versions of a record.

#include <algorithm>
#include <set>

#include "cli/browse/Views.h"
#include "lumo/toolkit/Tree.h"

namespace cli::browse {
namespace {

/// A tree that is deeper goes round in circles.
constexpr int kDeepest = 1000;

char const* StateName(int state) {
  switch (state) {
    case RecordVersionState::Released: return "released";
    case RecordVersionState::Superseded: return "superseded";
    case RecordVersionState::Withdrawn: return "withdrawn";
    case RecordVersionState::Unreleased: return "not released";
    case RecordVersionState::Unversioned: return "without versions";
    default: return "unknown";
  }
}

Json VersionsOf(TableData const& table, int identity) {
  auto const link = table.Link();
  auto const request = GetRecordVersionsRequest::CreateOne();
  request->AddRecordReference(lumo::ReferenceTo({table.Info().DatabaseKey(), identity, ""}));
  auto const found = link->Ask<GetRecordVersionsResponse>([&](auto* into) {
    link->Browse()->GetGetRecordVersionsImpl()->GetRecordVersions(request, into);
  });
  Json versions = Json::array();
  for (auto const& one : found->AccessRecordVersionStates()) {
    if (!one || !one->GetRecord()) continue;
    versions.push_back({{"guid", one->GetRecord()->GetRecordGUID()},
                        {"state", StateName(one->GetVersionState())}});
  }
  return versions;
}

/// Records and the folders above them, by identity; all of a level are asked for in one call.
std::map<int, SmartPtr<TreeRecord>> WithFolders(lumo::Connection& link, std::string const& dbKey,
                                                std::set<int> identities) {
  std::map<int, SmartPtr<TreeRecord>> known;
  for (int depth = 0; depth < kDeepest && !identities.empty(); ++depth) {
    auto const request = GetTreeRecordsRequest::CreateOne();
    for (int const identity : identities) {
      request->AddRecord(lumo::ReferenceTo({dbKey, identity, ""}));
      known[identity];  // also of one that the server leaves out
    }
    auto const found = link.Ask<GetTreeRecordsResponse>([&](auto* into) {
      link.Browse()->GetGetTreeRecordsImpl()->RequestTreeNodes(request, into);
    });
    identities.clear();
    for (auto const& record : found->AccessTreeRecords()) {
      if (!record || !record->GetRecordReference()) continue;
      known[record->GetRecordReference()->GetIdentity()] = record;
      int const parent = record->GetParentRecordHistoryIdentity();
      if (parent != 0 && known.count(parent) == 0) identities.insert(parent);
    }
  }
  return known;
}

int TopOf(std::map<int, SmartPtr<TreeRecord>> const& known, int identity) {
  for (int depth = 0; depth < kDeepest; ++depth) {
    auto const there = known.find(identity);
    if (there == known.end() || !there->second) return 0;
    int const parent = there->second->GetParentRecordHistoryIdentity();
    if (parent == 0) return identity;
    identity = parent;
  }
  return 0;
}

}  // namespace

std::string Views::TableWithTop(lumo::Connection& connection, std::string const& dbKey,
                                int top) const {
  {
    std::lock_guard const lock(m_mutex);
    auto const known = m_tops.find(dbKey);
    if (known != m_tops.end()) return known->second.count(top) ? known->second.at(top) : "";
  }
  std::map<int, std::string> tops;
  for (std::string const& name : lumo::TablesOf(connection, dbKey)) {
    lumo::TableInfo const info(connection, dbKey, name);
    tops[lumo::FolderTree(info).Root(connection).id.identity] = name;
  }
  std::lock_guard const lock(m_mutex);
  m_tops[dbKey] = tops;
  return tops[top];
}

Json Views::LinksOf(TableData const& table, int identity) const {
  auto const link = table.Link();
  std::string const& dbKey = table.Info().DatabaseKey();
  auto const request = GetLinkedRecordsRequest::CreateOne();
  request->AddRecordReference(lumo::ReferenceTo({dbKey, identity, ""}));
  auto const found = link->Ask<GetLinkedRecordsResponse>([&](auto* into) {
    link->Browse()->GetGetLinkedRecordsImpl()->GetLinkedRecords(request, into);
  });
  std::vector<SmartPtr<RecordLinkGroup>> groups;
  std::set<int> targets;
  for (auto const& source : found->AccessSourceRecords()) {
    for (auto const& group : source->AccessRecordLinkGroups()) {
      groups.push_back(group);
      for (auto const& record : group->AccessLinkedRecords()) {
        // Of another database only the identity is known.
        if (record->GetDBKey() == dbKey) targets.insert(record->GetIdentity());
      }
    }
  }
  auto const known = WithFolders(*link, dbKey, targets);
  Json list = Json::array();
  for (auto const& group : groups) {
    Json records = Json::array();
    for (auto const& record : group->AccessLinkedRecords()) {
      auto const there = known.find(record->GetIdentity());
      bool const isKnown = there != known.end() && there->second;
      Json one = {{"id", record->GetIdentity()}, {"db", record->GetDBKey()}};
      one["name"] = isKnown ? there->second->GetShortName()
                            : "record " + std::to_string(record->GetIdentity());
      one["table"] = isKnown ? TableWithTop(*link, dbKey, TopOf(known, record->GetIdentity())) : "";
      records.push_back(std::move(one));
    }
    if (!records.empty()) list.push_back({{"name", group->GetName()}, {"records", records}});
  }
  return list;
}

Json Views::Around(Query const& query) const {
  auto const table = TableOf(query);
  int const identity = IdentityIn(Needed(query, "id"));
  return {{"links", LinksOf(*table, identity)}, {"versions", VersionsOf(*table, identity)}};
}

}  // namespace cli::browse

#include "lumo/toolkit/Tree.h"

#include <algorithm>
#include <set>
#include <utility>

#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TreeCalls.h"

namespace lumo {
namespace {

/// A tree that is deeper goes round in circles.
constexpr std::size_t kDeepest = 1000;
/// Candidates that are looked up and shown.
constexpr std::size_t kFewRecords = 8;
constexpr std::string_view kIdentity = "id:";

std::vector<RecordHead> HeadsOf(SimpleTextSearchResponse const& found, TableInfo const& table) {
  std::vector<RecordHead> heads;
  for (auto const& result : found.AccessSearchResults()) {
    if (result && result->GetRecordReference()) {
      heads.push_back(HeadOf(*result, table.DatabaseKey()));
    }
  }
  return heads;
}

/// The GUID that the text is, without the braces that it may have; empty for other texts.
std::string GuidIn(std::string const& text) {
  bool const hasBraces = text.size() == 38 && text.front() == '{' && text.back() == '}';
  std::string guid = hasBraces ? text.substr(1, 36) : text;
  bool const isGuid =
      guid.size() == 36 && guid[8] == '-' && guid[13] == '-' && guid[18] == '-' && guid[23] == '-';
  return isGuid ? guid : "";
}

std::vector<SmartPtr<RecordReference>> ReferencesTo(std::vector<RecordHead> const& records) {
  std::vector<SmartPtr<RecordReference>> references;
  references.reserve(records.size());
  for (RecordHead const& record : records) references.push_back(ReferenceTo(record.id));
  return references;
}

/// The record that a reference names; nothing when the server knows none.
std::optional<RecordHead> Known(Connection& connection, TableInfo const& table,
                                SmartPtr<RecordReference> const& reference) {
  try {
    auto const found = TreeRecordsOf(connection, {reference});
    if (found.empty()) return {};
    return HeadOf(*found[0], table.DatabaseKey());
  } catch (Error const& error) {
    if (error.Code() != ErrorCode::ServerFault) throw;
    return {};
  }
}

std::optional<RecordHead> FindIdentity(Connection& connection, TableInfo const& table,
                                       std::string_view text) {
  int identity = 0;
  if (!ReadInteger(text, identity) || identity == 0) return {};
  return Known(connection, table, ReferenceTo({table.DatabaseKey(), identity, ""}));
}

std::optional<RecordHead> FindWithGuid(Connection& connection, TableInfo const& table,
                                       std::string const& guid) {
  auto reference = ReferenceTo({table.DatabaseKey(), 0, guid});
  if (auto version = Known(connection, table, reference)) return version;
  reference->SetRecordGUID("");
  reference->SetHistoryGUID(guid);
  return Known(connection, table, reference);
}

/// Other programs write GUIDs in capitals, and servers may mind.
std::optional<RecordHead> FindGuid(Connection& connection, TableInfo const& table,
                                   std::string const& guid) {
  auto found = FindWithGuid(connection, table, guid);
  std::string const lower = Lower(guid);
  return found || lower == guid ? found : FindWithGuid(connection, table, lower);
}

[[noreturn]] void ThrowAmbiguous(Connection& connection, std::vector<RecordHead> records,
                                 std::string const& name) {
  std::size_t const count = records.size();
  records.resize(std::min(count, kFewRecords));
  FolderPaths().Fill(connection, records);
  std::vector<std::string> identities;
  std::vector<std::string> places;
  for (RecordHead const& record : records) {
    identities.push_back(IdentityText(record.id));
    places.push_back(identities.back() + " (" + PathBelow(record.folder, record.name) + ")");
  }
  std::string const text = Quoted(name) + " may be any of " + std::to_string(count) +
                           " records: " + Joined(places) + (count > records.size() ? ", ..." : "");
  throw Error(ErrorCode::Ambiguous, text, Hint{HintCode::OneOf, std::move(identities)});
}

/// The one of the records that has just that name, or the only one.
RecordHead Only(Connection& connection, std::vector<RecordHead> const& records,
                std::string const& name) {
  if (records.size() == 1) return records[0];
  std::vector<RecordHead> exact;
  for (RecordHead const& record : records) {
    if (record.name == name) exact.push_back(record);
  }
  if (exact.size() != 1) ThrowAmbiguous(connection, exact.empty() ? records : exact, name);
  return exact[0];
}

std::optional<RecordHead> FindPath(Connection& connection, TableInfo const& table,
                                   std::string const& path) {
  std::vector<std::string> parts = PathParts(path);
  if (parts.size() < 2) return {};
  std::string const name = parts.back();
  parts.pop_back();
  std::string folder;
  for (std::string const& part : parts) folder = PathBelow(folder, part);
  FolderTree tree(table);
  return FindIn(connection, table, tree.Find(connection, folder), name);
}

std::vector<RecordHead> Candidates(Connection& connection, TableInfo const& table,
                                   std::string const& text) {
  try {
    return FindByText(connection, table, text, "");
  } catch (Error const& error) {
    if (error.Code() != ErrorCode::ServerFault) throw;  // the text holds no word, perhaps
    return {};
  }
}

/// Names for "did you mean": those that begin as most of this one does.
std::vector<std::string> NamesNear(Connection& connection, TableInfo const& table,
                                   std::string const& name) {
  std::size_t size = (name.size() * 3 + 2) / 4;
  while (size > 0 && (static_cast<unsigned char>(name[size]) & 0xC0U) == 0x80U) --size;
  std::vector<std::string> names;
  if (size == 0) return names;
  for (auto const& record : Candidates(connection, table, name.substr(0, size))) {
    names.push_back(record.name);
  }
  return Alike(name, names);
}

/// By a beginning or by words; a text search has the candidates.
RecordHead FindForgiving(Connection& connection, TableInfo const& table, std::string const& name) {
  std::vector<RecordHead> found = Candidates(connection, table, name);
  std::vector<std::string> names;
  names.reserve(found.size());
  for (RecordHead const& record : found) names.push_back(record.name);
  try {
    auto const place = TryName(names, name, "record");
    if (place) return found[*place];
  } catch (Error const& error) {
    if (error.Hint().arguments.size() > kFewRecords) throw;
    found.erase(std::remove_if(found.begin(), found.end(),
                               [&](RecordHead const& record) {
                                 auto const& candidates = error.Hint().arguments;
                                 return std::find(candidates.begin(), candidates.end(),
                                                  record.name) == candidates.end();
                               }),
                found.end());
    ThrowAmbiguous(connection, found, name);
  }
  if (Alike(name, names).empty()) {
    auto near = NamesNear(connection, table, name);
    if (!near.empty()) names = std::move(near);
  }
  if (names.size() > kFewRecords) names.resize(kFewRecords);
  ThrowNotFound("record", name, names);
}

}  // namespace

SmartPtr<RecordReference> ReferenceTo(RecordId const& id) {
  auto record = RecordReference::CreateOne();
  record->SetDBKey(id.database);
  record->SetIdentity(id.identity);
  record->SetRecordGUID(id.guid);
  return record;
}

std::vector<RecordHead> FindByName(Connection& connection, TableInfo const& table,
                                   std::string const& name, std::string const& subset) {
  auto const request = RecordNameSearchRequest::CreateOne();
  request->SetTable(table.Reference());
  request->SetRecordName(name);
  request->SetSearchShortNames(true);
  request->SetFilter(table.FilterOf(connection, subset));
  return HeadsOf(*connection.Ask<SimpleTextSearchResponse>([&](auto* into) {
    connection.Search()->GetRecordNameSearchImpl()->RecordNameSearch(request, into);
  }),
                 table);
}

std::vector<RecordHead> FindByText(Connection& connection, TableInfo const& table,
                                   std::string const& text, std::string const& subset) {
  auto const request = SimpleTextSearch::CreateOne();
  request->SetDBKey(table.DatabaseKey());
  request->SetSearchValue(text);
  request->AddRestrictToTables(table.Partial());
  request->SetRecordFilter(table.FilterOf(connection, subset));
  return HeadsOf(*connection.Ask<SimpleTextSearchResponse>([&](auto* into) {
    connection.Search()->GetSimpleTextSearchImpl()->Search(request, into);
  }),
                 table);
}

std::vector<RecordHead> FindByCriteria(Connection& connection, TableInfo const& table,
                                       std::vector<SmartPtr<RecordSearchCriterion>> const& criteria,
                                       std::string const& subset) {
  auto const request = CriteriaSearch::CreateOne();
  request->SetDBKey(table.DatabaseKey());
  request->AccessSearchCriterion() = criteria;
  request->SetRecordFilter(table.FilterOf(connection, subset));
  return HeadsOf(*connection.Ask<SimpleTextSearchResponse>([&](auto* into) {
    connection.Search()->GetCriteriaSearchImpl()->Search(request, into);
  }),
                 table);
}

std::string IdentityText(RecordId const& id) {
  return std::string(kIdentity) + std::to_string(id.identity);
}

RecordHead FindRecord(Connection& connection, TableInfo const& table, std::string const& name) {
  bool const isIdentity = StartsIgnoringCase(name, kIdentity);
  std::string const guid = GuidIn(name);
  if (isIdentity || !guid.empty()) {
    auto const found = isIdentity ? FindIdentity(connection, table,
                                                 std::string_view(name).substr(kIdentity.size()))
                                  : FindGuid(connection, table, guid);
    if (!found) ThrowNotFound("record", name, {});
    return *found;
  }
  std::vector<RecordHead> const named = FindByName(connection, table, name, "");
  if (!named.empty()) return Only(connection, named, name);
  if (auto const found = FindIdentity(connection, table, name)) return *found;
  if (auto const found = FindPath(connection, table, name)) return *found;
  return FindForgiving(connection, table, name);
}

// ---- folders

FolderAt FolderTree::Root(Connection& connection) {
  if (!m_root) {
    auto const request = GetRootNode::CreateOne();
    request->SetTable(m_table.Reference());
    auto const found = connection.Ask<GetRootNodeResponse>([&](auto* into) {
      connection.Browse()->GetGetRootNodeImpl()->RequestRootNode(request, into);
    });
    if (!found->GetRootNode() || !found->GetRootNode()->GetRecordReference()) {
      throw Error(ErrorCode::NotUnderstood, "the reply holds no top of the tree");
    }
    m_root = IdOf(*found->GetRootNode(), m_table.DatabaseKey());
  }
  return {*m_root, ""};
}

std::vector<FolderTree::Named>& FolderTree::FoldersIn(Connection& connection,
                                                      RecordId const& parent) {
  auto const known = m_folders.find(parent.identity);
  if (known != m_folders.end()) return known->second;
  std::vector<Named> folders;
  for (auto const& child : ChildrenOf(connection, parent, nullptr)) {
    if (!IsFolder(*child)) continue;
    folders.push_back({child->GetShortName(), IdOf(*child, m_table.DatabaseKey())});
  }
  return m_folders[parent.identity] = std::move(folders);
}

FolderAt FolderTree::Find(Connection& connection, std::string const& path) {
  FolderAt at = Root(connection);
  for (std::string const& part : PathParts(path)) {
    Named const& folder = FindNamed(FoldersIn(connection, at.id), part, "folder",
                                    [](Named const& one) { return one.name; });
    at = {folder.id, PathBelow(at.path, folder.name)};
  }
  return at;
}

std::optional<FolderAt> FolderTree::Child(Connection& connection, FolderAt const& parent,
                                          std::string const& name) {
  std::optional<FolderAt> child;
  for (Named const& one : FoldersIn(connection, parent.id)) {
    if (one.name != name) continue;
    if (child) {
      throw Error(ErrorCode::Ambiguous,
                  "there are several folders " + Quoted(PathBelow(parent.path, name)),
                  Hint{HintCode::OneOf, {IdentityText(child->id), IdentityText(one.id)}});
    }
    child = FolderAt{one.id, PathBelow(parent.path, name)};
  }
  return child;
}

void FolderTree::Add(FolderAt const& parent, std::string const& name, RecordId const& id) {
  auto const known = m_folders.find(parent.id.identity);
  if (known != m_folders.end()) known->second.push_back({name, id});
  m_folders[id.identity];  // is empty
}

std::optional<RecordHead> FindIn(Connection& connection, TableInfo const& table,
                                 FolderAt const& folder, std::string const& name) {
  std::vector<RecordHead> const named = FindByName(connection, table, name, "");
  if (named.empty()) return {};
  auto const references = ReferencesTo(named);
  std::vector<RecordHead> here;
  for (auto const& record : TreeRecordsOf(connection, references)) {
    if (record->GetParentRecordHistoryIdentity() != folder.id.identity) continue;
    here.push_back(HeadOf(*record, table.DatabaseKey()));
    here.back().folder = folder.path;
  }
  if (here.empty()) return {};
  return Only(connection, here, name);
}

// ---- the folders of records

void FolderPaths::Load(Connection& connection, std::string const& dbKey,
                       std::vector<int> identities) {
  for (std::size_t depth = 0; depth < kDeepest; ++depth) {
    std::set<int> unknown;
    for (int const identity : identities) {
      if (identity != 0 && m_folders.count(identity) == 0) unknown.insert(identity);
    }
    if (unknown.empty()) return;
    std::vector<SmartPtr<RecordReference>> references;
    for (int const identity : unknown) {
      references.push_back(ReferenceTo({dbKey, identity, ""}));
      m_folders[identity];  // also of one that the server leaves out
    }
    identities.clear();
    for (auto const& record : TreeRecordsOf(connection, references)) {
      int const parent = record->GetParentRecordHistoryIdentity();
      m_folders[record->GetRecordReference()->GetIdentity()] = {record->GetShortName(), parent};
      identities.push_back(parent);
    }
  }
}

std::string const& FolderPaths::PathOf(int identity) {
  std::vector<int> unknown;  // from the folder up
  int at = identity;
  while (m_paths.find(at) == m_paths.end() && unknown.size() < kDeepest) {
    auto const folder = m_folders.find(at);
    // The top of the tree is the table, and not a folder.
    if (folder == m_folders.end() || folder->second.parent == 0) break;
    unknown.push_back(at);
    at = folder->second.parent;
  }
  m_paths.try_emplace(at);
  for (auto folder = unknown.rbegin(); folder != unknown.rend(); ++folder) {
    m_paths[*folder] = PathBelow(m_paths[at], m_folders[*folder].name);
    at = *folder;
  }
  return m_paths[identity];
}

void FolderPaths::Fill(Connection& connection, std::vector<RecordHead>& records) {
  if (records.empty()) return;
  auto const references = ReferencesTo(records);
  std::map<int, SmartPtr<TreeRecord>> found;
  std::vector<int> folders;
  for (auto const& record : TreeRecordsOf(connection, references)) {
    folders.push_back(record->GetParentRecordHistoryIdentity());
    found[record->GetRecordReference()->GetIdentity()] = record;
  }
  Load(connection, records[0].id.database, folders);
  for (RecordHead& record : records) {
    auto const there = found.find(record.id.identity);
    if (there == found.end()) continue;
    TreeRecord const& known = *there->second;
    int const parent = known.GetParentRecordHistoryIdentity();
    record.folder = parent == 0 ? "" : PathOf(parent);
    if (!record.name.empty()) continue;
    record.name = known.GetShortName();
    record.fullName = known.GetLongName();
  }
}

// ---- the whole tree

TreeWalk::TreeWalk(Connection& connection, TableInfo const& table, std::string const& folder,
                   std::string const& subset)
    : m_dbKey(table.DatabaseKey()), m_filter(table.FilterOf(connection, subset)) {
  FolderAt const begin = FolderTree(table).Find(connection, folder);
  Enter(connection, begin.id, begin.path);
}

void TreeWalk::Enter(Connection& connection, RecordId const& folder, std::string const& path) {
  m_levels.push_back({ChildrenOf(connection, folder, m_filter), 0, path});
}

bool TreeWalk::Next(Connection& connection, Step& step, int maxDepth) {
  while (!m_levels.empty() && m_levels.back().next == m_levels.back().records.size()) {
    m_levels.pop_back();
  }
  if (m_levels.empty()) return false;
  Level& level = m_levels.back();
  SmartPtr<TreeRecord> const record = std::exchange(level.records[level.next++], nullptr);
  step = {HeadOf(*record, m_dbKey), IsFolder(*record), static_cast<int>(m_levels.size()) - 1};
  step.record.folder = level.folder;
  if (step.isFolder && step.depth < maxDepth && m_levels.size() < kDeepest) {
    Enter(connection, step.record.id, PathBelow(step.record.folder, step.record.name));
  }
  return true;
}

}  // namespace lumo

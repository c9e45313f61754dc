#include "cli/Names.h"

#include <algorithm>
#include <utility>

#include "cli/Text.h"

namespace cli {
namespace {

/// The entry of the list whose text, got by `nameOf`, is the one that is looked for.
template <class List, class NameOf>
auto Pick(List const& list, std::string const& what, std::string const& name, NameOf nameOf) {
  std::vector<std::string> names;
  for (auto const& one : list) {
    if (!one) continue;
    if (EqualIgnoringCase(nameOf(*one), name)) return one;
    names.push_back(nameOf(*one));
  }
  throw UsageFailure("there is no " + what + " \"" + name + "\"" + Suggestion(name, names));
}

SmartPtr<RecordReference> RecordWithIdentity(std::string const& dbKey, int identity) {
  auto record = RecordReference::CreateOne();
  record->SetDBKey(dbKey);
  record->SetIdentity(identity);
  return record;
}

Entry EntryOf(NamedRecord const& record) {
  return {record.GetRecordReference(), record.GetShortName(), record.GetLongName(), ""};
}

/// A tree that is deeper goes round in circles.
constexpr std::size_t kDeepest = 1000;

bool LooksLikeGuid(std::string const& text) {
  return text.size() == 36 && text[8] == '-' && text[13] == '-' && text[18] == '-' &&
         text[23] == '-';
}

}  // namespace

SmartPtr<LumoDatabase> FindDatabase(Connection& connection, std::string const& keyOrName) {
  auto const found = connection.Ask<GetDatabasesResponse>(
      [&](auto* into) { connection.Browse()->GetGetDatabaseImpl()->GetDatabases(into); });
  for (auto const& database : found->AccessDatabases()) {
    if (EqualIgnoringCase(database->GetName(), keyOrName)) return database;
  }
  return Pick(found->AccessDatabases(), "database", keyOrName,
              [](LumoDatabase const& one) { return one.GetDBKey(); });
}

SmartPtr<TableDetail> FindTable(Connection& connection, std::string const& database,
                                std::string const& table) {
  auto const request = GetTables::CreateOne();
  request->SetDBKey(FindDatabase(connection, database)->GetDBKey());
  auto const found = connection.Ask<GetTablesResponse>(
      [&](auto* into) { connection.Browse()->GetGetTablesImpl()->RequestTables(request, into); });
  return Pick(found->AccessTableDetails(), "table", table, [](TableDetail const& one) {
    auto const reference = one.GetTableReference();
    return reference ? reference->GetTableName() : std::string();
  });
}

TableOf::TableOf(Connection& connection, std::string const& database, std::string const& table)
    : m_connection(connection), m_detail(FindTable(connection, database, table)) {}

SmartPtr<PartialTableReference> TableOf::Partial() const {
  return PartialTableReference::CreateOneFromTableName(Name());
}

std::vector<SmartPtr<AttributeDetail>> const& TableOf::Attributes() {
  if (!m_attributes.empty() || m_detail->AccessAttributeReferences().empty()) return m_attributes;
  auto const request = GetAttributeDetailsRequest::CreateOne();
  request->AccessAttributeReferences() = m_detail->AccessAttributeReferences();
  auto const found = m_connection.Ask<GetAttributeDetailsResponse>([&](auto* into) {
    m_connection.Browse()->GetGetAttributeDetailsImpl()->RequestAttributeDetails(request, into);
  });
  for (auto const& detail : found->AccessAttributeDetails()) {
    if (detail && !detail->GetIsMeta()) m_attributes.push_back(detail);
  }
  return m_attributes;
}

SmartPtr<AttributeDetail> TableOf::Attribute(std::string const& name) {
  return Pick(Attributes(), "attribute", name,
              [](AttributeDetail const& one) { return one.GetName(); });
}

SmartPtr<AttributeReference> TableOf::ReferenceTo(AttributeDetail const& attribute) const {
  auto reference = AttributeReference::CreateOne();
  reference->SetDBKey(Key());
  reference->SetName(attribute.GetName());
  reference->SetPartialTableReference(Partial());
  return reference;
}

std::map<std::string, SmartPtr<ParameterDetail>> const& TableOf::Parameters(
    AttributeDetail const& attribute) {
  auto const [entry, isNew] = m_parameters.try_emplace(attribute.GetIdentity());
  if (!isNew) return entry->second;
  auto const request = GetAttributeParametersRequest::CreateOne();
  request->AddAttributeReference(ReferenceTo(attribute));
  auto const found = m_connection.Ask<GetAttributeParametersResponse>([&](auto* into) {
    m_connection.Browse()->GetGetAttributeParametersImpl()->GetAttributeParameters(request, into);
  });
  for (auto const& detail : found->AccessParameterDetails()) {
    entry->second[detail->GetName()] = detail;
  }
  return entry->second;
}

std::string PathBelow(std::string const& folder, std::string const& name) {
  std::string path = folder.empty() ? "" : folder + "/";
  for (char const c : name) {
    if (c == '/' || c == '\\') path += '\\';
    path += c;
  }
  return path;
}

std::vector<std::string> PathParts(std::string const& path) {
  std::vector<std::string> parts;
  std::string part;
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (path[i] == '/') {
      if (!part.empty()) parts.push_back(std::exchange(part, {}));
    } else {
      if (path[i] == '\\' && i + 1 < path.size()) ++i;
      part += path[i];
    }
  }
  if (!part.empty()) parts.push_back(part);
  return parts;
}

SmartPtr<RecordFilter> FilterOf(TableOf const& table, std::string const& subset) {
  if (subset.empty()) return nullptr;
  auto reference = SubsetReference::CreateOne();
  reference->SetDBKey(table.Key());
  reference->SetName(subset);
  reference->SetPartialTableReference(table.Partial());
  auto filter = RecordFilter::CreateOne();
  filter->AddSubsetReference(reference);
  return filter;
}

SmartPtr<RecordReference> RootOf(Connection& connection, TableOf const& table) {
  auto const request = GetRootNode::CreateOne();
  request->SetTable(table.Reference());
  auto const found = connection.Ask<GetRootNodeResponse>([&](auto* into) {
    connection.Browse()->GetGetRootNodeImpl()->RequestRootNode(request, into);
  });
  if (!found->GetRootNode() || !found->GetRootNode()->GetRecordReference()) {
    throw Failure(ExitCode::NotUnderstood, "the reply holds no top of the tree");
  }
  return found->GetRootNode()->GetRecordReference();
}

std::vector<SmartPtr<TreeRecord>> ChildrenOf(Connection& connection,
                                             SmartPtr<RecordReference> const& parent,
                                             SmartPtr<RecordFilter> const& filter) {
  auto const request = GetChildNodes::CreateOne();
  request->SetParent(parent);
  request->SetRecordFilter(filter);
  auto const found = connection.Ask<GetChildNodesResponse>([&](auto* into) {
    connection.Browse()->GetGetChildNodesImpl()->RequestChildNodes(request, into);
  });
  std::vector<SmartPtr<TreeRecord>> children;
  for (auto& child : found->AccessTreeRecords()) {
    if (child && child->GetRecordReference()) children.push_back(std::move(child));
  }
  return children;
}

SmartPtr<GetTreeRecordsResponse> TreeRecordsOf(
    Connection& connection, std::vector<SmartPtr<RecordReference>> const& records) {
  auto const request = GetTreeRecordsRequest::CreateOne();
  for (auto const& record : records) request->AddRecord(record);
  return connection.Ask<GetTreeRecordsResponse>([&](auto* into) {
    connection.Browse()->GetGetTreeRecordsImpl()->RequestTreeNodes(request, into);
  });
}

bool IsFolder(TreeRecord const& record) {
  return record.GetHasChildren() || EqualIgnoringCase(record.GetType(), "Folder");
}

FolderAt FindFolder(Connection& connection, TableOf const& table, std::string const& path) {
  FolderAt at = {RootOf(connection, table), ""};
  for (std::string const& name : PathParts(path)) {
    auto children = ChildrenOf(connection, at.record);
    children.erase(std::remove_if(children.begin(), children.end(),
                                  [](auto const& child) { return !IsFolder(*child); }),
                   children.end());
    auto const child =
        Pick(children, "folder", name, [](TreeRecord const& one) { return one.GetShortName(); });
    at = {child->GetRecordReference(), PathBelow(at.path, child->GetShortName())};
  }
  return at;
}

TreeWalk::TreeWalk(Connection& connection, TableOf const& table, std::string const& folder,
                   std::string const& subset)
    : m_connection(connection), m_filter(FilterOf(table, subset)) {
  FolderAt const begin = FindFolder(connection, table, folder);
  Enter(begin.record, begin.path);
}

void TreeWalk::Enter(SmartPtr<RecordReference> const& folder, std::string const& path) {
  m_levels.push_back({ChildrenOf(m_connection, folder, m_filter), 0, path});
}

bool TreeWalk::Next(Step& step, int maxDepth) {
  while (!m_levels.empty() && m_levels.back().next == m_levels.back().records.size()) {
    m_levels.pop_back();
  }
  if (m_levels.empty()) return false;
  Level& level = m_levels.back();
  SmartPtr<TreeRecord> const record = std::exchange(level.records[level.next++], nullptr);
  step = {EntryOf(*record), IsFolder(*record), static_cast<int>(m_levels.size()) - 1};
  step.entry.folder = level.folder;
  if (step.isFolder && step.depth < maxDepth) {
    Enter(step.entry.record, PathBelow(step.entry.folder, step.entry.name));
  }
  return true;
}

std::vector<Entry> EntriesOf(SimpleTextSearchResponse const& found) {
  std::vector<Entry> entries;
  for (auto const& result : found.AccessSearchResults()) {
    if (result && result->GetRecordReference()) entries.push_back(EntryOf(*result));
  }
  return entries;
}

std::vector<Entry> FindByName(Connection& connection, TableOf const& table, std::string const& name,
                              std::string const& subset) {
  auto const request = RecordNameSearchRequest::CreateOne();
  request->SetTable(table.Reference());
  request->SetRecordName(name);
  request->SetSearchShortNames(true);
  request->SetFilter(FilterOf(table, subset));
  return EntriesOf(*connection.Ask<SimpleTextSearchResponse>([&](auto* into) {
    connection.Search()->GetRecordNameSearchImpl()->RecordNameSearch(request, into);
  }));
}

Entry FindRecord(Connection& connection, TableOf const& table, std::string const& name) {
  int identity = 0;
  bool const isIdentity = !name.empty() && name[0] == '#' && ReadInteger(name.substr(1), identity);
  if (isIdentity || LooksLikeGuid(name)) {
    auto const record = RecordWithIdentity(table.Key(), identity);
    if (!isIdentity) record->SetRecordGUID(name);
    auto const found = TreeRecordsOf(connection, {record});
    if (found->AccessTreeRecords().empty()) throw UsageFailure("there is no record " + name);
    return EntryOf(*found->AccessTreeRecords()[0]);
  }
  std::vector<Entry> const results = FindByName(connection, table, name, "");
  if (results.empty()) {
    throw UsageFailure("there is no record \"" + name + "\" in " + table.Name() +
                       "; see lumo search");
  }
  if (results.size() > 1) {
    std::string identities;
    for (Entry const& result : results) {
      identities += " #" + std::to_string(result.record->GetIdentity());
    }
    throw UsageFailure("several records have the name \"" + name + "\":" + identities);
  }
  return results[0];
}

FolderFinder::Folder FolderFinder::FolderOf(std::string const& dbKey, int history) {
  auto const found = TreeRecordsOf(m_connection, {RecordWithIdentity(dbKey, history)});
  if (found->AccessTreeRecords().empty()) return {};
  TreeRecord const& record = *found->AccessTreeRecords()[0];
  return {record.GetShortName(), record.GetParentRecordHistoryIdentity()};
}

std::string const& FolderFinder::PathOf(std::string const& dbKey, int history) {
  std::vector<std::pair<int, std::string>> unknown;  // from the folder up
  int at = history;
  while (m_paths.find(at) == m_paths.end()) {
    Folder const folder = FolderOf(dbKey, at);
    // The top of the tree is the table, and no folder.
    if (folder.parent == 0 || unknown.size() == kDeepest) {
      m_paths[at] = "";
      break;
    }
    unknown.emplace_back(at, folder.name);
    at = folder.parent;
  }
  for (auto folder = unknown.rbegin(); folder != unknown.rend(); ++folder) {
    m_paths[folder->first] = PathBelow(m_paths[at], folder->second);
    at = folder->first;
  }
  return m_paths[history];
}

void FolderFinder::Fill(std::vector<Entry>& entries) {
  std::vector<SmartPtr<RecordReference>> records;
  records.reserve(entries.size());
  for (Entry const& entry : entries) records.push_back(entry.record);
  if (records.empty()) return;
  auto const found = TreeRecordsOf(m_connection, records);
  std::map<int, int> parents;
  for (auto const& record : found->AccessTreeRecords()) {
    if (!record || !record->GetRecordReference()) continue;
    parents[record->GetRecordReference()->GetIdentity()] = record->GetParentRecordHistoryIdentity();
  }
  for (Entry& entry : entries) {
    int const parent = parents[entry.record->GetIdentity()];
    if (parent != 0) entry.folder = PathOf(entry.record->GetDBKey(), parent);
  }
}

}  // namespace cli

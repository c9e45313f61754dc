#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "lumo/toolkit/ImportPlan.h"
#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Pipeline.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TreeCalls.h"

namespace lumo {
namespace {

/// With more names in one folder its content is asked for, instead of each name.
constexpr std::size_t kManyNames = 20;
constexpr std::size_t kNamesInTurn = 8;
constexpr std::size_t kRecordsInCall = 200;
constexpr std::size_t kFewCandidates = 4;

/// A record or folder and where it lies.
struct Placed {
  RecordHead head = {};
  int parent = 0;
  bool isFolder = false;
};
using PlacedList = std::vector<Placed>;

class Matcher {
 public:
  Matcher(OpenedTable& table, ImportPlan& plan, ImportOptions const& options)
      : m_table(table), m_plan(plan), m_options(options), m_connection(table.pool->Lend()) {
    m_connection->Scope().cancel = options.cancel;
  }

  void Run() {
    for (PlannedRow& row : m_plan.rows) {
      if (row.IsRefused()) continue;
      if (!row.folder.empty()) FindFolder(row.folder);
      ++m_rowsIn[row.folder];
    }
    SearchNames();
    for (PlannedRow& row : m_plan.rows) {
      if (!row.IsRefused()) Match(row);
      NoteNamesakes(row);
    }
    FillFolders();
    FindTwins();
  }

 private:
  struct Folder {
    std::optional<RecordId> id = {};  ///< nothing when it is not there
    std::string fault = {};           ///< why there cannot be such a folder
  };

  Connection& Link() { return *m_connection; }
  std::string const& Key() const { return m_table.info.DatabaseKey(); }

  // ---- folders

  RecordId const& Root() {
    if (!m_root) m_root = FolderTree(m_table.info).Root(Link()).id;
    return *m_root;
  }

  Placed PlacedOf(TreeRecord const& record) const {
    return {HeadOf(record, Key()), record.GetParentRecordHistoryIdentity(), IsFolder(record)};
  }

  /// What lies in a folder, by name; asked for once.
  std::multimap<std::string, Placed> const& ContentOf(RecordId const& folder) {
    auto const [known, isNew] = m_contents.try_emplace(folder.identity);
    if (isNew) {
      for (auto const& child : ChildrenOf(Link(), folder, nullptr)) {
        Placed placed = PlacedOf(*child);
        placed.parent = folder.identity;
        known->second.emplace(child->GetShortName(), std::move(placed));
      }
    }
    return known->second;
  }

  Folder const& FindFolder(std::string const& path) {
    auto const [known, isNew] = m_folders.try_emplace(path);
    Folder& folder = known->second;  // stays where it is
    if (!isNew) return folder;
    if (path.empty()) {
      folder.id = Root();
      return folder;
    }
    std::vector<std::string> parts = PathParts(path);
    std::string const name = parts.back();
    parts.pop_back();
    std::string parentPath;
    for (std::string const& part : parts) parentPath = PathBelow(parentPath, part);
    Folder const& parent = FindFolder(parentPath);
    folder.fault = parent.fault;
    if (!folder.fault.empty()) return folder;
    if (parent.id) LookFor(name, path, *parent.id, folder);
    if (!folder.id && folder.fault.empty()) Plan(name, path, parentPath, parent, folder);
    return folder;
  }

  void LookFor(std::string const& name, std::string const& path, RecordId const& parent,
               Folder& folder) {
    std::vector<std::string> names;
    bool isRecord = false;
    for (auto const& [childName, child] : ContentOf(parent)) {
      if (childName == name && !child.isFolder) isRecord = true;
      if (!child.isFolder) continue;
      names.push_back(childName);
      if (childName != name) continue;
      if (folder.id) folder.fault = "there are several folders " + Quoted(path);
      folder.id = child.head.id;
    }
    if (folder.id) return;
    if (isRecord) {
      folder.fault = Quoted(path) + " is a record and holds no others";
    } else if (!m_options.makesFolders) {
      std::vector<std::string> const alike = Alike(name, names);
      folder.fault = "there is no folder " + Quoted(path) +
                     (alike.empty() ? "" : "; did you mean " + Quoted(alike.front()) + "?");
    }
  }

  void Plan(std::string const& name, std::string const& path, std::string const& parentPath,
            Folder const& parent, Folder& folder) {
    if (!CanBeSent(name)) {
      folder.fault = "the name of a folder holds a character that cannot be sent";
    } else if (!m_options.makesFolders) {
      folder.fault = "there is no folder " + Quoted(path);
    } else {
      m_plan.folders.push_back({path, name, parentPath, parent.id});
    }
  }

  // ---- names

  /// Whether the names in that folder are found by reading its content.
  bool IsListed(std::string const& folder) {
    if (folder.empty()) return false;
    Folder const& known = FindFolder(folder);
    if (!known.id) return true;
    return m_rowsIn[folder] >= kManyNames || m_contents.count(known.id->identity) > 0;
  }

  void SearchNames() {
    std::set<std::string> names;
    for (PlannedRow const& row : m_plan.rows) {
      if (row.IsRefused() || row.row->name.empty() || IsListed(row.folder)) continue;
      names.insert(row.row->name);
    }
    std::vector<RecordHead> found;
    std::set<int> seen;
    auto name = names.begin();
    PipelineOptions options;
    options.cancel = m_options.cancel;
    options.onCall = Link().Scope().onCall;
    using Names = std::vector<std::string>;
    Pipeline<Names, std::vector<RecordHead>> searches(
        [&](Connection& /*connection*/) -> std::optional<Names> {
          Names chunk;
          while (name != names.end() && chunk.size() < kNamesInTurn) chunk.push_back(*name++);
          return chunk.empty() ? std::nullopt : std::optional<Names>(std::move(chunk));
        },
        [this](Connection& connection, Names&& chunk) {
          std::vector<RecordHead> heads;
          for (std::string const& one : chunk) {
            for (RecordHead& head : FindByName(connection, m_table.info, one, "")) {
              if (EqualIgnoringCase(head.name, one)) heads.push_back(std::move(head));
            }
          }
          return heads;
        },
        options);
    if (names.empty()) return;
    searches.Start(m_table.pool->Lend(
        std::min(m_table.pool->MostCalls(), (names.size() + kNamesInTurn - 1) / kNamesInTurn)));
    while (auto heads = searches.Take([] {})) {
      for (RecordHead& head : *heads) {
        if (!seen.insert(head.id.identity).second) continue;  // found by "Cr" and by "CR"
        if (names.count(head.name) > 0) found.push_back(head);
        m_alike[Lower(head.name)].push_back(std::move(head));
      }
    }
    for (Placed& placed : PlacesOf(found)) {
      std::string const key = placed.head.name;
      m_named[key].push_back(std::move(placed));
    }
  }

  PlacedList PlacesOf(std::vector<RecordHead> const& heads) {
    PlacedList places;
    for (std::size_t at = 0; at < heads.size(); at += kRecordsInCall) {
      std::vector<SmartPtr<RecordReference>> references;
      for (std::size_t i = at; i < std::min(heads.size(), at + kRecordsInCall); ++i) {
        references.push_back(ReferenceTo(heads[i].id));
      }
      for (auto const& record : TreeRecordsOf(Link(), references)) {
        places.push_back(PlacedOf(*record));
      }
    }
    return places;
  }

  // ---- records

  void Match(PlannedRow& row) {
    bool const hasId = row.row->id.identity != 0 || !row.row->id.guid.empty();
    hasId ? MatchId(row) : MatchNames(row);
  }

  /// Says of a record that is to be made what may be the one that was meant.
  void NoteNamesakes(PlannedRow& row) {
    if (row.record || row.IsRefused()) return;
    auto const alike = m_alike.find(Lower(row.row->name));
    if (alike == m_alike.end()) return;
    for (RecordHead const& head : alike->second) {
      bool const isSame = head.name == row.row->name;
      row.verdict.notes.push_back(
          isSame ? IdentityText(head.id) + " in another place has the same name"
                 : IdentityText(head.id) + " is called " + Quoted(head.name));
    }
  }

  void MatchNames(PlannedRow& row) {
    if (row.folder.empty()) return MatchName(row);
    Folder const& folder = FindFolder(row.folder);
    if (!folder.fault.empty()) return row.Refuse(folder.fault);
    MatchIn(row, folder.id);
  }

  PlacedList RecordsIn(std::string const& path, RecordId const& folder, std::string const& name) {
    PlacedList here;
    if (IsListed(path)) {
      auto const [begin, end] = ContentOf(folder).equal_range(name);
      for (auto one = begin; one != end; ++one) here.push_back(one->second);
    } else {
      for (Placed const& one : m_named[name]) {
        if (one.parent == folder.identity) here.push_back(one);
      }
    }
    here.erase(
        std::remove_if(here.begin(), here.end(), [](auto const& one) { return one.isFolder; }),
        here.end());
    return here;
  }

  void MatchIn(PlannedRow& row, std::optional<RecordId> const& folder) {
    row.parent = folder;
    if (folder) Take(row, RecordsIn(row.folder, *folder, row.row->name));
  }

  /// The record when it is the only one.
  void Take(PlannedRow& row, PlacedList const& records) {
    if (records.size() > 1) return RefuseAmbiguous(row, records);
    if (records.empty()) return;
    row.record = records[0].head;
    row.record->folder = row.folder;
  }

  void RefuseAmbiguous(PlannedRow& row, PlacedList const& records) {
    std::vector<RecordHead> heads;
    for (Placed const& one : records) heads.push_back(one.head);
    std::size_t const count = heads.size();
    heads.resize(std::min(count, kFewCandidates));
    m_paths.Fill(Link(), heads);
    std::string text =
        Quoted(row.row->name) + " may be any of " + std::to_string(count) + " records:";
    for (RecordHead const& head : heads) {
      text += " " + IdentityText(head.id) + " (" + PathBelow(head.folder, head.name) + ")";
    }
    row.Refuse(text + "; give the folder or the identity");
  }

  /// By the name alone when the table has it once, else at the top.
  void MatchName(PlannedRow& row) {
    PlacedList records;
    for (Placed const& one : m_named[row.row->name]) {
      if (!one.isFolder) records.push_back(one);
    }
    PlacedList top;
    for (Placed const& one : records) {
      if (one.parent == Root().identity) top.push_back(one);
    }
    if (records.size() > 1 && top.size() == 1) records = top;
    Take(row, records);
    if (row.record && records[0].parent != Root().identity) m_elsewhere.push_back(&row);
    row.parent = Root();
  }

  /// Of the records that were found by their names alone.
  void FillFolders() {
    std::vector<RecordHead> heads;
    for (PlannedRow const* const row : m_elsewhere) heads.push_back(*row->record);
    m_paths.Fill(Link(), heads);
    for (std::size_t i = 0; i < heads.size(); ++i) {
      m_elsewhere[i]->record->folder = heads[i].folder;
      m_elsewhere[i]->folder = heads[i].folder;
    }
  }

  /// The record of that identity, when its names lead to it as well.
  std::optional<Placed> FoundByNames(PlannedRow const& row) {
    ImportRow const& from = *row.row;
    PlacedList named;
    if (from.name.empty() || !from.id.guid.empty()) return {};
    if (row.folder.empty()) {
      named = m_named[from.name];
    } else if (auto const& folder = FindFolder(row.folder).id) {
      named = RecordsIn(row.folder, *folder, from.name);
    }
    for (Placed& one : named) {
      if (one.head.id.identity == from.id.identity) return std::move(one);
    }
    return {};
  }

  void MatchId(PlannedRow& row) {
    ImportRow const& from = *row.row;
    if (auto const found = FoundByNames(row)) {
      Take(row, {*found});
      if (row.folder.empty()) m_elsewhere.push_back(&row);
      return;
    }
    std::string const id = from.id.guid.empty() ? IdentityText(from.id) : from.id.guid;
    std::optional<RecordHead> known;
    try {
      known = FindRecord(Link(), m_table.info, id);
    } catch (Error const& error) {
      if (error.Code() != ErrorCode::NotFound) throw;
    }
    // An identity may be another server's: names tell then.
    if (!known && from.id.guid.empty() && !from.name.empty()) return MatchNames(row);
    if (!known) return row.Refuse("there is no record " + id);
    if (from.id.identity != 0 && known->id.identity != from.id.identity) {
      // The identity may be another server's. The name tells.
      std::string const why =
          "the GUID is that of " + IdentityText(known->id) + ", not of " + IdentityText(from.id);
      if (from.name.empty()) return row.Refuse(why);
      row.verdict.notes.push_back(why);
    }
    if (!from.name.empty() && known->name != from.name) {
      return row.Refuse(id + " is the record " + Quoted(known->name) + ", not " +
                        Quoted(from.name) + "; leave the identity out to go by folder and name");
    }
    // Identities are those of a database, and may lead into another table.
    bool isHere = false;
    for (RecordHead const& head : FindByName(Link(), m_table.info, known->name, "")) {
      isHere = isHere || head.id.identity == known->id.identity;
    }
    if (!isHere) return row.Refuse(id + " is a record of another table");
    std::vector<RecordHead> heads = {*known};
    m_paths.Fill(Link(), heads);
    if (!row.folder.empty() && heads[0].folder != row.folder) {
      return row.Refuse(id + " lies in " + Quoted(heads[0].folder) +
                        ", and records cannot be moved");
    }
    row.record = heads[0];
    row.folder = heads[0].folder;
  }

  /// Two rows for one record.
  void FindTwins() {
    std::map<std::pair<int, std::string>, std::size_t> first;
    for (std::size_t i = 0; i < m_plan.rows.size(); ++i) {
      PlannedRow& row = m_plan.rows[i];
      if (!row.record && row.row->name.empty()) continue;
      auto const key = row.record ? std::pair(row.record->id.identity, std::string())
                                  : std::pair(0, PathBelow(row.folder, row.row->name));
      auto const [other, isNew] = first.emplace(key, i);
      if (isNew) continue;
      PlannedRow& twin = m_plan.rows[other->second];
      row.Refuse("the record stands in row " + std::to_string(twin.verdict.row) + ", too");
      m_twins.insert(other->second);
      m_other.emplace(other->second, row.verdict.row);
    }
    for (std::size_t const i : m_twins) {
      m_plan.rows[i].Refuse("the record stands in row " + std::to_string(m_other.at(i)) + ", too");
    }
  }

  OpenedTable& m_table;
  ImportPlan& m_plan;
  ImportOptions const& m_options;
  std::shared_ptr<Connection> m_connection;
  std::optional<RecordId> m_root;
  std::map<std::string, Folder> m_folders;
  std::map<std::string, std::size_t> m_rowsIn;
  std::map<int, std::multimap<std::string, Placed>> m_contents;  ///< by the folder's identity
  std::unordered_map<std::string, PlacedList> m_named;
  std::unordered_map<std::string, std::vector<RecordHead>> m_alike;  ///< by the name in lower case
  FolderPaths m_paths;
  std::vector<PlannedRow*> m_elsewhere;
  std::set<std::size_t> m_twins;
  std::map<std::size_t, std::size_t> m_other;
};

}  // namespace

void MatchRows(OpenedTable& table, ImportPlan& plan, ImportOptions const& options) {
  Matcher(table, plan, options).Run();
}

}  // namespace lumo

#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lumo/toolkit/RecordHead.h"
#include "lumo/toolkit/TableInfo.h"

/// Records by what people call them, and their places in the tree. Not installed.
namespace lumo {

/// For requests.
LUMO_API SmartPtr<RecordReference> ReferenceTo(RecordId const& id);

/// What the searches find, without folders; of a subset only, unless its name is empty.
LUMO_API std::vector<RecordHead> FindByName(Connection& connection, TableInfo const& table,
                                            std::string const& name, std::string const& subset);
LUMO_API std::vector<RecordHead> FindByText(Connection& connection, TableInfo const& table,
                                            std::string const& text, std::string const& subset);
LUMO_API std::vector<RecordHead> FindByCriteria(
    Connection& connection, TableInfo const& table,
    std::vector<SmartPtr<RecordSearchCriterion>> const& criteria, std::string const& subset);

/// The one record that is called so: by a short or full name, a path such as
/// "Metals/Steels/C45", an identity as "id:69", or as "69" when no record has that name, or the
/// GUID of a version or of a history. Throws `Error`: NotFound with names that are alike; Ambiguous
/// with the identities of the namesakes, whose folders its text gives.
LUMO_API RecordHead FindRecord(Connection& connection, TableInfo const& table,
                               std::string const& name);
/// "id:69", the form that `FindRecord` and a shell take as it stands.
LUMO_API std::string IdentityText(RecordId const& id);

/// A folder with its path as the server spells it.
struct FolderAt {
  RecordId id = {};
  std::string path = {};
};

/// Finds folders by name and parent, asking for each folder's content once.
class LUMO_API FolderTree {
 public:
  explicit FolderTree(TableInfo const& table) : m_table(table) {}

  /// The folder with that path; the top of the tree for an empty one. Each part is taken as
  /// `FindName` takes it.
  FolderAt Find(Connection& connection, std::string const& path);
  /// The folder of just that name in a folder; nothing when there is none. Throws `Error`
  /// (Ambiguous) when there are several.
  std::optional<FolderAt> Child(Connection& connection, FolderAt const& parent,
                                std::string const& name);
  /// A folder that was made meanwhile.
  void Add(FolderAt const& parent, std::string const& name, RecordId const& id);
  FolderAt Root(Connection& connection);

 private:
  struct Named {
    std::string name;
    RecordId id;
  };
  std::vector<Named>& FoldersIn(Connection& connection, RecordId const& parent);

  TableInfo const& m_table;
  std::optional<RecordId> m_root;
  std::map<int, std::vector<Named>> m_folders;  ///< by the identity of the folder above
};

/// The record of just that short name in a folder; nothing when there is none. Throws `Error`
/// (Ambiguous) when there are several. Asks for the name and its places alone, however many records
/// the folder holds.
LUMO_API std::optional<RecordHead> FindIn(Connection& connection, TableInfo const& table,
                                          FolderAt const& folder, std::string const& name);

/// Fills in the folders of records, and the names of those that have none. Each folder is asked for
/// once, all of a level in one call.
class LUMO_API FolderPaths {
 public:
  void Fill(Connection& connection, std::vector<RecordHead>& records);

 private:
  struct Folder {
    std::string name;
    int parent = 0;
  };
  /// Asks for the folders with these identities, and for those above them.
  void Load(Connection& connection, std::string const& dbKey, std::vector<int> identities);
  std::string const& PathOf(int identity);

  std::map<int, Folder> m_folders;
  std::map<int, std::string> m_paths;
};

/// Walks the tree of a table, one folder at a call, so that a tree of any size takes little memory.
class LUMO_API TreeWalk {
 public:
  struct Step {
    RecordHead record = {};
    bool isFolder = false;
    int depth = 0;  ///< 0 for what lies directly below the beginning
  };

  /// Begins below that folder; of the records only those of the subset for one that is not empty.
  TreeWalk(Connection& connection, TableInfo const& table, std::string const& folder,
           std::string const& subset);
  /// The next record or folder, a folder before what is in it; false at the end. Does not step into
  /// folders deeper than `maxDepth`.
  bool Next(Connection& connection, Step& step, int maxDepth);

 private:
  struct Level {
    std::vector<SmartPtr<TreeRecord>> records;
    std::size_t next = 0;
    std::string folder;
  };
  void Enter(Connection& connection, RecordId const& folder, std::string const& path);

  std::string m_dbKey;
  SmartPtr<RecordFilter> m_filter;
  std::vector<Level> m_levels;
};

}  // namespace lumo

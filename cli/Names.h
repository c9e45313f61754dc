#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/Connection.h"

namespace cli {

/// Finds what users name. Names are compared without regard to case; each function throws
/// `UsageFailure`, with the name that is most alike, when there is none.
SmartPtr<LumoDatabase> FindDatabase(Connection& connection, std::string const& keyOrName);
/// With the references of its attributes.
SmartPtr<TableDetail> FindTable(Connection& connection, std::string const& database,
                                std::string const& table);

/// The table of a command, with what is asked of it again and again.
class TableOf {
 public:
  TableOf(Connection& connection, std::string const& database, std::string const& table);

  SmartPtr<TableReference> Reference() const { return m_detail->GetTableReference(); }
  std::string Key() const { return Reference()->GetDBKey(); }
  std::string Name() const { return Reference()->GetTableName(); }
  SmartPtr<PartialTableReference> Partial() const;
  /// In the server's order; without meta-attributes unless these are wanted.
  std::vector<SmartPtr<AttributeDetail>> const& Attributes();
  SmartPtr<AttributeDetail> Attribute(std::string const& name);
  SmartPtr<AttributeReference> ReferenceTo(AttributeDetail const& attribute) const;
  /// Parameters of a point or curve attribute by name.
  std::map<std::string, SmartPtr<ParameterDetail>> const& Parameters(
      AttributeDetail const& attribute);

 private:
  Connection& m_connection;
  SmartPtr<TableDetail> m_detail;
  std::vector<SmartPtr<AttributeDetail>> m_attributes;
  std::map<int, std::map<std::string, SmartPtr<ParameterDetail>>> m_parameters;
};

/// A record as lists show it; the folder is its path in the tree, "/" between the names.
struct Entry {
  SmartPtr<RecordReference> record;
  std::string name;
  std::string fullName;
  std::string folder;
};

/// Folder paths, with "/" and "\" in names written "\/" and "\\".
std::string PathBelow(std::string const& folder, std::string const& name);
std::vector<std::string> PathParts(std::string const& path);

/// A folder with its path as the server spells it.
struct FolderAt {
  SmartPtr<RecordReference> record;
  std::string path;
};
/// The folder with that path; the top of the tree for an empty one. Throws `UsageFailure` when
/// there is no such folder.
FolderAt FindFolder(Connection& connection, TableOf const& table, std::string const& path);

/// Walks the tree of a table, one folder at a call, so that a tree of any size takes little memory.
class TreeWalk {
 public:
  /// Begins at what `FindFolder` finds; of the records only those of the subset for one that is not
  /// empty.
  TreeWalk(Connection& connection, TableOf const& table, std::string const& folder,
           std::string const& subset);

  struct Step {
    Entry entry;
    bool isFolder = false;
    int depth = 0;  ///< 0 for what lies directly below the beginning
  };
  /// The next record or folder, a folder before what is in it; false at the end. Does not step into
  /// folders deeper than `maxDepth`.
  bool Next(Step& step, int maxDepth);

 private:
  struct Level {
    std::vector<SmartPtr<TreeRecord>> records;
    std::size_t next = 0;
    std::string folder;
  };
  void Enter(SmartPtr<RecordReference> const& folder, std::string const& path);

  Connection& m_connection;
  SmartPtr<RecordFilter> m_filter;
  std::vector<Level> m_levels;
};

/// Lets only the records of a subset through; null, which lets all through, for an empty name.
SmartPtr<RecordFilter> FilterOf(TableOf const& table, std::string const& subset);

/// Top of the table's tree.
SmartPtr<RecordReference> RootOf(Connection& connection, TableOf const& table);
std::vector<SmartPtr<TreeRecord>> ChildrenOf(Connection& connection,
                                             SmartPtr<RecordReference> const& parent,
                                             SmartPtr<RecordFilter> const& filter = nullptr);
/// The records themselves as the tree shows them.
SmartPtr<GetTreeRecordsResponse> TreeRecordsOf(
    Connection& connection, std::vector<SmartPtr<RecordReference>> const& records);
bool IsFolder(TreeRecord const& record);

std::vector<Entry> EntriesOf(SimpleTextSearchResponse const& found);
/// The records with that short or full name; of a subset only, unless its name is empty.
std::vector<Entry> FindByName(Connection& connection, TableOf const& table, std::string const& name,
                              std::string const& subset);
/// The one record with that short or full name, with that identity for "#123", or with that GUID.
Entry FindRecord(Connection& connection, TableOf const& table, std::string const& name);
/// Fills in the folders of the entries, asking for each folder once.
class FolderFinder {
 public:
  explicit FolderFinder(Connection& connection) : m_connection(connection) {}
  void Fill(std::vector<Entry>& entries);

 private:
  struct Folder {
    std::string name;
    int parent = 0;
  };
  Folder FolderOf(std::string const& dbKey, int history);
  std::string const& PathOf(std::string const& dbKey, int history);

  Connection& m_connection;
  std::map<int, std::string> m_paths;
};

}  // namespace cli

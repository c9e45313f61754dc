#pragma once

#include <map>
#include <string>
#include <vector>

#include "lumo/toolkit/Tree.h"

/// What records have beside values: links to other records, and their subsets. Not installed.
namespace lumo {

class Table;

/// A group of links, as the records of one table see it.
struct LinkGroup {
  std::string name = {};
  SmartPtr<RecordLinkGroupReference> reference = {};
  std::string database = {};  ///< key of the one into which the links lead
  std::string table = {};
  /// Why its links cannot be changed; empty when they can.
  std::string fault = {};
};
/// Those of the table, whichever end of the links it is.
std::vector<LinkGroup> LinkGroupsOf(Connection& connection, TableInfo const& table);

/// By the identities of the records; of these groups alone, or of all for none.
std::map<int, std::vector<LinkedRecords::Group>> LinkedRecordsOf(
    Connection& connection, std::vector<RecordHead> const& records,
    std::vector<SmartPtr<RecordLinkGroupReference>> const& groups = {});
/// Names in the server's order, by the identities of the records. A call for each subset of the
/// table: the server says which of the records pass its filter.
std::map<int, std::vector<std::string>> SubsetsOf(Connection& connection, TableInfo const& table,
                                                  std::vector<RecordHead> const& records);

/// The one record that is called just so: by a name, as "Metals/Steels/C45", as "id:69", or by a
/// GUID. Throws `Error`: NotFound with a name that is alike, Ambiguous with the candidates.
RecordHead FindExactly(Connection& connection, TableInfo const& table, std::string const& text);

/// The relations of a record in the words in which an import takes them.
struct Relations {
  struct Links {
    std::string group = {};
    std::vector<std::string> records = {};  ///< paths
  };
  std::vector<Links> links = {};  ///< without the groups in which the record has none
  std::vector<std::string> subsets = {};
};
/// In the order of the records.
LUMO_API std::vector<Relations> RelationsOf(Table const& table,
                                            std::vector<RecordHead> const& records);

}  // namespace lumo

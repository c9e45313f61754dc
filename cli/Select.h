#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/Commands.h"
#include "cli/Criteria.h"
#include "cli/Names.h"

namespace cli {

/// The units that values are wanted in; null, the attributes' own, when both names are empty.
SmartPtr<UnitConversionContext> UnitsOf(std::string const& unitSystem, std::string const& currency);

/// What a text search or a search by conditions finds in a table.
std::vector<Entry> SearchTable(Connection& connection, TableOf& table, Selection const& what);

/// Hands out the chosen records of a table in chunks, with their folders: those that were named or
/// found, or else the whole tree, folder by folder.
class RecordSource {
 public:
  RecordSource(Connection& connection, TableOf& table, Selection const& what, int chunk);
  /// Null at the end.
  std::optional<std::vector<Entry>> Next();
  /// How many there will be; 0 when nobody knows.
  std::size_t Total() const { return m_entries.size(); }

 private:
  void KeepBelow(std::string const& folder);
  std::vector<Entry> NextOfTree();

  std::size_t m_chunk;
  std::vector<Entry> m_entries;
  std::size_t m_next = 0;
  std::optional<TreeWalk> m_walk;
  FolderFinder m_folders;
};

}  // namespace cli

#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "lumo/toolkit/Condition.h"
#include "lumo/toolkit/OpenedTable.h"
#include "lumo/toolkit/Tree.h"

namespace lumo {

/// Which records of a table are meant.
struct SelectionParts {
  std::shared_ptr<OpenedTable> table;
  std::vector<std::pair<std::string, Match>> conditions = {};
  std::string text = {};
  std::string name = {};
  std::string folder = {};
  std::string subset = {};
  std::optional<std::vector<std::string>> names = {};
  std::optional<std::vector<RecordId>> ids = {};

  bool IsSearch() const { return !text.empty() || !name.empty() || !conditions.empty(); }
};

/// Reads values of a list of records over several connections, on behalf of one of them, and hands
/// them over in the order of the list. Of the options only units and files count.
LUMO_API void ReadValues(
    Connection& connection, std::shared_ptr<OpenedTable> const& table,
    std::vector<RecordHead> const& records, std::vector<std::string> const& attributes,
    ReadOptions const& readOptions,
    std::function<void(std::size_t place, std::vector<Value> const& values)> const& take);

/// Hands out the records that are meant in chunks, with their folders: those that were named or
/// found, or else the whole tree, folder by folder. Not installed.
class LUMO_API RecordSource {
 public:
  /// `size` says how many records the next chunk has.
  RecordSource(std::shared_ptr<SelectionParts const> what, std::function<std::size_t()> size);
  ~RecordSource();

  /// Nothing at the end. Called by one thread at a time.
  std::optional<std::vector<RecordHead>> Next(Connection& connection);
  /// How many there will be; 0 as long as nobody knows. Any thread may ask.
  std::size_t Total() const { return m_total; }

 private:
  void Begin(Connection& connection);
  std::vector<RecordHead> Search(Connection& connection) const;
  Condition ConditionOf(Connection& connection) const;
  std::vector<RecordHead> NextOfList(Connection& connection);
  std::vector<RecordHead> NextOfTree(Connection& connection);

  std::shared_ptr<SelectionParts const> m_what;
  std::function<std::size_t()> m_size;
  std::atomic<std::size_t> m_total{0};
  bool m_hasBegun = false;
  std::string m_folder;  // below which records are to be, as the server spells it
  std::vector<RecordHead> m_heads;
  std::size_t m_next = 0;
  std::optional<TreeWalk> m_walk;
  FolderPaths m_folders;
};

}  // namespace lumo

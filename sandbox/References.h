#pragma once

#include <string>

#include "Checker.h"
#include "Store.h"

namespace sandbox {

/// A table as a request names it.
struct TableName {
  int identity = 0;
  std::string guid;
  std::string name;
  std::string dbKey;
  bool IsEmpty() const { return identity == 0 && guid.empty() && name.empty(); }
};

/// A subset as a request names it: by identity, or by name and perhaps table.
struct SubsetName {
  std::string dbKey;
  int identity = 0;
  TableName table;
  std::string name;
};

/// The key of an existing database; throws `Fault` for any other.
std::string KnownKey(Store& store, pugi::xml_node node);

TableName ReadTable(Store& store, pugi::xml_node node);
SubsetName ReadSubset(Store& store, pugi::xml_node node);

/// The table that answers to every identifier that was given; throws `Fault` when there is none.
Table FindTable(Store& store, TableName const& name);
/// The same for a subset. A name that several tables use needs the table.
Subset FindSubset(Store& store, SubsetName const& name);

/// Appends the children by which a reply names a table.
void WriteTable(pugi::xml_node node, Table const& table);

}  // namespace sandbox

#pragma once

#include <string>
#include <vector>

#include "sandbox/store/Store.h"
#include "sandbox/wire/Checker.h"

namespace sandbox {

/// A table of one of the databases.
struct Table {
  int id = 0;
  std::string guid;
  std::string name;
  std::string dbKey;
  int databaseId = 0;
};

/// A table as a request names it.
struct TableName {
  int identity = 0;
  std::string guid;
  std::string name;
  std::string dbKey;
  bool IsEmpty() const { return identity == 0 && guid.empty() && name.empty(); }
};

std::vector<Table> TablesOf(Store& store, std::string const& dbKey);
Table TableOf(Store& store, int id);

/// The key of an existing database; throws `Fault` for any other, as everything in this room does
/// for what does not exist.
std::string KnownKey(Store& store, pugi::xml_node node);

/// Reads the identifiers of a table up to the database key.
TableName ReadTableIdentifiers(Checker& in);
/// The optional table in the name of a subset, an attribute or a link group.
TableName ReadOwner(Checker& name, std::string const& dbKey);
Table ReadTable(Store& store, pugi::xml_node node);
/// The table that answers to every identifier that was given.
Table FindTable(Store& store, TableName const& name);

/// Append the children by which a reply names a table.
void WriteTable(pugi::xml_node node, Table const& table);
void WriteOwner(pugi::xml_node name, Table const& table);

}  // namespace sandbox

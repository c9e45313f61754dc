#include "References.h"

#include <vector>

#include "Soap.h"

namespace sandbox {
namespace {

/// Reads a table's identifiers up to the database key.
TableName ReadIdentifiers(Checker& in) {
  TableName table;
  if (auto const node = in.Optional("zbt:tableIdentity")) table.identity = IdentityOf(node);
  if (auto const node = in.Optional("zbt:tableGUID")) table.guid = FilledTextOf(node);
  if (auto const node = in.Optional("zbt:tableName")) table.name = FilledTextOf(node);
  return table;
}

bool Answers(Table const& table, TableName const& name) {
  return (name.identity == 0 || name.identity == table.id) &&
         (name.guid.empty() || name.guid == table.guid) &&
         (name.name.empty() || name.name == table.name);
}

std::string Describe(TableName const& name) {
  std::string text;
  if (name.identity != 0) text += " identity " + std::to_string(name.identity);
  if (!name.guid.empty()) text += " GUID " + name.guid;
  if (!name.name.empty()) text += " name \"" + name.name + "\"";
  return text;
}

}  // namespace

std::string KnownKey(Store& store, pugi::xml_node node) {
  std::string key = TextOf(node);
  for (Database const& database : store.Databases()) {
    if (database.key == key) return key;
  }
  throw Fault("there is no database with the key \"" + key + "\"");
}

TableName ReadTable(Store& store, pugi::xml_node node) {
  Checker in(node);
  TableName table = ReadIdentifiers(in);
  table.dbKey = KnownKey(store, in.Required("zbt:dbKey"));
  in.End();
  return table;
}

SubsetName ReadSubset(Store& store, pugi::xml_node node) {
  Checker in(node);
  SubsetName subset;
  subset.dbKey = KnownKey(store, in.Required("zbt:dbKey"));
  if (auto const identity = in.Optional("zbt:subsetIdentity")) {
    subset.identity = IdentityOf(identity);
  } else {
    Checker name(in.Required("zbt:name"));
    if (auto const table = name.Optional("zbt:table")) {
      Checker identifiers(table);
      subset.table = ReadIdentifiers(identifiers);
      identifiers.End();
      if (subset.table.IsEmpty()) throw Fault("the <zbt:table> of a subset's name names no table");
    }
    subset.table.dbKey = subset.dbKey;
    subset.name = TextOf(name.Required("zbt:subsetName"));
    name.End();
  }
  in.End();
  return subset;
}

Table FindTable(Store& store, TableName const& name) {
  if (name.IsEmpty()) throw Fault("the table has neither identity nor GUID nor name");
  for (Table const& table : store.Tables(name.dbKey)) {
    if (Answers(table, name)) return table;
  }
  throw Fault("there is no table with" + Describe(name) + " in \"" + name.dbKey + "\"");
}

Subset FindSubset(Store& store, SubsetName const& name) {
  int const tableId = name.table.IsEmpty() ? 0 : FindTable(store, name.table).id;
  std::vector<Subset> found;
  for (Subset const& subset : store.Subsets(name.dbKey)) {
    bool const isWanted = name.identity != 0 ? subset.id == name.identity
                                             : subset.name == name.name &&
                                                   (tableId == 0 || subset.tableId == tableId);
    if (isWanted) found.push_back(subset);
  }
  if (found.size() == 1) return found.front();
  throw Fault((found.empty() ? "there is no subset " : "more than one table has a subset ") +
              (name.identity != 0 ? "with identity " + std::to_string(name.identity)
                                  : "\"" + name.name + "\"") +
              " in \"" + name.dbKey + "\"");
}

void WriteTable(pugi::xml_node node, Table const& table) {
  AddText(node, "b:tableIdentity", std::to_string(table.id));
  AddText(node, "b:tableGUID", table.guid);
  AddText(node, "b:tableName", table.name);
  AddText(node, "b:dbKey", table.dbKey);
}

}  // namespace sandbox

#include "sandbox/model/Tables.h"

#include "sandbox/Fault.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

constexpr char kTables[] =
    "SELECT t.id, t.guid, t.name, d.key, d.id FROM data_table t"
    " JOIN database d ON d.id = t.database_id WHERE ";

Table TableIn(Row const& row) {
  return {row.Int(0), row.Text(1), row.Text(2), row.Text(3), row.Int(4)};
}

bool Answers(Table const& table, TableName const& name) {
  return (name.identity == 0 || name.identity == table.id) &&
         (name.guid.empty() || name.guid == table.guid) &&
         (name.name.empty() || name.name == table.name);
}

std::string Describe(TableName const& name) {
  std::string text;
  if (name.identity != 0) text += " identity " + Id(name.identity);
  if (!name.guid.empty()) text += " GUID " + name.guid;
  if (!name.name.empty()) text += " name \"" + name.name + "\"";
  return text;
}

}  // namespace

std::vector<Table> TablesOf(Store& store, std::string const& dbKey) {
  std::vector<Table> tables;
  for (Row const& row : store.Rows(std::string(kTables) + "d.key = ? ORDER BY t.id", {dbKey})) {
    tables.push_back(TableIn(row));
  }
  return tables;
}

Table TableOf(Store& store, int id) {
  return TableIn(store.Only(std::string(kTables) + "t.id = ?", {Id(id)}));
}

std::string KnownKey(Store& store, pugi::xml_node node) {
  std::string key = TextOf(node);
  if (store.Rows("SELECT id FROM database WHERE key = ?", {key}).empty()) {
    throw Fault("there is no database with the key \"" + key + "\"");
  }
  return key;
}

TableName ReadTableIdentifiers(Checker& in) {
  TableName table;
  if (auto const node = in.Optional("zbt:tableIdentity")) table.identity = IdentityOf(node);
  if (auto const node = in.Optional("zbt:tableGUID")) table.guid = FilledTextOf(node);
  if (auto const node = in.Optional("zbt:tableName")) table.name = FilledTextOf(node);
  return table;
}

TableName ReadOwner(Checker& name, std::string const& dbKey) {
  TableName owner;
  if (auto const table = name.Optional("zbt:table")) {
    Checker identifiers(table);
    owner = ReadTableIdentifiers(identifiers);
    identifiers.End();
    if (owner.IsEmpty()) throw Fault("the <zbt:table> of a name names no table");
  }
  owner.dbKey = dbKey;
  return owner;
}

Table ReadTable(Store& store, pugi::xml_node node) {
  Checker in(node);
  TableName table = ReadTableIdentifiers(in);
  table.dbKey = KnownKey(store, in.Required("zbt:dbKey"));
  in.End();
  return FindTable(store, table);
}

Table FindTable(Store& store, TableName const& name) {
  if (name.IsEmpty()) throw Fault("the table has neither identity nor GUID nor name");
  for (Table const& table : TablesOf(store, name.dbKey)) {
    if (Answers(table, name)) return table;
  }
  throw Fault("there is no table with" + Describe(name) + " in \"" + name.dbKey + "\"");
}

void WriteTable(pugi::xml_node node, Table const& table) {
  AddText(node, "b:tableIdentity", Id(table.id));
  AddText(node, "b:tableGUID", table.guid);
  AddText(node, "b:tableName", table.name);
  AddText(node, "b:dbKey", table.dbKey);
}

void WriteOwner(pugi::xml_node name, Table const& table) {
  pugi::xml_node owner = name.append_child("b:table");
  AddText(owner, "b:tableIdentity", Id(table.id));
  AddText(owner, "b:tableName", table.name);
}

}  // namespace sandbox

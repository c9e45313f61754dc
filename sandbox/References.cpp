#include "References.h"

#include <algorithm>
#include <set>

#include "Soap.h"

namespace sandbox {
namespace {

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

std::set<std::string> const kPseudoNames = {"name",
                                            "shortName",
                                            "subsets",
                                            "releasedDate",
                                            "modifiedDate",
                                            "recordType",
                                            "recordHistoryIdentity",
                                            "recordColor",
                                            "linkedRecords",
                                            "versionState",
                                            "recordGUID",
                                            "recordHistoryGUID",
                                            "recordVersionNumber",
                                            "tableName",
                                            "childRecords",
                                            "tableFilters",
                                            "writable",
                                            "parentName",
                                            "parentShortName",
                                            "parentRecordHistoryIdentity",
                                            "parentRecordHistoryGUID"};

/// The optional table in the name of a subset, an attribute or a link group.
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

bool IsTrue(pugi::xml_node node, char const* attribute) {
  std::string const text = node.attribute(attribute).value();
  if (text != "true" && text != "false") {
    throw Fault(std::string(attribute) + " must be true or false, not \"" + text + "\"");
  }
  return text == "true";
}

/// Only one thing may answer to a name.
template <class Thing>
Thing Single(std::vector<Thing> const& found, std::string const& what) {
  if (found.empty()) throw Fault("there is no " + what);
  if (found.size() > 1) throw Fault("there are several of " + what + "; name its table");
  return found.front();
}

}  // namespace

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

Table ReadTable(Store& store, pugi::xml_node node) {
  Checker in(node);
  TableName table = ReadTableIdentifiers(in);
  table.dbKey = KnownKey(store, in.Required("zbt:dbKey"));
  in.End();
  return FindTable(store, table);
}

Table FindTable(Store& store, TableName const& name) {
  if (name.IsEmpty()) throw Fault("the table has neither identity nor GUID nor name");
  for (Table const& table : store.Tables(name.dbKey)) {
    if (Answers(table, name)) return table;
  }
  throw Fault("there is no table with" + Describe(name) + " in \"" + name.dbKey + "\"");
}

Subset ReadSubset(Store& store, pugi::xml_node node, Table const* context) {
  Checker in(node);
  std::string const dbKey = KnownKey(store, in.Required("zbt:dbKey"));
  std::string condition;
  std::vector<std::string> values = {dbKey};
  std::string what = "subset ";
  if (auto const identity = in.Optional("zbt:subsetIdentity")) {
    values.push_back(Id(IdentityOf(identity)));
    condition = "s.id = ?";
    what += "with the identity " + values.back();
  } else {
    Checker name(in.Required("zbt:name"));
    TableName owner = ReadOwner(name, dbKey);
    if (owner.IsEmpty() && context != nullptr && context->dbKey == dbKey) {
      owner.identity = context->id;
    }
    values.push_back(TextOf(name.Required("zbt:subsetName")));
    name.End();
    condition = "s.name = ?";
    what += "\"" + values.back() + "\"";
    if (!owner.IsEmpty()) {
      condition += " AND s.table_id = " + Id(FindTable(store, owner).id);
      what += " in that table";
    }
  }
  in.End();
  std::vector<Subset> found;
  for (Row const& row : store.Rows(
           "SELECT s.id, s.name, s.table_id FROM subset s JOIN data_table t ON t.id = s.table_id"
           " JOIN database d ON d.id = t.database_id WHERE d.key = ? AND " +
               condition,
           values)) {
    found.push_back({row.Int(0), row.Text(1), row.Int(2)});
  }
  return Single(found, what + " in \"" + dbKey + "\"");
}

std::vector<Record> Records(Store& store, std::string const& condition,
                            std::vector<std::string> const& values) {
  std::vector<Record> records;
  for (Row const& row : store.Rows(
           "SELECT r.id, r.history_id, r.table_id, r.parent_id, r.version, r.guid, r.history_guid,"
           " r.short_name, r.long_name, r.state, r.color, d.key, r.is_folder FROM record r"
           " JOIN data_table t ON t.id = r.table_id JOIN database d ON d.id = t.database_id"
           " WHERE " +
               condition,
           values)) {
    records.push_back({row.Int(0), row.Int(1), row.Int(2), row.Int(3), row.Int(4), row.Text(5),
                       row.Text(6), row.Text(7), row.Text(8), row.Text(9), row.Text(10),
                       row.Text(11), row.IsSet(12)});
  }
  return records;
}

Record ReadRecord(Store& store, pugi::xml_node node) {
  Checker in(node);
  std::string const dbKey = KnownKey(store, in.Required("zbt:dbKey"));
  std::string condition = "d.key = ?";
  std::vector<std::string> values = {dbKey};
  bool isVersion = false;
  if (auto const identity = in.Optional("zbt:identity")) {
    Checker history(identity);
    condition += " AND r.history_id = ?";
    values.push_back(Id(IdentityOf(history.Required("zbt:recordHistoryIdentity"))));
    history.End();
  }
  if (auto const guid = in.Optional("zbt:recordGUID")) {
    condition += " AND r.guid = ?";
    values.push_back(FilledTextOf(guid));
    isVersion = true;
  }
  if (auto const guid = in.Optional("zbt:recordHistoryGUID")) {
    condition += " AND r.history_guid = ?";
    values.push_back(FilledTextOf(guid));
  }
  in.End();
  if (values.size() == 1) throw Fault("the record has neither identity nor GUID");
  if (!isVersion) condition += " AND r.is_current = 1";
  std::string what = "record with";
  for (std::size_t i = 1; i < values.size(); ++i) what += " " + values[i];
  return Single(Records(store, condition, values), what + " in \"" + dbKey + "\"");
}

std::vector<Record> ReadRecords(Store& store, pugi::xml_node list, char const* item) {
  std::vector<Record> records;
  Checker in(list);
  while (in.HasMore()) records.push_back(ReadRecord(store, in.Required(item)));
  return records;
}

std::vector<Attribute> Attributes(Store& store, std::string const& condition,
                                  std::vector<std::string> const& values) {
  std::vector<Attribute> attributes;
  for (Row const& row :
       store.Rows("SELECT a.id, a.table_id, a.about_id, a.name, a.type, a.unit, a.standard_name,"
                  " a.is_multi_valued, a.is_gridded FROM attribute a"
                  " JOIN data_table t ON t.id = a.table_id JOIN database d ON d.id = t.database_id"
                  " WHERE " +
                      condition + " ORDER BY a.id",
                  values)) {
    attributes.push_back({row.Int(0), row.Int(1), row.Int(2), row.Text(3), row.Text(4), row.Text(5),
                          row.Text(6), row.IsSet(7), row.IsSet(8)});
  }
  return attributes;
}

AttributeName ReadAttributeName(Store& store, pugi::xml_node node) {
  Checker in(node);
  AttributeName attribute;
  if (auto const key = in.Optional("zbt:dbKey")) {
    attribute.dbKey = KnownKey(store, key);
    if (auto const identity = in.Optional("zbt:attributeIdentity")) {
      attribute.identity = IdentityOf(identity);
      in.End();
      return attribute;
    }
  }
  pugi::xml_node const nameNode = in.Required("zbt:name", {"zbt:isStandard"});
  in.End();
  attribute.isStandard = IsTrue(nameNode, "zbt:isStandard");
  Checker name(nameNode);
  if (attribute.dbKey.empty()) {
    attribute.isPseudo = true;
    attribute.name = TextOf(name.Required("zbt:pseudo"));
    if (kPseudoNames.count(attribute.name) == 0) {
      throw Fault("there is no pseudo-attribute \"" + attribute.name + "\"");
    }
  } else {
    if (!attribute.isStandard) attribute.table = ReadOwner(name, attribute.dbKey);
    attribute.name = FilledTextOf(name.Required("zbt:attributeName"));
  }
  name.End();
  return attribute;
}

std::optional<Attribute> AttributeIn(Store& store, AttributeName const& name, int tableId) {
  std::string condition = "d.key = ? AND a.table_id = ?";
  std::vector<std::string> values = {name.dbKey, Id(tableId)};
  if (name.identity != 0) {
    condition += " AND a.id = ?";
    values.push_back(Id(name.identity));
  } else {
    condition += name.isStandard ? " AND a.standard_name = ?" : " AND a.name = ?";
    values.push_back(name.name);
    if (!name.table.IsEmpty() && FindTable(store, name.table).id != tableId) return {};
  }
  std::vector<Attribute> const found = Attributes(store, condition, values);
  return found.empty() ? std::nullopt : std::optional<Attribute>(found.front());
}

Attribute ReadAttribute(Store& store, pugi::xml_node node) {
  AttributeName const name = ReadAttributeName(store, node);
  if (name.isPseudo) throw Fault("a pseudo-attribute has no place here");
  std::vector<Attribute> found;
  for (Table const& table : store.Tables(name.dbKey)) {
    if (auto const attribute = AttributeIn(store, name, table.id)) found.push_back(*attribute);
  }
  if (name.isStandard && found.size() > 1) found.resize(1);
  std::string const what =
      name.identity != 0 ? "with the identity " + Id(name.identity) : "\"" + name.name + "\"";
  return Single(found, "attribute " + what + " in \"" + name.dbKey + "\"");
}

std::vector<Attribute> ReadAttributes(Store& store, pugi::xml_node list) {
  std::vector<Attribute> attributes;
  Checker in(list);
  while (in.HasMore()) attributes.push_back(ReadAttribute(store, in.Required("zbt:attribute")));
  return attributes;
}

std::vector<LinkGroup> LinkGroups(Store& store, std::string const& condition,
                                  std::vector<std::string> const& values) {
  std::vector<LinkGroup> groups;
  for (Row const& row :
       store.Rows("SELECT g.id, g.from_table_id, g.to_table_id, g.name, g.reverse_name, g.kind"
                  " FROM record_link_group g JOIN data_table t ON t.id = g.from_table_id"
                  " JOIN database d ON d.id = t.database_id WHERE " +
                      condition + " ORDER BY g.id",
                  values)) {
    groups.push_back(
        {row.Int(0), row.Int(1), row.Int(2), row.Text(3), row.Text(4), row.Text(5), false});
  }
  return groups;
}

LinkGroup ReadLinkGroup(Store& store, pugi::xml_node node) {
  Checker in(node);
  std::string const dbKey = KnownKey(store, in.Required("zbt:dbKey"));
  if (auto const identity =
          in.Optional("zbt:recordLinkGroupIdentity", {"zbt:recordLinkGroupType"})) {
    in.End();
    // The reverse of a group has the same identity, negated.
    int const id = IdentityOf(identity);
    std::vector<LinkGroup> found =
        LinkGroups(store, "d.key = ? AND g.id = ?", {dbKey, Id(std::abs(id))});
    for (LinkGroup& group : found) group.isReverse = id < 0;
    return Single(found, "link group with the identity " + Id(id) + " in \"" + dbKey + "\"");
  }
  Checker name(in.Required("zbt:name"));
  in.End();
  TableName const owner = ReadOwner(name, dbKey);
  pugi::xml_node const groupName = name.Required("zbt:recordLinkGroupName", {"zbt:isStandard"});
  name.End();
  std::string const text = TextOf(groupName);
  bool const isStandard = IsTrue(groupName, "zbt:isStandard");
  std::vector<LinkGroup> found =
      isStandard ? LinkGroups(store, "d.key = ? AND g.standard_name = ?", {dbKey, text})
                 : LinkGroups(store, "d.key = ? AND ? IN (g.name, g.reverse_name)", {dbKey, text});
  for (LinkGroup& group : found) group.isReverse = !isStandard && group.name != text;
  if (!owner.IsEmpty()) {
    int const table = FindTable(store, owner).id;
    found.erase(std::remove_if(found.begin(), found.end(),
                               [table](LinkGroup const& group) {
                                 return (group.isReverse ? group.toTable : group.fromTable) !=
                                        table;
                               }),
                found.end());
  }
  return Single(found, "link group \"" + text + "\" in \"" + dbKey + "\"");
}

Parameter ReadParameter(Store& store, pugi::xml_node node, std::string* dbKey) {
  Checker in(node);
  std::string const key = KnownKey(store, in.Required("zbt:dbKey"));
  if (dbKey != nullptr) *dbKey = key;
  std::string condition = "p.id = ?";
  std::string value;
  if (auto const identity = in.Optional("zbt:parameterIdentity")) {
    value = Id(IdentityOf(identity));
  } else {
    condition = "p.name = ?";
    value = FilledTextOf(in.Required("zbt:name"));
  }
  in.End();
  auto const rows = store.Rows(
      "SELECT p.id, p.name, p.unit, p.type FROM parameter p JOIN database d"
      " ON d.id = p.database_id WHERE d.key = ? AND " +
          condition,
      {key, value});
  if (rows.empty()) throw Fault("there is no parameter " + value + " in \"" + key + "\"");
  return {rows[0].Int(0), rows[0].Text(1), rows[0].Text(2), rows[0].Text(3)};
}

std::optional<std::vector<int>> ReadFilter(Store& store, pugi::xml_node node) {
  if (!node) return {};
  std::vector<int> ids;
  Checker in(node);
  if (auto const profile = in.Optional("zbt:Profile")) {
    Checker key(profile);
    std::string const name = FilledTextOf(key.Required("zbt:Key"));
    key.End();
    in.End();
    // A profile is the subset of its name, in whichever tables have one.
    for (Row const& row : store.Rows("SELECT id FROM subset WHERE name = ?", {name})) {
      ids.push_back(row.Int(0));
    }
    if (ids.empty()) throw Fault("there is no profile \"" + name + "\"");
    return ids;
  }
  Checker subsets(in.Required("zbt:subsetReferences"));
  in.End();
  do {
    ids.push_back(ReadSubset(store, subsets.Required("zbt:subset")).id);
  } while (subsets.HasMore());
  return ids;
}

bool Passes(Store& store, Record const& record, std::optional<std::vector<int>> const& subsets) {
  if (!subsets || record.isFolder) return true;
  return std::any_of(subsets->begin(), subsets->end(), [&](int subset) {
    return !store
                .Rows("SELECT 1 FROM record_subset WHERE record_id = ? AND subset_id = ?",
                      {Id(record.id), Id(subset)})
                .empty();
  });
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

void WriteRecord(pugi::xml_node node, Record const& record, bool withGuids) {
  AddText(node, "b:dbKey", record.dbKey);
  AddText(node.append_child("b:identity"), "b:recordHistoryIdentity", Id(record.historyId));
  if (!withGuids) return;
  AddText(node, "b:recordGUID", record.guid);
  AddText(node, "b:recordHistoryGUID", record.historyGuid);
}

void WriteNamedRecord(pugi::xml_node node, Record const& record, bool withGuids) {
  AddText(node, "b:shortName", record.shortName);
  AddText(node, "b:fullName", record.longName);
  WriteRecord(node.append_child("b:recordReference"), record, withGuids);
}

void WriteAttribute(Store& store, pugi::xml_node node, Attribute const& attribute) {
  Table const table = store.TableOf(attribute.tableId);
  AddText(node, "b:dbKey", table.dbKey);
  AddText(node, "b:attributeIdentity", Id(attribute.id));
  pugi::xml_node name = node.append_child("b:name");
  name.append_attribute("b:isStandard") = "false";
  WriteOwner(name, table);
  AddText(name, "b:attributeName", attribute.name);
}

void WriteNamedAttribute(Store& store, pugi::xml_node node, Attribute const& attribute) {
  WriteAttribute(store, node.append_child("b:attribute"), attribute);
  AddText(node, "b:name", attribute.name);
  AddText(node, "b:isMeta", attribute.aboutId != 0 ? "true" : "false");
  if (attribute.aboutId == 0) return;
  Attribute const about = Attributes(store, "a.id = ?", {Id(attribute.aboutId)}).at(0);
  WriteNamedAttribute(store, node.append_child("b:about"), about);
}

void WriteLinkGroup(Store& store, pugi::xml_node node, LinkGroup const& group, bool isReverse) {
  Table const table = store.TableOf(isReverse ? group.toTable : group.fromTable);
  AddText(node, "b:dbKey", table.dbKey);
  AddText(node, "b:recordLinkGroupIdentity", Id(isReverse ? -group.id : group.id))
      .append_attribute("b:recordLinkGroupType") = group.kind.c_str();
  pugi::xml_node name = node.append_child("b:name");
  WriteOwner(name, table);
  AddText(name, "b:recordLinkGroupName", isReverse ? group.reverseName : group.name)
      .append_attribute("b:isStandard") = "false";
}

void WriteParameter(pugi::xml_node node, Parameter const& parameter, std::string const& dbKey) {
  AddText(node, "b:dbKey", dbKey);
  AddText(node, "b:parameterIdentity", Id(parameter.id));
  AddText(node, "b:name", parameter.name);
}

void WriteUnit(Store& store, pugi::xml_node node, std::string const& symbol) {
  auto const rows = store.Rows("SELECT name FROM unit WHERE symbol = ?", {symbol});
  AddText(node, "b:UnitName", rows.empty() ? symbol : rows[0].Text(0));
  AddText(node, "b:UnitSymbol", symbol);
}

}  // namespace sandbox

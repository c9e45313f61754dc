#include "sandbox/model/Attributes.h"

#include <set>

#include "sandbox/Fault.h"
#include "sandbox/model/Single.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

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

}  // namespace

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
  for (Table const& table : TablesOf(store, name.dbKey)) {
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

void WriteAttribute(Store& store, pugi::xml_node node, Attribute const& attribute) {
  Table const table = TableOf(store, attribute.tableId);
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

}  // namespace sandbox

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Operations.h"
#include "References.h"
#include "Soap.h"

namespace sandbox {
namespace {

constexpr std::string_view kFilterWords[] = {
    "MaterialsTablesOnly",        "ProcessesTablesOnly",
    "SubstancesTablesOnly",       "LegislationsTablesOnly",
    "TransportTypesTablesOnly",   "RegionsTablesOnly",
    "EndOfLifeOptionsTablesOnly", "EnergyConversionOptionsTablesOnly",
    "CoatingsTablesOnly",         "PartsTablesOnly",
    "InHouseTablesOnly",          "SequenceSpecificationsTablesOnly",
    "ElementsTablesOnly",         "UniverseTablesOnly",
    "ProducersTablesOnly",        "ShapeTablesOnly",
    "ReferenceTablesOnly",        "MobileUseTypesTablesOnly",
};
constexpr std::string_view kSelectorWords[] = {"NonMetaAttributes", "MetaAttributes",
                                               "StandardAttributes"};

template <std::size_t N>
std::string KnownWord(std::string_view const (&words)[N], pugi::xml_node node) {
  std::string text = TextOf(node);
  if (std::find(std::begin(words), std::end(words), text) == std::end(words)) {
    throw Fault("<" + std::string(node.name()) + "> does not know the word \"" + text + "\"");
  }
  return text;
}

/// Without selectors a table is listed with its own attributes, those that describe others left
/// out.
std::set<std::string> ReadSelectors(pugi::xml_node wrapper) {
  if (!wrapper) return {"NonMetaAttributes"};
  std::set<std::string> selectors;
  Checker in(wrapper);
  do {
    selectors.insert(KnownWord(kSelectorWords, in.Required("brow:attributeSelector")));
  } while (in.HasMore());
  return selectors;
}

/// Appends the children that qualify the name of an attribute or subset with its table.
void WriteOwner(pugi::xml_node name, Table const& table) {
  pugi::xml_node owner = name.append_child("b:table");
  AddText(owner, "b:tableIdentity", std::to_string(table.id));
  AddText(owner, "b:tableName", table.name);
}

void WriteAttribute(pugi::xml_node attributes, Table const& table, Attribute const& attribute) {
  pugi::xml_node element = attributes.append_child("b:attribute");
  AddText(element, "b:dbKey", table.dbKey);
  AddText(element, "b:attributeIdentity", std::to_string(attribute.id));
  pugi::xml_node name = element.append_child("b:name");
  name.append_attribute("b:isStandard") = "false";
  WriteOwner(name, table);
  AddText(name, "b:attributeName", attribute.name);
}

/// A standard name belongs to the whole database: it has neither identity nor table.
void WriteStandardAttribute(pugi::xml_node attributes, Table const& table,
                            std::string const& standardName) {
  pugi::xml_node element = attributes.append_child("b:attribute");
  AddText(element, "b:dbKey", table.dbKey);
  pugi::xml_node name = element.append_child("b:name");
  name.append_attribute("b:isStandard") = "true";
  AddText(name, "b:attributeName", standardName);
}

void WriteTableDetail(Store& store, pugi::xml_node node, Table const& table,
                      std::set<std::string> const& selectors) {
  WriteTable(node.append_child("b:table"), table);
  pugi::xml_node attributes = node.append_child("b:attributeReferences");
  for (Attribute const& attribute : store.Attributes(table.id)) {
    if (selectors.count(attribute.isMeta ? "MetaAttributes" : "NonMetaAttributes") != 0) {
      WriteAttribute(attributes, table, attribute);
    }
  }
  pugi::xml_node standardAttributes = node.append_child("b:standardAttributeReferences");
  if (selectors.count("StandardAttributes") != 0) {
    for (std::string const& name : store.StandardNames(table.id)) {
      WriteStandardAttribute(standardAttributes, table, name);
    }
  }
  pugi::xml_node filters = node.append_child("b:tableFilters");
  for (std::string const& word : store.TableFilters(table.id)) {
    AddText(filters, "b:tableFilter", word);
  }
}

void WriteSubsetDetail(pugi::xml_node node, Subset const& subset, Table const& table) {
  AddText(node, "b:name", subset.name);
  pugi::xml_node reference = node.append_child("b:subset");
  AddText(reference, "b:dbKey", table.dbKey);
  AddText(reference, "b:subsetIdentity", std::to_string(subset.id));
  pugi::xml_node name = reference.append_child("b:name");
  WriteOwner(name, table);
  AddText(name, "b:subsetName", subset.name);
  WriteTable(node.append_child("b:table"), table);
}

}  // namespace

void GetDatabases(Store& store, Checker& /*request*/, pugi::xml_node response) {
  pugi::xml_node details = response.append_child("databaseDetails");
  for (Database const& database : store.Databases()) {
    pugi::xml_node element = details.append_child("database");
    AddText(element, "b:dbKey", database.key);
    AddText(element, "b:volumeName", database.name);
  }
}

void GetTables(Store& store, Checker& request, pugi::xml_node response) {
  std::string const dbKey = KnownKey(store, request.Required("brow:dbKey"));
  std::string filter;
  if (auto const node = request.Optional("brow:tableFilter")) {
    filter = KnownWord(kFilterWords, node);
  }
  std::set<std::string> const selectors =
      ReadSelectors(request.Optional("brow:attributeSelectors"));
  request.End();

  pugi::xml_node details = response.append_child("tableDetails");
  for (Table const& table : store.Tables(dbKey)) {
    std::vector<std::string> const words = store.TableFilters(table.id);
    bool const belongs =
        filter.empty() || std::find(words.begin(), words.end(), filter) != words.end();
    if (belongs) WriteTableDetail(store, details.append_child("table"), table, selectors);
  }
}

void GetSubsets(Store& store, Checker& request, pugi::xml_node response) {
  pugi::xml_node const tableNode = request.Optional("brow:table");
  pugi::xml_node const subsetNodes = request.Optional("zbt:subsetReferences");
  request.End();
  if (!tableNode && !subsetNodes) {
    throw Fault("<brow:GetSubsets> must hold <brow:table> or <zbt:subsetReferences>");
  }

  Table wanted;
  if (tableNode) wanted = FindTable(store, ReadTable(store, tableNode));
  pugi::xml_node details = response.append_child("subsetDetails");
  if (!subsetNodes) {
    for (Subset const& subset : store.Subsets(wanted.dbKey)) {
      if (subset.tableId != wanted.id) continue;
      WriteSubsetDetail(details.append_child("subsetDetail"), subset, wanted);
    }
    return;
  }
  Checker in(subsetNodes);
  do {
    SubsetName name = ReadSubset(store, in.Required("zbt:subset"));
    bool const isNameAlone = name.identity == 0 && name.table.IsEmpty();
    if (tableNode && isNameAlone && name.dbKey == wanted.dbKey) name.table.identity = wanted.id;
    Subset const subset = FindSubset(store, name);
    if (tableNode && (subset.tableId != wanted.id || name.dbKey != wanted.dbKey)) {
      throw Fault("the subset \"" + subset.name + "\" does not belong to the table");
    }
    TableName owner;
    owner.identity = subset.tableId;
    owner.dbKey = name.dbKey;
    WriteSubsetDetail(details.append_child("subsetDetail"), subset, FindTable(store, owner));
  } while (in.HasMore());
}

}  // namespace sandbox

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/model/Attributes.h"
#include "sandbox/model/Tables.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

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

/// A standard name belongs to the whole database: it has neither identity nor table.
void WriteStandardAttribute(pugi::xml_node attributes, Table const& table,
                            std::string const& standardName) {
  pugi::xml_node element = attributes.append_child("b:attribute");
  AddText(element, "b:dbKey", table.dbKey);
  pugi::xml_node name = element.append_child("b:name");
  name.append_attribute("b:isStandard") = "true";
  AddText(name, "b:attributeName", standardName);
}

std::vector<std::string> FilterWords(Store& store, int tableId) {
  std::vector<std::string> words;
  for (Row const& row : store.Rows("SELECT word FROM table_filter WHERE table_id = ? ORDER BY word",
                                   {std::to_string(tableId)})) {
    words.push_back(row.Text(0));
  }
  return words;
}

void WriteTableDetail(Store& store, pugi::xml_node node, Table const& table,
                      std::set<std::string> const& selectors) {
  WriteTable(node.append_child("b:table"), table);
  pugi::xml_node attributes = node.append_child("b:attributeReferences");
  std::string const id = std::to_string(table.id);
  for (Attribute const& attribute : Attributes(store, "a.table_id = ?", {id})) {
    bool const isMeta = attribute.aboutId != 0;
    if (selectors.count(isMeta ? "MetaAttributes" : "NonMetaAttributes") != 0) {
      WriteAttribute(store, attributes.append_child("b:attribute"), attribute);
    }
  }
  pugi::xml_node standardAttributes = node.append_child("b:standardAttributeReferences");
  if (selectors.count("StandardAttributes") != 0) {
    for (Attribute const& attribute :
         Attributes(store, "a.table_id = ? AND a.standard_name <> ''", {id})) {
      WriteStandardAttribute(standardAttributes, table, attribute.standardName);
    }
  }
  pugi::xml_node filters = node.append_child("b:tableFilters");
  for (std::string const& word : FilterWords(store, table.id)) {
    AddText(filters, "b:tableFilter", word);
  }
}

}  // namespace

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
  for (Table const& table : TablesOf(store, dbKey)) {
    std::vector<std::string> const words = FilterWords(store, table.id);
    bool const belongs =
        filter.empty() || std::find(words.begin(), words.end(), filter) != words.end();
    if (belongs) WriteTableDetail(store, details.append_child("table"), table, selectors);
  }
}

}  // namespace sandbox

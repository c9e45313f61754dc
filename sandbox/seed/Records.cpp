#include "sandbox/seed/Records.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/model/Records.h"
#include "sandbox/seed/SeedData.h"
#include "sandbox/seed/TableFiller.h"

namespace sandbox {
namespace {

constexpr char kKey[] = "ENG_MATERIALS";

void AddElements(TableFiller& elements, Content content) {
  char const* const names[] = {
      "Symbol",        "Atomic number", "Atomic weight",     "Density at 20 degC",
      "Melting point", "Boiling point", "Crystal structure", "Electronegativity (Pauling)",
      "Discovered"};
  std::size_t const columns[] = {0, 2, 3, 4, 5, 6, 7, 8, 9};
  for (std::vector<std::string> const& line : Lines(kElementData, content)) {
    int const record = elements.AddIn("", line.at(0), line.at(1));
    for (std::size_t i = 0; i < std::size(columns); ++i) {
      std::string text = line.at(columns[i]);
      if (columns[i] == 9 && text != "-") text += "-01-01T00:00:00";
      elements.SetValue(record, names[i], text);
    }
    if (line.size() > 10) elements.SetValue(record, "subsets", line[10]);
  }
}

/// Two older or newer versions of one record, and one that was withdrawn, so that every state
/// occurs.
void AddVersions(Store& store) {
  constexpr char kCopy[] =
      "INSERT INTO record (table_id, parent_id, history_id, guid, history_guid, short_name,"
      " long_name, version, state, is_current) SELECT table_id, parent_id, history_id, ?,"
      " history_guid, short_name, long_name, ?, ?, 0 FROM record"
      " WHERE short_name = 'AW-6061-T6' AND is_current = 1";
  store.Run("UPDATE record SET version = 2 WHERE short_name = 'AW-6061-T6'");
  store.Insert(kCopy, {GuidOf("AW-6061-T6/1"), "1", "Superseded"});
  store.Insert(kCopy, {GuidOf("AW-6061-T6/3"), "3", "Unreleased"});
  store.Run("UPDATE record SET state = 'Withdrawn' WHERE short_name = 'PEEK'");
}

void AddLinks(Store& store, std::map<std::string, TableFiller*> const& tables, Content content) {
  struct Group {
    char const* name;
    char const* to;
    char const* reverse;
    char const* standardName;
  };
  constexpr Group kGroups[] = {
      {"Producers", "Material Producers", "Materials produced", "Producers"},
      {"Processes", "Processes", "Materials processed", ""},
      {"References", "References", "Materials described", "References"}};
  struct Made {
    std::string id;
    char const* to;
  };
  std::map<std::string, Made> groups;
  for (Group const& group : kGroups) {
    store.Insert(
        "INSERT INTO record_link_group (from_table_id, to_table_id, name, reverse_name, kind,"
        " standard_name) SELECT f.id, t.id, ?, ?, 'static', ? FROM data_table f, data_table t"
        " WHERE f.name = 'Materials' AND t.name = ?",
        {group.name, group.reverse, group.standardName, group.to});
    groups[group.name] = {store.LastId(), group.to};
  }
  for (std::vector<std::string> const& line : Lines(kLinkData, content)) {
    Made const& group = groups.at(line.at(0));
    TableFiller const& targets = *tables.at(group.to);
    for (std::string const& target : Split(line.at(2), ';')) {
      // The first version of a record gives its history the identity.
      store.Insert(
          "INSERT INTO record_link SELECT ?, f.history_id, t.history_id, ?, '' FROM record f,"
          " record t WHERE f.id = ? AND t.id = ?",
          {group.id, line.size() > 3 ? line[3] : "",
           std::to_string(tables.at("Materials")->Known(line[1])),
           std::to_string(targets.Known(target))});
    }
  }
}

}  // namespace

void AddRecords(Store& store, Content content) {
  std::map<std::string, TableFiller*> tables;
  std::vector<std::unique_ptr<TableFiller>> fillers;
  for (std::string const name : {"Materials", "Processes", "Material Producers", "References"}) {
    fillers.push_back(std::make_unique<TableFiller>(store, kKey, name));
    tables[name] = fillers.back().get();
  }
  tables.at("Materials")->AddLines(kMetalData, content);
  tables.at("Materials")->AddLines(kMaterialData, content);
  tables.at("Processes")->AddLines(kProcessData, content);
  tables.at("Material Producers")->AddLines(kProducerData, content);
  tables.at("References")->AddLines(kReferenceData, content);
  for (std::vector<std::string> const& line : Lines(kValueData, content)) {
    TableFiller& table = *tables.at(line.at(0));
    // What has no file of its own in the minimal content begins with its first value.
    bool const isNew = content == Content::Minimal && line.at(0) != "Materials";
    int const record = isNew ? table.Named(line.at(1)) : table.Known(line.at(1));
    table.SetValue(record, line.at(2), line.at(3));
  }
  if (content != Content::Empty) AddVersions(store);
  AddLinks(store, tables, content);
  TableFiller elements(store, "ELEMENTS", "Elements");
  AddElements(elements, content);
}

}  // namespace sandbox

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/model/Attributes.h"
#include "sandbox/model/Data.h"
#include "sandbox/model/LinkGroups.h"
#include "sandbox/model/Records.h"
#include "sandbox/model/Subsets.h"
#include "sandbox/model/Units.h"
#include "sandbox/model/Values.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

/// How values are wanted.
struct Wishes {
  UnitContext units;
  bool useFallback = false;
  bool byUrl = false;
  bool withGuids = false;
};

pugi::xml_node StartValue(pugi::xml_node values, std::string const& name, int identity,
                          std::string const& standardName = "") {
  pugi::xml_node value = values.append_child("attributeValue");
  AddText(value, "b:AttributeName", name);
  AddText(value, "b:AttributeIdentity", Id(identity));
  if (!standardName.empty()) AddText(value, "b:StandardAttributeName", standardName);
  return value;
}

/// The value of a property of the record, in the form of an attribute's value.
void WriteProperty(Store& store, pugi::xml_node values, Record const& record,
                   std::string const& name) {
  Row const row = store.Only(
      "SELECT r.modified, coalesce(p.short_name, ''), coalesce(p.long_name, ''),"
      " coalesce(p.history_id, 0), coalesce(p.history_guid, '') FROM record r"
      " LEFT JOIN record p ON p.id = r.parent_id WHERE r.id = ?",
      {Id(record.id)});
  pugi::xml_node const value = StartValue(values, "[" + name + "]", 0);
  auto const text = [&](std::string const& content) {
    AddText(value, "b:ShortTextDataValue", content);
  };
  auto const number = [&](int content) { AddText(value, "b:IntegerDataValue", Id(content)); };
  auto const list = [&](std::string const& sql, int id) {
    std::string joined;
    for (Row const& entry : store.Rows(sql, {Id(id)})) {
      joined += (joined.empty() ? "" : "\n") + entry.Text(0);
    }
    AddText(value, "b:LongTextDataValue", joined);
  };
  if (name == "name") return text(record.longName);
  if (name == "shortName") return text(record.shortName);
  if (name == "recordType") return text(record.isFolder ? "Folder" : "Record");
  if (name == "recordColor") return text(record.color);
  if (name == "versionState") return text(record.state);
  if (name == "recordGUID") return text(record.guid);
  if (name == "recordHistoryGUID") return text(record.historyGuid);
  if (name == "tableName") return text(TableOf(store, record.tableId).name);
  if (name == "parentName") return text(row.Text(2));
  if (name == "parentShortName") return text(row.Text(1));
  if (name == "parentRecordHistoryGUID") return text(row.Text(4));
  if (name == "recordHistoryIdentity") return number(record.historyId);
  if (name == "recordVersionNumber") return number(record.version);
  if (name == "parentRecordHistoryIdentity") return number(row.Int(3));
  if (name == "writable") {
    AddText(value, "b:LogicalDataValue", "true");
    return;
  }
  if (name == "releasedDate" || name == "modifiedDate") {
    AddText(value, "b:DateDataValue", row.Text(0));
    return;
  }
  if (name == "subsets") {
    return list(
        "SELECT s.name FROM record_subset m JOIN subset s ON s.id = m.subset_id"
        " WHERE m.record_id = ? ORDER BY s.id",
        record.id);
  }
  if (name == "tableFilters") {
    return list("SELECT word FROM table_filter WHERE table_id = ? ORDER BY word", record.tableId);
  }
  if (name == "childRecords") {
    return list("SELECT short_name FROM record WHERE parent_id = ? AND is_current = 1 ORDER BY id",
                record.id);
  }
  // Linked records travel in a form of their own, by link group.
  WriteLinks(store, pugi::xml_node(value).append_child("b:LinkedRecordsDataValue"), record,
             GroupsOf(store, record), {}, false);
}

/// The nearest record above that has a value for the attribute; its row and the value's content.
std::pair<int, std::string> Fallback(Store& store, Record const& record, int attributeId) {
  auto const rows = store.Rows(
      "WITH RECURSIVE above(id) AS (SELECT parent_id FROM record WHERE id = ?1 UNION ALL"
      " SELECT r.parent_id FROM record r JOIN above a ON a.id = r.id)"
      " SELECT a.id, v.xml FROM above a JOIN attribute_value v ON v.record_id = a.id"
      " AND v.attribute_id = ?2 LIMIT 1",
      {Id(record.id), Id(attributeId)});
  if (rows.empty()) return {0, ""};
  return {rows[0].Int(0), rows[0].Text(1)};
}

void WriteAttributeValue(Store& store, pugi::xml_node values, Record const& record,
                         Attribute const& attribute, Wishes const& wishes) {
  auto const rows = store.Rows(
      "SELECT xml, version FROM attribute_value WHERE record_id = ? AND attribute_id = ?",
      {Id(record.id), Id(attribute.id)});
  int holder = record.id;
  std::string xml = rows.empty() ? "" : rows[0].Text(0);
  if (rows.empty()) {
    if (!wishes.useFallback) return;
    std::tie(holder, xml) = Fallback(store, record, attribute.id);
    if (holder == 0) return;
  }
  pugi::xml_node value = StartValue(values, attribute.name, attribute.id, attribute.standardName);
  std::string const url =
      wishes.byUrl ? store.Url() + DataPath(holder, attribute.id) : std::string();
  WriteValue(store, value, attribute, xml, wishes.units, url);
  pugi::xml_node element = value.last_child();
  if (!rows.empty()) element.append_attribute("b:dataVersionNumber") = rows[0].Text(1).c_str();
  element.append_attribute("b:isFallback") = rows.empty() ? "true" : "false";
}

}  // namespace

void GetRecordAttributesByRef(Store& store, Checker& request, pugi::xml_node response) {
  std::vector<AttributeName> names;
  while (auto const node = request.Optional("exp:result", {"xsi:type"})) {
    if (std::string(node.attribute("xsi:type").value()) != "zbt:LumoAttributeReference") {
      throw Fault("<exp:result> must have the type zbt:LumoAttributeReference");
    }
    names.push_back(ReadAttributeName(store, node));
  }
  std::vector<Record> records;
  while (auto const node = request.Optional("exp:recordReference")) {
    records.push_back(ReadRecord(store, node));
  }
  Wishes wishes;
  wishes.units = ReadUnitContext(store, request.Optional("exp:unitConversionContext"));
  auto const filter = ReadFilter(store, request.Optional("exp:filter"));
  wishes.withGuids = BooleanOf(request.Required("exp:populateGUIDs"));
  wishes.useFallback = BooleanOf(request.Required("exp:useFallback"));
  std::string const binary = TextOf(request.Required("exp:binaryDataRepresentation"));
  if (binary != "URL" && binary != "Inline") {
    throw Fault("<exp:binaryDataRepresentation> does not know the word \"" + binary + "\"");
  }
  wishes.byUrl = binary == "URL";
  request.End();
  if (names.empty()) throw Fault("the request asks for no attribute");

  std::map<int, std::vector<std::optional<Attribute>>> known;  // by table
  pugi::xml_node results = response.append_child("results");
  for (Record const& record : records) {
    if (!Passes(store, record, filter)) continue;
    pugi::xml_node data = results.append_child("recordData");
    WriteRecord(data.append_child("record"), record, wishes.withGuids);
    pugi::xml_node values = data.append_child("attributeValues");
    auto const [attributes, isNew] = known.try_emplace(record.tableId);
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (isNew) {
        attributes->second.push_back(
            names[i].isPseudo ? std::nullopt : AttributeIn(store, names[i], record.tableId));
      }
      if (names[i].isPseudo) {
        WriteProperty(store, values, record, names[i].name);
      } else if (attributes->second[i]) {
        WriteAttributeValue(store, values, record, *attributes->second[i], wishes);
      }
    }
  }
}

}  // namespace sandbox

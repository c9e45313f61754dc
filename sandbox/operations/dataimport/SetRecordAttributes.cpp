#include <optional>
#include <random>
#include <string>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/model/Attributes.h"
#include "sandbox/model/Records.h"
#include "sandbox/model/Subsets.h"
#include "sandbox/model/Values.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/dataimport/ErrorMode.h"

namespace sandbox {
namespace {

std::string RandomGuid() { return GuidOf(Id(static_cast<int>(std::random_device{}()))); }

/// A value to import: the attribute, and the element that holds the value.
struct NewValue {
  AttributeName attribute;
  pugi::xml_node value;
};

/// One record of an import as the request says it.
struct ImportedRecord {
  std::vector<NewValue> values;
  bool release = false;
  std::string name;
  bool isFolder = false;
  std::string subsetsMode;
  std::vector<Subset> subsets;
  std::optional<Record> existing;  ///< the record to change or to copy
  std::optional<Record> parent;    ///< of a new record
};

bool Flag(pugi::xml_node node) {
  int const number = IntegerOf(node);
  if (number != 0 && number != 1) {
    throw Fault("<" + std::string(node.name()) + "> must hold 0 or 1");
  }
  return number == 1;
}

ImportedRecord ReadImport(Store& store, pugi::xml_node node) {
  ImportedRecord record;
  Checker in(node);
  Checker values(in.Required("zbt:importAttributeValues"));
  while (values.HasMore()) {
    Checker one(values.Required("zbt:importAttributeValue"));
    NewValue value;
    value.attribute = ReadAttributeName(store, one.Required("zbt:attribute"));
    value.value = one.Required("zbt:value");
    one.End();
    record.values.push_back(value);
  }
  if (auto const release = in.Optional("zbt:releaseRecord")) record.release = Flag(release);
  if (auto const name = in.Optional("zbt:recordName")) record.name = FilledTextOf(name);
  record.isFolder = Flag(in.Required("zbt:isFolder"));
  if (auto const mode = in.Optional("zbt:UpdateSubsetsMode")) record.subsetsMode = TextOf(mode);
  if (auto const subsets = in.Optional("zbt:subsetReferences")) {
    Checker list(subsets);
    do {
      record.subsets.push_back(ReadSubset(store, list.Required("zbt:subset")));
    } while (list.HasMore());
  }
  std::string const mode = node.name();
  if (mode == "zbt:update") {
    record.existing = ReadRecord(store, in.Required("zbt:record"));
  } else {
    if (mode == "zbt:copy") record.existing = ReadRecord(store, in.Required("zbt:sourceRecord"));
    record.parent = ReadRecord(store, in.Required("zbt:parentRecord"));
  }
  in.End();
  return record;
}

/// The row that the import writes to: made anew, copied, or the one that exists.
int RowOf(Store& store, ImportedRecord const& record) {
  if (record.parent) {
    if (record.name.empty() && !record.existing) throw Fault("a new record needs a name");
    if (!record.parent->isFolder) {
      throw Fault("\"" + record.parent->shortName + "\" is no folder and holds no records");
    }
    std::string const name = record.name.empty() ? record.existing->shortName : record.name;
    std::string const state = record.release ? "Released" : "Unreleased";
    int const row = AddRecord(
        store, {record.parent->tableId, record.parent->id, name, name, record.isFolder, state});
    store.Insert(
        "UPDATE record SET guid = ?, history_guid = ?, created_user = 'import' WHERE id = ?",
        {RandomGuid(), RandomGuid(), Id(row)});
    if (record.existing) {
      store.Insert(
          "INSERT INTO attribute_value SELECT ?, attribute_id, xml, low, high, text, 1"
          " FROM attribute_value WHERE record_id = ?",
          {Id(row), Id(record.existing->id)});
    }
    return row;
  }
  std::string const name = record.name.empty() ? record.existing->longName : record.name;
  store.Insert(
      "UPDATE record SET long_name = ?, update_count = update_count + 1, modified_user = 'import',"
      " modified = strftime('%Y-%m-%dT%H:%M:%S', 'now') WHERE id = ?",
      {name, Id(record.existing->id)});
  return record.existing->id;
}

void SetSubsets(Store& store, int row, int tableId, ImportedRecord const& record) {
  if (record.subsetsMode == "Replace") {
    store.Insert("DELETE FROM record_subset WHERE record_id = ?", {Id(row)});
  } else if (!record.subsetsMode.empty() && record.subsetsMode != "Append") {
    throw Fault("<zbt:UpdateSubsetsMode> does not know the word \"" + record.subsetsMode + "\"");
  }
  for (Subset const& subset : record.subsets) {
    if (subset.tableId != tableId) {
      throw Fault("the subset \"" + subset.name + "\" belongs to another table");
    }
    store.Insert("INSERT OR IGNORE INTO record_subset VALUES (?, ?)", {Id(row), Id(subset.id)});
  }
}

/// Takes the record in; returns its row.
int Import(Store& store, pugi::xml_node node) {
  ImportedRecord const record = ReadImport(store, node);
  int const tableId = record.parent ? record.parent->tableId : record.existing->tableId;
  int const row = RowOf(store, record);
  SetSubsets(store, row, tableId, record);
  for (NewValue const& value : record.values) {
    auto const attribute =
        value.attribute.isPseudo ? std::nullopt : AttributeIn(store, value.attribute, tableId);
    if (!attribute) throw Fault("the table has no attribute \"" + value.attribute.name + "\"");
    Checker in(value.value);
    if (auto const empty = in.Optional("zbt:Empty")) {  // takes the value away
      Checker(empty).End();
      in.End();
      store.Insert("DELETE FROM attribute_value WHERE record_id = ? AND attribute_id = ?",
                   {Id(row), Id(attribute->id)});
      continue;
    }
    StoredValue const stored =
        ReadImportValue(store, in, *attribute, CurrentValue(store, row, attribute->id));
    in.End();
    StoreValue(store, row, attribute->id, stored);
  }
  return row;
}

}  // namespace

void SetRecordAttributes(Store& store, Checker& request, pugi::xml_node response) {
  pugi::xml_node const list = request.Required("dat:importRecords");
  bool const isStrict = IsStrict(request.Required("dat:importErrorMode"));
  int threshold = 0;
  if (auto const control = request.Optional("dat:transactionControl", {"zbtCommitThreshold"})) {
    threshold = control.attribute("zbtCommitThreshold").as_int();
    if (threshold <= 0) throw Fault("zbtCommitThreshold must be positive");
  }
  request.End();
  pugi::xml_node imported = response.append_child("recordsImported");
  // In strict mode a fault undoes all since the last commit, and there is none before the end
  // unless a threshold says so. Otherwise each record that fails is undone alone.
  std::optional<Transaction> batch;
  if (isStrict) batch.emplace(store);
  int count = 0;
  Checker records(list);
  while (records.HasMore()) {
    pugi::xml_node const node = records.Next();
    std::string const mode = node.name();
    if (mode != "zbt:update" && mode != "zbt:create" && mode != "zbt:copy") {
      throw Fault("<" + mode + "> is no way to import a record");
    }
    try {
      Transaction one(store);
      int const row = Import(store, node);
      one.Commit();
      WriteNamedRecord(imported.append_child("record"), Records(store, "r.id = ?", {Id(row)}).at(0),
                       true);
    } catch (Fault const&) {
      if (isStrict) throw;
    }
    if (batch && threshold > 0 && ++count % threshold == 0) {
      batch->Commit();
      batch.emplace(store);
    }
  }
  if (batch) batch->Commit();
}

}  // namespace sandbox

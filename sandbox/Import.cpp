#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "Data.h"
#include "Links.h"
#include "Operations.h"
#include "References.h"
#include "SeedData.h"
#include "Soap.h"
#include "Values.h"

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
    StoredValue const stored =
        ReadImportValue(store, in, *attribute, CurrentValue(store, row, attribute->id));
    in.End();
    StoreValue(store, row, attribute->id, stored);
  }
  return row;
}

bool IsStrict(pugi::xml_node node) {
  std::string const mode = TextOf(node);
  if (mode != "FaultAndRollbackOnAnyError" && mode != "LogAndContinueWherePossible") {
    throw Fault("<dat:importErrorMode> does not know the word \"" + mode + "\"");
  }
  return mode == "FaultAndRollbackOnAnyError";
}

/// A change of links: what to do with which pairs.
struct LinkChange {
  bool link = false;
  Record source;
  std::vector<Record> targets;
  std::vector<std::pair<std::string, std::string>> notes;  ///< one per target, of links to make
  bool all = false;                                        ///< unlink from every target
};

std::vector<Record> ReadPlain(Store& store, Checker& in, std::string const& list,
                              std::string const& item) {
  return ReadRecords(store, in.Required(list), item.c_str());
}

/// Reads the sources of single links, with targets that are notated when links are made.
void ReadSources(Store& store, Checker& in, bool link, std::vector<LinkChange>& changes) {
  Checker sources(in.Required("dat:sourceRecords"));
  while (sources.HasMore()) {
    Checker source(sources.Required("dat:sourceRecord"));
    LinkChange change;
    change.link = link;
    change.source = ReadRecord(store, source.Required("dat:record"));
    Checker targets(source.Required("dat:targetRecords"));
    source.End();
    while (targets.HasMore()) {
      pugi::xml_node const target = targets.Required("dat:targetRecord");
      if (!link) {
        change.targets.push_back(ReadRecord(store, target));
        continue;
      }
      Checker notated(target);
      change.targets.push_back(ReadRecord(store, notated.Required("dat:record")));
      std::string const notes = TextOf(notated.Required("dat:notes"));
      change.notes.emplace_back(notes, TextOf(notated.Required("dat:reverseNotes")));
      notated.End();
    }
    changes.push_back(std::move(change));
  }
}

std::vector<LinkChange> ReadChanges(Store& store, Checker& in) {
  std::vector<LinkChange> changes;
  while (auto const node = in.Optional("dat:unlinkAllRecords")) {
    Checker one(node);
    for (Record& source : ReadPlain(store, one, "dat:sourceRecords", "dat:sourceRecord")) {
      changes.push_back({false, std::move(source), {}, {}, true});
    }
    one.End();
  }
  while (auto const node = in.Optional("dat:unlinkRecords")) {
    Checker one(node);
    ReadSources(store, one, false, changes);
    one.End();
  }
  while (auto const node = in.Optional("dat:linkRecords")) {
    Checker one(node);
    ReadSources(store, one, true, changes);
    one.End();
  }
  while (auto const node = in.Optional("dat:linkAllCombinations")) {
    Checker one(node);
    auto const sources = ReadPlain(store, one, "dat:sourceRecords", "dat:sourceRecord");
    auto const targets = ReadPlain(store, one, "dat:targetRecords", "dat:targetRecord");
    one.End();
    for (Record const& source : sources) changes.push_back({true, source, targets, {}, false});
  }
  in.End();
  return changes;
}

/// Makes the change; returns the targets whose links it changed.
std::vector<Record> Apply(Store& store, LinkGroup const& group, LinkChange const& change) {
  int const sourceTable = group.isReverse ? group.toTable : group.fromTable;
  int const targetTable = group.isReverse ? group.fromTable : group.toTable;
  if (change.source.tableId != sourceTable) {
    throw Fault("\"" + change.source.shortName + "\" is in no table of the link group");
  }
  std::vector<Record> const linked = LinkedRecords(store, group, change.source);
  std::vector<Record> changed;
  std::vector<Record> const& targets = change.all ? linked : change.targets;
  for (std::size_t i = 0; i < targets.size(); ++i) {
    Record const& target = targets[i];
    if (target.tableId != targetTable) {
      throw Fault("\"" + target.shortName + "\" is not in the table that the group leads to");
    }
    bool const isLinked = std::any_of(linked.begin(), linked.end(), [&](Record const& other) {
      return other.historyId == target.historyId;
    });
    if (!change.link && !isLinked) throw Fault("\"" + target.shortName + "\" is not linked");
    if (change.link == isLinked) continue;
    std::string from = Id(change.source.historyId);
    std::string to = Id(target.historyId);
    if (group.isReverse) std::swap(from, to);
    if (change.link) {
      auto const notes =
          i < change.notes.size() ? change.notes[i] : std::pair<std::string, std::string>();
      store.Insert("INSERT INTO record_link VALUES (?, ?, ?, ?, ?)",
                   {Id(group.id), from, to, notes.first, notes.second});
    } else {
      store.Insert("DELETE FROM record_link WHERE group_id = ? AND from_id = ? AND to_id = ?",
                   {Id(group.id), from, to});
    }
    changed.push_back(target);
  }
  return changed;
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

void ModifyRecordLinks(Store& store, Checker& request, pugi::xml_node response) {
  LinkGroup const group = ReadLinkGroup(store, request.Required("dat:recordLinkGroup"));
  bool const isStrict = IsStrict(request.Required("dat:importErrorMode"));
  std::string const checks = TextOf(request.Required("dat:recordLinkCheckMode"));
  if (checks != "CheckOnlyForwardLinks" && checks != "CheckForwardAndReverseLinks") {
    throw Fault("<dat:recordLinkCheckMode> does not know the word \"" + checks + "\"");
  }
  Checker modifications(request.Required("dat:recordLinkModifications"));
  request.End();
  Transaction all(store);
  pugi::xml_node linked = response.append_child("linked");
  pugi::xml_node unlinked = response.append_child("unlinked");
  for (LinkChange const& change : ReadChanges(store, modifications)) {
    try {
      Transaction one(store);
      std::vector<Record> const changed = Apply(store, group, change);
      one.Commit();
      if (changed.empty()) continue;
      pugi::xml_node source = (change.link ? linked : unlinked).append_child("sourceRecord");
      WriteNamedRecord(source.append_child("record"), change.source);
      pugi::xml_node targets = source.append_child("targetRecords");
      for (Record const& target : changed) {
        WriteNamedRecord(targets.append_child("targetRecord"), target);
      }
    } catch (Fault const&) {
      if (isStrict) throw;
    }
  }
  all.Commit();
}

void GetUploadAddresses(Store& store, Checker& request, pugi::xml_node response) {
  auto const records = ReadRecords(store, request.Required("dat:records"), "dat:record");
  Checker attributes(request.Required("dat:attributes"));
  std::vector<Attribute> wanted;
  while (attributes.HasMore()) {
    wanted.push_back(ReadAttribute(store, attributes.Required("dat:attribute")));
  }
  request.End();
  pugi::xml_node list = response.append_child("records");
  for (Record const& record : records) {
    pugi::xml_node element = list.append_child("record");
    WriteRecord(element.append_child("recordReference"), record);
    pugi::xml_node addresses = element.append_child("attributes");
    for (Attribute const& attribute : wanted) {
      if (attribute.type != "FILE" && attribute.type != "PICT") {
        throw Fault("\"" + attribute.name + "\" holds neither file nor picture");
      }
      pugi::xml_node address = addresses.append_child("attribute");
      AddText(address, "b:AttributeName", attribute.name);
      AddText(address, "b:AttributeIdentity", Id(attribute.id));
      AddText(address, "b:URL", store.Url() + DataPath(record.id, attribute.id));
    }
  }
}

}  // namespace sandbox

#include "sandbox/model/Records.h"

#include <cstdint>
#include <cstdio>

#include "sandbox/Fault.h"
#include "sandbox/model/Single.h"
#include "sandbox/model/Tables.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

/// 64-bit FNV-1a.
std::uint64_t Hash(std::string const& text, std::uint64_t hash) {
  for (char const c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 1099511628211ULL;
  }
  return hash;
}

}  // namespace

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

std::string GuidOf(std::string const& name) {
  std::uint64_t const high = Hash(name, 14695981039346656037ULL);
  std::uint64_t const low = Hash(name, high);
  char text[37];
  std::snprintf(text, sizeof text, "%08x-%04x-5%03x-a%03x-%012llx",
                static_cast<unsigned>(high >> 32U), static_cast<unsigned>((high >> 16U) & 0xFFFFU),
                static_cast<unsigned>(high & 0xFFFU), static_cast<unsigned>(low >> 52U),
                static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFULL));
  return text;
}

int AddRecord(Store& store, NewRecord const& record) {
  std::string const last = store.Only("SELECT coalesce(max(id), 0) FROM record").Text(0);
  store.Insert(
      "INSERT INTO record (table_id, parent_id, guid, history_guid, short_name, long_name,"
      " is_folder, state, color) VALUES (?, nullif(?, '0'), ?, ?, ?, ?, ?, ?, ?)",
      {std::to_string(record.tableId), std::to_string(record.parentId), GuidOf("record " + last),
       GuidOf("history " + last), record.shortName, record.longName, record.isFolder ? "1" : "0",
       record.state, record.isFolder ? "Navy" : "Black"});
  std::string const id = store.LastId();
  store.Insert("UPDATE record SET history_id = id WHERE id = ?", {id});
  return std::stoi(id);
}

}  // namespace sandbox

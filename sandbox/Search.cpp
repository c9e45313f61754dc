#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "Operations.h"
#include "References.h"
#include "Soap.h"
#include "Units.h"

namespace sandbox {
namespace {

/// What all searches restrict.
struct Scope {
  std::string dbKey;
  std::string tableFilter;
  bool withGuids = false;
  std::optional<std::vector<int>> subsets;
};

void ReadMode(Checker& request) {
  auto const node = request.Optional("sear:searchMode");
  if (!node) return;
  std::string const mode = TextOf(node);
  if (mode != "Normal" && mode != "ReadOnly") {
    throw Fault("<sear:searchMode> does not know the word \"" + mode + "\"");
  }
}

/// A text to look for with LIKE, whatever characters it holds.
std::string Pattern(std::string const& text) {
  std::string pattern = "%";
  for (char const c : text) {
    if (c == '%' || c == '_' || c == '\\') pattern += '\\';
    pattern += c;
  }
  return pattern + "%";
}

bool IsInTables(Store& store, Record const& record, Scope const& scope,
                std::vector<Table> const& tables) {
  bool const isWanted =
      tables.empty() || std::any_of(tables.begin(), tables.end(),
                                    [&](Table const& table) { return table.id == record.tableId; });
  if (!isWanted || scope.tableFilter == "NoFilter") return isWanted;
  return !store
              .Rows("SELECT 1 FROM table_filter WHERE table_id = ? AND word = ?",
                    {Id(record.tableId), scope.tableFilter})
              .empty();
}

void WriteResults(Store& store, pugi::xml_node response, std::vector<Record> const& records,
                  Scope const& scope, std::vector<Table> const& tables = {}) {
  for (Record const& record : records) {
    if (record.isFolder || !Passes(store, record, scope.subsets)) continue;
    if (!IsInTables(store, record, scope, tables)) continue;
    pugi::xml_node result = response.append_child("resultRecords");
    result.append_attribute("color") = record.color.c_str();
    result.append_attribute("type") = "Record";
    WriteNamedRecord(result, record, scope.withGuids);
    AddText(result, "b:ranking", "1");
  }
}

/// One condition of a criteria search as SQL on the attribute's row of values, v.
struct Condition {
  std::string sql;
  std::vector<std::string> values;
  bool isAbsence = false;  ///< holds where no row meets `sql`
};

std::string Figure(Store& store, pugi::xml_node node, Attribute const& attribute) {
  std::string const unit = node.attribute("sear:unit").value();
  return TextOfNumber(Convert(store, RealOf(node), unit, attribute.unit));
}

Condition ReadWords(pugi::xml_node node, char const* joint) {
  Condition condition;
  Checker words(node);
  do {
    std::string const word = TextOf(words.Required("sear:discrete"));
    if (!condition.sql.empty()) condition.sql += joint;
    condition.sql += "instr(char(10) || v.text, char(10) || ? || char(10)) > 0";
    condition.values.push_back(word);
  } while (words.HasMore());
  condition.sql = "(" + condition.sql + ")";
  return condition;
}

Condition ReadBetween(Store& store, pugi::xml_node node, Attribute const& attribute) {
  Condition condition = {"1", {}};
  Checker ends(node);
  if (ends.IsNext("sear:lowEnd")) {
    condition.sql += " AND v.high >= ?";
    condition.values.push_back(
        Figure(store, ends.RequiredWithAnyOf("sear:lowEnd", {"sear:unit"}), attribute));
  }
  if (ends.IsNext("sear:highEnd")) {
    condition.sql += " AND v.low <= ?";
    condition.values.push_back(
        Figure(store, ends.RequiredWithAnyOf("sear:highEnd", {"sear:unit"}), attribute));
  }
  ends.End();
  return condition;
}

Condition ReadDates(pugi::xml_node node) {
  Checker ends(node);
  std::string const low = TextOf(ends.Required("sear:lowEnd"));
  std::string const high = TextOf(ends.Required("sear:highEnd"));
  ends.End();
  Condition condition = {"1", {}};
  if (!low.empty()) {
    condition.sql += " AND v.text >= ?";
    condition.values.push_back(low);
  }
  if (!high.empty()) {
    condition.sql += " AND trim(v.text, char(10)) <= ?";
    condition.values.push_back(high);
  }
  return condition;
}

Condition ReadCondition(Store& store, Checker& value, Attribute const& attribute) {
  constexpr char kContains[] = "v.text LIKE ? ESCAPE '\\'";
  for (std::string const name : {"greaterThan", "lessThan"}) {
    if (!value.IsNext("sear:" + name)) continue;
    auto const node = value.RequiredWithAnyOf("sear:" + name, {"sear:unit"});
    std::string const sql = name == "greaterThan" ? "v.high > ?" : "v.low < ?";
    return {sql, {Figure(store, node, attribute)}};
  }
  if (value.IsNext("sear:tabularColumnContains")) {
    auto const node = value.Required("sear:tabularColumnContains", {"sear:tabularColumn"});
    std::string const column = node.attribute("sear:tabularColumn").value();
    return {"(char(10) || v.text) LIKE ? ESCAPE '\\'",
            {"%\n" + Pattern(column + "=").substr(1) + Pattern(TextOf(node)).substr(1)}};
  }
  if (auto const node = value.Optional("sear:between")) return ReadBetween(store, node, attribute);
  if (auto const node = value.Optional("sear:betweenDateTimes")) return ReadDates(node);
  if (auto const node = value.Optional("sear:containsAll")) return ReadWords(node, " AND ");
  if (auto const node = value.Optional("sear:containsAny")) return ReadWords(node, " OR ");
  if (auto const node = value.Optional("sear:contains")) {
    return {kContains, {Pattern(TextOf(node))}};
  }
  if (auto const node = value.Optional("sear:doesNotContain")) {
    return {kContains, {Pattern(TextOf(node))}, true};
  }
  if (value.Optional("sear:exists")) return {"1", {}};
  if (value.Optional("sear:doesNotExist")) return {"1", {}, true};
  if (auto const node = value.Optional("sear:exactly")) {
    std::string const number = Id(IntegerOf(node));
    return {"v.low <= ? AND v.high >= ?", {number, number}};
  }
  throw Fault("<sear:searchValue> holds no condition that is known");
}

}  // namespace

void SimpleTextSearch(Store& store, Checker& request, pugi::xml_node response) {
  Scope scope;
  scope.dbKey = KnownKey(store, request.Required("sear:dbKey"));
  std::string const text = TextOf(request.Required("sear:searchValue"));
  scope.tableFilter = TextOf(request.Required("sear:searchFilter"));
  ReadMode(request);
  scope.withGuids = BooleanOf(request.Required("sear:populateGUIDs"));
  scope.subsets = ReadFilter(store, request.Optional("sear:recordFilter"));
  std::vector<Table> tables;
  if (auto const node = request.Optional("sear:restrictToTables")) {
    Checker in(node);
    do {
      Checker table(in.Required("sear:table"));
      TableName name = ReadTableIdentifiers(table);
      table.End();
      name.dbKey = scope.dbKey;
      tables.push_back(FindTable(store, name));
    } while (in.HasMore());
  }
  request.End();
  // Every word must stand somewhere in the record's names or values.
  std::string condition = "d.key = ? AND r.is_current = 1";
  std::vector<std::string> values = {scope.dbKey};
  std::size_t words = 0;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t const end = std::min(text.find(' ', at), text.size());
    if (end > at) {
      std::string const pattern = Pattern(text.substr(at, end - at));
      condition +=
          " AND (r.short_name LIKE ? ESCAPE '\\' OR r.long_name LIKE ? ESCAPE '\\' OR EXISTS"
          " (SELECT 1 FROM attribute_value v WHERE v.record_id = r.id AND v.text LIKE ?"
          " ESCAPE '\\'))";
      values.insert(values.end(), {pattern, pattern, pattern});
      ++words;
    }
    at = end + 1;
  }
  if (words == 0) throw Fault("<sear:searchValue> holds no word to search for");
  WriteResults(store, response, Records(store, condition + " ORDER BY r.id", values), scope,
               tables);
}

void CriteriaSearch(Store& store, Checker& request, pugi::xml_node response) {
  Scope scope;
  scope.dbKey = KnownKey(store, request.Required("sear:dbKey"));
  std::string condition = "d.key = ? AND r.is_current = 1";
  std::vector<std::string> values = {scope.dbKey};
  while (auto const node = request.Optional("sear:recordSearchCriterion")) {
    Checker criterion(node);
    Attribute const attribute = ReadAttribute(store, criterion.Required("sear:searchAttribute"));
    Checker value(criterion.Required("sear:searchValue"));
    criterion.End();
    Condition const one = ReadCondition(store, value, attribute);
    value.End();
    condition +=
        one.isAbsence ? " AND r.table_id = ? AND NOT EXISTS" : " AND r.table_id = ? AND EXISTS";
    condition +=
        " (SELECT 1 FROM attribute_value v WHERE v.record_id = r.id AND v.attribute_id = ? AND " +
        one.sql + ")";
    values.insert(values.end(), {Id(attribute.tableId), Id(attribute.id)});
    values.insert(values.end(), one.values.begin(), one.values.end());
  }
  scope.tableFilter = TextOf(request.Required("sear:searchFilter"));
  ReadMode(request);
  scope.withGuids = BooleanOf(request.Required("sear:populateGUIDs"));
  scope.subsets = ReadFilter(store, request.Optional("sear:recordFilter"));
  request.End();
  WriteResults(store, response, Records(store, condition + " ORDER BY r.id", values), scope);
}

void RecordNameSearch(Store& store, Checker& request, pugi::xml_node response) {
  Table const table = ReadTable(store, request.Required("sear:table"));
  std::string const name = TextOf(request.Required("sear:recordName"));
  Scope scope;
  scope.tableFilter = "NoFilter";
  scope.subsets = ReadFilter(store, request.Optional("sear:recordFilter"));
  auto const options =
      request.Required("sear:options", {"sear:populateGUIDs", "sear:searchFullNames",
                                        "sear:searchShortNames", "sear:caseSensitive"});
  request.End();
  auto const flag = [&options](char const* attribute) {
    std::string const text = options.attribute(attribute).value();
    if (text != "0" && text != "1") throw Fault(std::string(attribute) + " must be 0 or 1");
    return text == "1";
  };
  scope.withGuids = flag("sear:populateGUIDs");
  std::string const collation = flag("sear:caseSensitive") ? "" : " COLLATE NOCASE";
  std::string condition = "r.table_id = ? AND r.is_current = 1 AND (0";
  std::vector<std::string> values = {Id(table.id)};
  if (flag("sear:searchFullNames")) {
    condition += " OR r.long_name = ?" + collation;
    values.push_back(name);
  }
  if (flag("sear:searchShortNames")) {
    condition += " OR r.short_name = ?" + collation;
    values.push_back(name);
  }
  WriteResults(store, response, Records(store, condition + ") ORDER BY r.id", values), scope);
}

}  // namespace sandbox

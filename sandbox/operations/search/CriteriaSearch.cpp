#include <string>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/model/Attributes.h"
#include "sandbox/model/Units.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/search/Scope.h"

namespace sandbox {
namespace {

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

}  // namespace sandbox

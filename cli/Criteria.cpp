#include "cli/Criteria.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>
#include <vector>

#include "cli/Text.h"

namespace cli {
namespace {

/// Longer operators stand before those that they begin with.
constexpr std::string_view kOperators[] = {
    "<=", ">=", "<", ">", "=", " between ", " lacks ", " exists", " contains ", " is missing"};

struct Condition {
  std::string attribute;
  std::string column;  ///< of a table
  std::string operation;
  std::string operand;
};

[[noreturn]] void Refuse(std::string const& text, std::string const& why) {
  throw UsageFailure("the condition \"" + text + "\" " + why);
}

Condition Parsed(std::string const& text) {
  std::size_t at = std::string::npos;
  std::string_view found;
  for (std::string_view const operation : kOperators) {
    std::size_t const place = text.find(operation);
    if (place >= at) continue;
    at = place;
    found = operation;
  }
  if (at == std::string::npos) {
    Refuse(text, "has no operator: <, <=, >, >=, =, between, contains, lacks, exists, is missing");
  }
  Condition condition = {Trimmed(text.substr(0, at)), "", Trimmed(found),
                         Trimmed(text.substr(at + found.size()))};
  std::size_t const bracket = condition.attribute.find('[');
  if (bracket != std::string::npos && condition.attribute.back() == ']') {
    condition.column =
        condition.attribute.substr(bracket + 1, condition.attribute.size() - bracket - 2);
    condition.attribute = Trimmed(condition.attribute.substr(0, bracket));
  }
  bool const takesOperand = condition.operation != "exists" && condition.operation != "is missing";
  if (condition.attribute.empty()) Refuse(text, "names no attribute");
  if (takesOperand && condition.operand.empty()) Refuse(text, "says nothing to compare with");
  if (!takesOperand && !condition.operand.empty()) Refuse(text, "goes on after its end");
  if (!condition.column.empty() && condition.operation != "contains") {
    Refuse(text, "names a column, which only goes with \"contains\"");
  }
  return condition;
}

/// "NUMBER UNIT"; the unit may stand close to the number.
std::pair<double, std::string> NumberAndUnit(std::string const& text) {
  double number = 0;
  std::string_view unit;
  if (!ReadNumber(text, number, unit)) {
    throw UsageFailure("\"" + text + "\" begins with no number that can be sent");
  }
  return {number, Trimmed(unit)};
}

template <class Value>
SmartPtr<Value> WithNumber(std::string const& text) {
  auto const [number, unit] = NumberAndUnit(text);
  auto value = Value::CreateOne();
  value->SetValue(number);
  value->SetUnit(unit);
  return value;
}

template <class Value>
SmartPtr<Value> WithText(std::string const& text) {
  auto value = Value::CreateOne();
  value->SetValue(text);
  return value;
}

/// The two texts around " and "; one of them empty for a comparison.
std::pair<std::string, std::string> EndsOf(Condition const& condition, std::string const& text) {
  std::string const& operand = condition.operand;
  if (condition.operation == "=") return {operand, operand};
  if (condition.operation[0] == '<') return {"", operand};
  if (condition.operation[0] == '>') return {operand, ""};
  std::size_t const joint = operand.find(" and ");
  if (joint == std::string::npos) Refuse(text, "needs \"between A and B\"");
  return {Trimmed(operand.substr(0, joint)), Trimmed(operand.substr(joint + 5))};
}

SmartPtr<SearchValue> Between(Condition const& condition, std::string const& text) {
  auto [low, high] = EndsOf(condition, text);
  auto between = BetweenSearchValue::CreateOne();
  if (!low.empty()) between->SetLowEnd(WithNumber<LowEndSearchValue>(low));
  if (!high.empty()) between->SetHighEnd(WithNumber<HighEndSearchValue>(high));
  // "between 1 and 2 GPa" means GPa for both.
  if (between->GetLowEnd() && between->GetHighEnd() && between->GetLowEnd()->GetUnit().empty()) {
    between->GetLowEnd()->SetUnit(between->GetHighEnd()->GetUnit());
  }
  return between;
}

SmartPtr<SearchValue> NumberCondition(Condition const& condition, std::string const& text) {
  if (condition.operation == "<") return WithNumber<LessThanSearchValue>(condition.operand);
  if (condition.operation == ">") return WithNumber<GreaterThanSearchValue>(condition.operand);
  return Between(condition, text);
}

/// "2026-03-17" or "2026-03-17T09:30:00".
bool IsDate(std::string const& text) {
  constexpr std::string_view kForm = "dddd-dd-ddTdd:dd:dd";
  if (text.size() != 10 && text.size() != kForm.size()) return false;
  return std::equal(text.begin(), text.end(), kForm.begin(), [](char c, char form) {
    return form == 'd' ? c >= '0' && c <= '9' : c == form;
  });
}

SmartPtr<SearchValue> DateCondition(Condition const& condition, std::string const& text) {
  if (condition.operation == "<" || condition.operation == ">") {
    Refuse(text, "compares dates, which goes with <=, >=, = and between");
  }
  auto const [low, high] = EndsOf(condition, text);
  for (std::string const& end : {low, high}) {
    if (!end.empty() && !IsDate(end)) Refuse(text, "needs dates such as 2026-03-17T09:30:00");
  }
  auto between = BetweenDateTimesSearchValue::CreateOne();
  between->SetLowEnd(low);
  between->SetHighEnd(high);
  return between;
}

SmartPtr<SearchValue> WordCondition(Condition const& condition, AttributeDetail const& attribute) {
  auto any = ContainsAnySearchValue::CreateOne();
  auto const& known = attribute.AccessDiscreteValues();
  std::istringstream words(condition.operand);
  for (std::string word; std::getline(words, word, '|');) {
    word = Trimmed(word);
    if (!known.empty() && std::find(known.begin(), known.end(), word) == known.end()) {
      throw UsageFailure("the attribute \"" + attribute.GetName() + "\" has no word \"" + word +
                         "\"" + Suggestion(word, known));
    }
    any->AddValue(word);
  }
  return any;
}

/// What "=" means for types without an order; null for the others.
SmartPtr<SearchValue> EqualityOf(Condition const& condition, AttributeDetail const& attribute,
                                 std::string const& text) {
  std::string const& type = attribute.GetType();
  if (type == AttributeTypes::DISCRETE_TYPE_STRING) return WordCondition(condition, attribute);
  if (type == AttributeTypes::INTEGER_TYPE_STRING) {
    int number = 0;
    if (!ReadInteger(condition.operand, number)) Refuse(text, "needs a whole number");
    auto exactly = ExactlySearchValue::CreateOne();
    exactly->SetValue(number);
    return exactly;
  }
  if (type == AttributeTypes::LOGICAL_TYPE_STRING) {
    bool const isYes = EqualIgnoringCase(condition.operand, "yes");
    if (!isYes && !EqualIgnoringCase(condition.operand, "no")) Refuse(text, "needs yes or no");
    return WithText<ContainsSearchValue>(isYes ? "true" : "false");
  }
  return nullptr;
}

SmartPtr<SearchValue> ColumnCondition(Condition const& condition,
                                      AttributeDetail const& attribute) {
  std::vector<std::string> names;
  for (auto const& column : attribute.AccessColumns()) names.push_back(column->GetName());
  if (std::find(names.begin(), names.end(), condition.column) == names.end()) {
    throw UsageFailure("the attribute \"" + attribute.GetName() + "\" has no column \"" +
                       condition.column + "\"" + Suggestion(condition.column, names));
  }
  auto contains = WithText<TabularColumnContainsSearchValue>(condition.operand);
  contains->SetColName(condition.column);
  return contains;
}

bool IsNumeric(std::string const& type) {
  return type == AttributeTypes::RANGE_TYPE_STRING || type == AttributeTypes::POINT_TYPE_STRING ||
         type == AttributeTypes::INTEGER_TYPE_STRING ||
         type == AttributeTypes::FLOAT_FUNCTIONAL_TYPE_STRING;
}

SmartPtr<SearchValue> ValueOf(Condition const& condition, AttributeDetail const& attribute,
                              std::string const& text) {
  std::string const& type = attribute.GetType();
  std::string const& operation = condition.operation;
  if (operation == "exists") return ExistsSearchValue::CreateOne();
  if (operation == "is missing") return DoesNotExistSearchValue::CreateOne();
  if (operation == "lacks") return WithText<DoesNotContainSearchValue>(condition.operand);
  if (!condition.column.empty()) return ColumnCondition(condition, attribute);
  if (operation == "contains") return WithText<ContainsSearchValue>(condition.operand);
  if (operation == "=") {
    if (auto value = EqualityOf(condition, attribute, text)) return value;
  }
  if (IsNumeric(type)) return NumberCondition(condition, text);
  if (type == AttributeTypes::DATE_TIME_TYPE_STRING) return DateCondition(condition, text);
  Refuse(text, "compares what has no order; try \"contains\" or \"exists\"");
}

}  // namespace

SmartPtr<RecordSearchCriterion> CriterionOf(TableOf& table, std::string const& text) {
  Condition const condition = Parsed(text);
  auto const attribute = table.Attribute(condition.attribute);
  auto criterion = RecordSearchCriterion::CreateOne();
  criterion->SetSearchAttribute(table.ReferenceTo(*attribute));
  criterion->SetSearchValue(ValueOf(condition, *attribute, text));
  return criterion;
}

}  // namespace cli

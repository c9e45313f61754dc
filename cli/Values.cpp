#include "cli/Values.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <utility>

#include "cli/Text.h"

namespace cli {
namespace {

constexpr double kExactIntegers = 1e15;
constexpr char kEllipsis[] = "..";
constexpr int kDeepestJson = 100;

Json ParametersOf(std::vector<SmartPtr<ParameterReferenceAndValue>> const& parameters) {
  Json json = Json::object();
  for (auto const& one : parameters) {
    if (!one || !one->GetParameter() || !one->GetParameterValue()) continue;
    ParameterValue const& value = *one->GetParameterValue();
    json[one->GetParameter()->GetName()] = value.GetType() == ParameterValue::Numeric
                                               ? JsonOf(value.GetValue_Numeric())
                                               : Json(value.GetValue_Discrete());
  }
  return json;
}

Json ParametersOf(SmartPtr<Constraints> const& constraints) {
  if (!constraints) return Json::object();
  auto const& list = constraints->AccessConstraints();
  return ParametersOf(std::vector<SmartPtr<ParameterReferenceAndValue>>(list.begin(), list.end()));
}

void AddUnit(Json& json, UnittedRealDataType const& value) {
  json["unit"] = value.GetUnitSymbol();
  if (value.GetEstimated()) json["estimated"] = true;
}

Json JsonOfRange(RangeDataType const& range) {
  bool const isOpen = !std::isfinite(range.GetLow()) && !std::isfinite(range.GetHigh());
  if (isOpen) return nullptr;
  Json json = {{"low", range.GetLowSet() ? JsonOf(range.GetLow()) : Json()},
               {"high", range.GetHighSet() ? JsonOf(range.GetHigh()) : Json()}};
  AddUnit(json, range);
  return json;
}

Json JsonOfPoints(PointDataType const& value) {
  Json points = Json::array();
  for (auto const& point : value.AccessPoints()) {
    if (!point) continue;
    Json one = Json::object({{"value", JsonOf(point->GetValue())}});
    Json parameters = ParametersOf(point->GetValueParameters()->AccessParameterWithValue());
    if (!parameters.empty()) one["parameters"] = std::move(parameters);
    points.push_back(std::move(one));
  }
  bool const isSingle = points.size() == 1 && points[0].size() == 1;
  Json json = isSingle ? points[0] : Json::object({{"points", points}});
  AddUnit(json, value);
  return json;
}

Json JsonOfBinary(BinaryDataType const& value) {
  Json json = Json::object({{"contentType", value.GetContentType()}});
  json[value.GetURL().empty() ? "data" : "url"] =
      value.GetURL().empty() ? value.GetEncodedData() : value.GetURL();
  return json;
}

Json JsonOfTable(TabularDataType const& table) {
  Json json = {{"columns", Json::array()}, {"rows", Json::array()}};
  for (auto const& column : table.GetColumns()) json["columns"].push_back(column->GetName());
  for (auto const& row : table.GetRows()) {
    Json cells = Json::array();
    for (auto const& cell : row->GetData()) {
      cells.push_back(cell ? JsonOf(cell->GetData().get()) : Json());
    }
    json["rows"].push_back(std::move(cells));
  }
  return json;
}

template <class Curve>
Json HeadOf(Curve const& curve, SmartPtr<ParameterInformation> const& axis) {
  Json json = Json::object({{"unit", curve.GetUnit()->GetUnitSymbol()}});
  if (axis) json["xAxis"] = axis->GetName();
  return json;
}

Json JsonOfSeries(FloatFunctionalSeriesDataType const& value) {
  auto const graph = value.GetGraph();
  Json json = HeadOf(value, graph ? graph->GetXAxisParameter() : nullptr);
  json["series"] = Json::array();
  if (!graph) return json;
  if (graph->GetHideGraph()) json["hidden"] = true;
  if (graph->GetLogarithmicYAxis()) json["logarithmic"] = true;
  for (auto const& series : graph->AccessSeries()) {
    if (!series) continue;
    Json points = Json::array();
    for (auto const& datum : series->GetXYPoints()->AccessPoints()) {
      if (!datum) continue;
      Json point = Json::object();
      if (auto const x = datum->GetX()) {
        point["x"] = x->GetType() == ParameterValue::Numeric ? JsonOf(x->GetValue_Numeric())
                                                             : Json(x->GetValue_Discrete());
      }
      if (auto const* const range = dynamic_cast<XYRange const*>(datum.get())) {
        point["low"] = JsonOf(range->GetLowerY());
        point["high"] = JsonOf(range->GetUpperY());
      } else if (auto const* const single = dynamic_cast<XYPoint const*>(datum.get())) {
        point["y"] = JsonOf(single->GetY());
      }
      if (datum->GetIsEstimated()) point["estimated"] = true;
      points.push_back(std::move(point));
    }
    json["series"].push_back(
        {{"parameters", ParametersOf(series->GetConstraints())}, {"points", std::move(points)}});
  }
  return json;
}

Json JsonOfGrid(FloatFunctionalGriddedDataType const& value) {
  Json json = HeadOf(value, value.GetDefaultXAxisParameter());
  json["values"] = Json::array();
  if (!value.GetValues()) return json;
  for (auto const& one : value.GetValues()->AccessValues()) {
    if (!one) continue;
    Json entry = Json::object();
    if (auto const* const point = dynamic_cast<FloatFunctionalPointValue const*>(one.get())) {
      entry["value"] = JsonOf(point->GetValue());
    } else if (auto const* const range =
                   dynamic_cast<FloatFunctionalRangeValue const*>(one.get())) {
      entry["low"] = JsonOf(range->GetLowValue());
      entry["high"] = JsonOf(range->GetHighValue());
    }
    entry["parameters"] = ParametersOf(one->GetConstraints());
    if (one->GetEstimated()) entry["estimated"] = true;
    json["values"].push_back(std::move(entry));
  }
  return json;
}

/// Builds a value; every complaint names the attribute.
class Builder {
 public:
  Builder(TableOf& table, AttributeDetail const& attribute)
      : m_table(table), m_attribute(attribute) {}

  SmartPtr<IDataValue> Build(Json const& json, std::string const& type) {
    if (type == AttributeTypes::SHORT_TEXT_TYPE_STRING) return Text<ShortTextDataType>(json);
    if (type == AttributeTypes::LONG_TEXT_TYPE_STRING) return Text<LongTextDataType>(json);
    if (type == AttributeTypes::DATE_TIME_TYPE_STRING) return Text<DateTimeDataType>(json);
    if (type == AttributeTypes::INTEGER_TYPE_STRING) {
      return Simple<IntegerDataType>(Take<int>(json, IsInt(json), "a whole number of 32 bits"));
    }
    if (type == AttributeTypes::LOGICAL_TYPE_STRING) {
      return Simple<LogicalDataType>(Take<bool>(json, json.is_boolean(), "true or false"));
    }
    if (type == AttributeTypes::DISCRETE_TYPE_STRING) return Words(json);
    if (!json.is_object()) Refuse("takes an object");
    if (type == AttributeTypes::HYPERLINK_TYPE_STRING) return Link(json);
    if (type == AttributeTypes::RANGE_TYPE_STRING) return Range(json);
    if (type == AttributeTypes::POINT_TYPE_STRING) return Points(json);
    if (type == AttributeTypes::PICTURE_TYPE_STRING) return Binary<PictureDataType>(json);
    if (type == AttributeTypes::FILE_TYPE_STRING) return File(json);
    if (type == AttributeTypes::TABULAR_TYPE_STRING) return Table(json);
    if (type == AttributeTypes::FLOAT_FUNCTIONAL_TYPE_STRING) {
      return json.contains("values") ? Grid(json) : Curve(json);
    }
    Refuse("has a type that cannot be imported");
  }

 private:
  [[noreturn]] void Refuse(std::string const& why) const {
    throw UsageFailure("the attribute \"" + m_attribute.GetName() + "\" " + why);
  }

  static bool IsInt(Json const& json) {
    return json.is_number_integer() && json >= std::numeric_limits<int>::min() &&
           json <= std::numeric_limits<int>::max();
  }

  template <class T>
  T Take(Json const& json, bool fits, char const* what) const {
    if (!fits) Refuse(std::string("takes ") + what);
    return json.get<T>();
  }
  std::string TextIn(Json const& json) const {
    std::string text = Take<std::string>(json, json.is_string(), "a text");
    if (!CanBeSent(text)) Refuse("holds a character that cannot be sent");
    return text;
  }
  std::string TextAt(Json const& json, char const* name) const {
    return json.contains(name) ? TextIn(json[name]) : "";
  }
  double NumberAt(Json const& json, char const* name) const {
    Json const value = json.contains(name) ? json[name] : Json();
    if (!value.is_number()) Refuse(std::string("needs a number for \"") + name + "\"");
    return value.get<double>();
  }
  bool FlagAt(Json const& json, char const* name) const {
    return json.contains(name) &&
           Take<bool>(json[name], json[name].is_boolean(), "true or false for flags");
  }
  Json const& ListAt(Json const& json, char const* name) const {
    if (!json.contains(name) || !json[name].is_array()) {
      Refuse(std::string("needs a list \"") + name + "\"");
    }
    return json[name];
  }

  template <class Value, class Content>
  static SmartPtr<IDataValue> Simple(Content const& content) {
    auto value = Value::CreateOne();
    value->SetValue(content);
    return value;
  }
  template <class Value>
  SmartPtr<IDataValue> Text(Json const& json) const {
    return Simple<Value>(TextIn(json));
  }

  SmartPtr<IDataValue> Words(Json const& json) const {
    auto value = DiscreteDataType::CreateOne();
    if (!json.is_array()) Refuse("takes a list of words");
    for (Json const& word : json) {
      auto one = DiscreteValue::CreateOne();
      one->SetValue(TextIn(word));
      value->AddDiscreteValue(one);
    }
    return value;
  }

  SmartPtr<IDataValue> Link(Json const& json) const {
    auto value = HyperlinkDataType::CreateOne();
    value->SetValue(TextAt(json, "url"));
    value->SetDescription(TextAt(json, "description"));
    return value;
  }

  void FillUnit(UnittedRealDataType& value, Json const& json) const {
    value.SetUnitSymbol(TextAt(json, "unit"));
    value.SetEstimated(FlagAt(json, "estimated"));
  }

  SmartPtr<IDataValue> Range(Json const& json) const {
    auto value = RangeDataType::CreateOne();
    FillUnit(*value, json);
    auto const isSet = [&json](char const* end) {
      return json.contains(end) && !json[end].is_null();
    };
    if (isSet("low") || !isSet("high")) value->SetLow(NumberAt(json, "low"));
    if (isSet("high")) value->SetHigh(NumberAt(json, "high"));
    return value;
  }

  /// What is left of the library's copy of a parameter in requests: its reference, name and unit.
  static SmartPtr<ParameterInformation> Known(ParameterDetail const& detail) {
    auto parameter = ParameterInformation::CreateOne();
    parameter->SetName(detail.GetName());
    parameter->SetUnit(detail.GetUnit());
    parameter->SetParameterReference(detail.GetParameterReference());
    return parameter;
  }

  ParameterDetail const& ParameterNamed(std::string const& name) const {
    auto const& parameters = m_table.Parameters(m_attribute);
    auto const found = parameters.find(name);
    if (found == parameters.end()) Refuse("has no parameter \"" + name + "\"");
    return *found->second;
  }

  SmartPtr<Parameters> AllParameters() const {
    auto all = Parameters::CreateOne();
    for (auto const& [name, detail] : m_table.Parameters(m_attribute)) {
      all->AddParameter(Known(*detail));
    }
    return all;
  }

  SmartPtr<ParameterValue> ParameterFigure(Json const& json) const {
    auto value = ParameterValue::CreateOne();
    if (json.is_number()) {
      value->SetValue_Numeric(json.get<double>());
    } else {
      value->SetValue_Discrete(TextIn(json));
    }
    return value;
  }

  /// Calls `add` with a new `Item` for each member of "parameters".
  template <class Item, class Add>
  void ForParameters(Json const& json, Add add) const {
    if (!json.contains("parameters")) return;
    for (auto const& [name, figure] : json["parameters"].items()) {
      auto item = Item::CreateOne();
      item->SetParameter(ParameterNamed(name).GetParameterReference());
      item->SetParameterValue(ParameterFigure(figure));
      add(item);
    }
  }

  SmartPtr<Constraints> ConstraintsIn(Json const& json) const {
    auto constraints = Constraints::CreateOne();
    ForParameters<Constraint>(json, [&](auto const& one) { constraints->AddConstraint(one); });
    return constraints;
  }

  SmartPtr<IDataValue> Points(Json const& json) const {
    auto value = PointDataType::CreateOne();
    FillUnit(*value, json);
    value->SetParameters(AllParameters());
    auto const add = [&](Json const& point) {
      auto one = PointValueWithParameters::CreateOne();
      one->SetValue(NumberAt(point, "value"));
      ForParameters<ParameterReferenceAndValue>(point, [&](auto const& parameter) {
        one->GetValueParameters()->AddParameterWithValue(parameter);
      });
      value->AddPoint(one);
    };
    if (json.contains("value")) {
      add(json);
    } else {
      for (Json const& point : ListAt(json, "points")) add(point);
    }
    return value;
  }

  template <class Value>
  SmartPtr<Value> Binary(Json const& json) const {
    if (!json.contains("data")) Refuse("needs \"data\"; read it without --no-files");
    auto value = Value::CreateOne();
    value->SetContentType(TextAt(json, "contentType"));
    value->SetEncodedData(TextAt(json, "data"));
    return value;
  }

  SmartPtr<IDataValue> File(Json const& json) const {
    auto value = Binary<FileDataType>(json);
    value->SetFileName(TextAt(json, "fileName"));
    value->SetDescription(TextAt(json, "description"));
    return value;
  }

  SmartPtr<IDataValue> Table(Json const& json) {
    auto value = TabularDataType::CreateOne();
    std::vector<std::string> types;
    for (Json const& name : ListAt(json, "columns")) {
      auto column = TabularColumn::CreateOne();
      column->SetName(TextIn(name));
      value->AddColumn(column);
      types.push_back(ColumnType(column->GetName()));
    }
    for (Json const& cells : ListAt(json, "rows")) {
      if (!cells.is_array() || cells.size() > types.size()) Refuse("has a row that does not fit");
      auto const row = value->PushRow();
      for (std::size_t i = 0; i < cells.size(); ++i) {
        if (!cells[i].is_null()) row->At(i)->SetData(Build(cells[i], types[i]));
      }
    }
    return value;
  }

  std::string ColumnType(std::string const& name) const {
    for (auto const& column : m_attribute.AccessColumns()) {
      if (column && column->GetName() == name) return column->GetType();
    }
    Refuse("has no column \"" + name + "\"");
  }

  /// Fills what all curves have; returns the parameter of the x-axis, which may be missing.
  SmartPtr<ParameterInformation> FillCurve(FloatFunctionalDataType& value, Json const& json) const {
    value.GetUnit()->SetUnitSymbol(TextAt(json, "unit"));
    value.GetUnit()->SetUnitName(TextAt(json, "unit"));
    value.SetParameters(AllParameters());
    std::string const axis = TextAt(json, "xAxis");
    if (axis.empty()) return nullptr;
    return Known(ParameterNamed(axis));
  }

  SmartPtr<XYDatum> Datum(Json const& json) const {
    SmartPtr<XYDatum> datum;
    if (json.contains("y")) {
      auto point = XYPoint::CreateOne();
      point->SetY(NumberAt(json, "y"));
      datum = point;
    } else {
      auto range = XYRange::CreateOne();
      range->SetLowerY(NumberAt(json, "low"));
      range->SetUpperY(NumberAt(json, "high"));
      datum = range;
    }
    if (json.contains("x")) datum->SetX(ParameterFigure(json["x"]));
    datum->SetIsEstimated(FlagAt(json, "estimated"));
    return datum;
  }

  SmartPtr<IDataValue> Curve(Json const& json) const {
    auto value = FloatFunctionalSeriesDataType::CreateOne();
    auto graph = FloatFunctionalSeriesGraph::CreateOne();
    graph->SetXAxisParameter(FillCurve(*value, json));
    graph->SetHideGraph(FlagAt(json, "hidden"));
    graph->SetLogarithmicYAxis(FlagAt(json, "logarithmic"));
    for (Json const& one : ListAt(json, "series")) {
      auto series = Series::CreateOne();
      series->SetConstraints(ConstraintsIn(one));
      for (Json const& point : ListAt(one, "points")) series->GetXYPoints()->AddPoint(Datum(point));
      graph->AddSeries(series);
    }
    value->SetGraph(graph);
    return value;
  }

  SmartPtr<FloatFunctionalValue> GridValue(Json const& json) const {
    if (json.contains("value")) {
      auto point = FloatFunctionalPointValue::CreateOne();
      point->SetValue(NumberAt(json, "value"));
      return point;
    }
    auto range = FloatFunctionalRangeValue::CreateOne();
    range->SetLowValue(NumberAt(json, "low"));
    range->SetHighValue(NumberAt(json, "high"));
    return range;
  }

  SmartPtr<IDataValue> Grid(Json const& json) const {
    auto value = FloatFunctionalGriddedDataType::CreateOne();
    value->SetDefaultXAxisParameter(FillCurve(*value, json));
    value->SetValues(FloatFunctionalValues::CreateOne());
    for (Json const& one : ListAt(json, "values")) {
      auto entry = GridValue(one);
      entry->SetConstraints(ConstraintsIn(one));
      entry->SetEstimated(FlagAt(one, "estimated"));
      value->GetValues()->AddValue(entry);
    }
    return value;
  }

  TableOf& m_table;
  AttributeDetail const& m_attribute;
};

/// "low..high", or one number where both are the same; empty when the JSON is no range and no
/// single number. `text` writes a number.
template <class NumberTextOf>
std::string FigureText(Json const& json, std::string const& columnUnit, std::string const& joint,
                       NumberTextOf text) {
  std::string figure;
  if (json.contains("value")) {
    figure = text(json["value"]);
  } else if (json.contains("low") && json["low"] == json["high"]) {
    figure = text(json["low"]);
  } else if (json.contains("low")) {
    figure = text(json["low"]) + joint + text(json["high"]);
  } else {
    return "";
  }
  std::string const unit = json.value("unit", "");
  if (json.value("estimated", false)) figure.insert(0, "~");
  return unit == columnUnit ? figure : figure + " " + unit;
}

/// What a cell of CSV would be taken for.
bool LooksLikeJson(std::string const& cell) {
  return !cell.empty() && (cell[0] == '{' || cell[0] == '[');
}

bool IsPlainLink(Json const& json) {
  return json.contains("url") && json.contains("description") && json.size() == 2 &&
         !LooksLikeJson(json["url"].get_ref<std::string const&>()) &&
         json["description"].get_ref<std::string const&>().empty();
}

/// Words with "; " between them; empty when a word could not be told apart.
std::string WordsText(Json const& json) {
  std::string text;
  for (Json const& word : json) {
    if (!word.is_string() || word.get<std::string>().find(';') != std::string::npos) return "";
    text += (text.empty() ? "" : "; ") + word.get<std::string>();
  }
  return LooksLikeJson(text) ? "" : text;
}

Json FigureFrom(std::string text, bool isRange, std::string const& columnUnit) {
  Json json = Json::object();
  bool const isEstimated = !text.empty() && text[0] == '~';
  if (isEstimated) text.erase(0, 1);
  std::size_t const blank = text.find(' ');
  std::string const unit = blank == std::string::npos ? columnUnit : Trimmed(text.substr(blank));
  text.resize(std::min(blank, text.size()));
  auto const number = [&text](std::string const& part) {
    double value = 0;
    if (!ReadNumber(part, value)) throw UsageFailure("\"" + text + "\" is no number");
    return JsonOf(value);
  };
  std::size_t const joint = isRange ? text.find(kEllipsis) : std::string::npos;
  if (!isRange) {
    json["value"] = number(text);
  } else if (joint == std::string::npos) {
    json["low"] = number(text);
    json["high"] = json["low"];
  } else {
    std::string const low = text.substr(0, joint);
    std::string const high = text.substr(joint + 2);
    json["low"] = low.empty() ? Json() : number(low);
    json["high"] = high.empty() ? Json() : number(high);
  }
  json["unit"] = unit;
  if (isEstimated) json["estimated"] = true;
  return json;
}

Json WordsFrom(std::string const& text) {
  Json words = Json::array();
  for (std::size_t at = 0; at <= text.size();) {
    std::size_t const end = std::min(text.find(';', at), text.size());
    words.push_back(Trimmed(text.substr(at, end - at)));
    at = end + 1;
  }
  return words;
}

}  // namespace

Json ParseJson(std::string const& text) {
  int depth = 0;
  bool isInText = false;
  for (std::size_t i = 0; i < text.size() && depth <= kDeepestJson; ++i) {
    if (text[i] == '"') isInText = !isInText;
    if (isInText && text[i] == '\\') ++i;
    if (isInText) continue;
    if (text[i] == '[' || text[i] == '{') ++depth;
    if (text[i] == ']' || text[i] == '}') --depth;
  }
  Json json =
      depth > kDeepestJson ? Json(Json::value_t::discarded) : Json::parse(text, nullptr, false);
  if (json.is_discarded()) {
    throw UsageFailure("\"" + text.substr(0, 30) + (text.size() > 30 ? "...\"" : "\"") +
                       (depth > kDeepestJson ? " is nested too deeply" : " is no JSON"));
  }
  return json;
}

Json JsonOf(double number) {
  if (!std::isfinite(number)) return nullptr;
  if (number == std::floor(number) && std::fabs(number) < kExactIntegers) {
    return static_cast<std::int64_t>(number);
  }
  return number;
}

Json JsonOf(IDataValue const* value) {
  if (value == nullptr) return nullptr;
  if (value->GetIsNotApplicable()) return Json::object({{"notApplicable", true}});
  if (auto const* const range = dynamic_cast<RangeDataType const*>(value)) {
    return JsonOfRange(*range);
  }
  if (auto const* const points = dynamic_cast<PointDataType const*>(value)) {
    return JsonOfPoints(*points);
  }
  if (auto const* const text = dynamic_cast<ShortTextDataType const*>(value)) {
    return text->GetValue();
  }
  if (auto const* const text = dynamic_cast<LongTextDataType const*>(value)) {
    return text->GetValue();
  }
  if (auto const* const date = dynamic_cast<DateTimeDataType const*>(value)) {
    return date->GetValue();
  }
  if (auto const* const integer = dynamic_cast<IntegerDataType const*>(value)) {
    return integer->GetValue();
  }
  if (auto const* const logical = dynamic_cast<LogicalDataType const*>(value)) {
    return logical->GetValue();
  }
  if (auto const* const discrete = dynamic_cast<DiscreteDataType const*>(value)) {
    Json words = Json::array();
    for (auto const& word : discrete->AccessDiscreteValues()) words.push_back(word->GetValue());
    return words;
  }
  if (auto const* const link = dynamic_cast<HyperlinkDataType const*>(value)) {
    return {{"url", link->GetValue()}, {"description", link->GetDescription()}};
  }
  if (auto const* const file = dynamic_cast<FileDataType const*>(value)) {
    Json json = {{"fileName", file->GetFileName()}, {"description", file->GetDescription()}};
    json.update(JsonOfBinary(*file));
    return json;
  }
  if (auto const* const binary = dynamic_cast<BinaryDataType const*>(value)) {
    return JsonOfBinary(*binary);
  }
  if (auto const* const table = dynamic_cast<TabularDataType const*>(value)) {
    return JsonOfTable(*table);
  }
  if (auto const* const series = dynamic_cast<FloatFunctionalSeriesDataType const*>(value)) {
    return JsonOfSeries(*series);
  }
  if (auto const* const grid = dynamic_cast<FloatFunctionalGriddedDataType const*>(value)) {
    return JsonOfGrid(*grid);
  }
  return nullptr;
}

SmartPtr<IDataValue> ValueOf(Json const& json, TableOf& table, AttributeDetail const& attribute) {
  return Builder(table, attribute).Build(json, attribute.GetType());
}

std::string CsvCell(Json const& json, std::string const& columnUnit) {
  std::string text;
  if (json.is_null()) return "";
  if (json.is_boolean()) return json.get<bool>() ? "yes" : "no";
  if (json.is_array()) text = WordsText(json);
  if (json.is_object()) {
    text = IsPlainLink(json) ? json["url"].get<std::string>()
                             : FigureText(json, columnUnit, kEllipsis, CellText);
  }
  return text.empty() ? CellText(json) : text;
}

Json FromCsvCell(std::string const& cell, AttributeDetail const& attribute,
                 std::string const& columnUnit) {
  std::string const& type = attribute.GetType();
  if (cell.empty()) return nullptr;
  if (type == AttributeTypes::SHORT_TEXT_TYPE_STRING ||
      type == AttributeTypes::LONG_TEXT_TYPE_STRING ||
      type == AttributeTypes::DATE_TIME_TYPE_STRING) {
    return cell;
  }
  if (LooksLikeJson(cell)) return ParseJson(cell);
  if (type == AttributeTypes::INTEGER_TYPE_STRING) {
    int value = 0;
    if (!ReadInteger(cell, value)) throw UsageFailure("\"" + cell + "\" is no whole number");
    return value;
  }
  if (type == AttributeTypes::LOGICAL_TYPE_STRING) {
    bool const isYes = EqualIgnoringCase(cell, "yes") || EqualIgnoringCase(cell, "true");
    if (isYes || EqualIgnoringCase(cell, "no") || EqualIgnoringCase(cell, "false")) return isYes;
    throw UsageFailure("\"" + cell + "\" is neither yes nor no");
  }
  if (type == AttributeTypes::DISCRETE_TYPE_STRING) return WordsFrom(cell);
  if (type == AttributeTypes::HYPERLINK_TYPE_STRING) return {{"url", cell}, {"description", ""}};
  bool const isRange = type == AttributeTypes::RANGE_TYPE_STRING;
  if (isRange || type == AttributeTypes::POINT_TYPE_STRING) {
    return FigureFrom(cell, isRange, columnUnit);
  }
  throw UsageFailure("\"" + cell + "\" is no value of this type");
}

std::string ReadableCell(Json const& json, std::string const& columnUnit) {
  if (!json.is_object()) return CsvCell(json, columnUnit);
  auto const count = [&json](char const* list, char const* what) {
    return Count(json[list].size(), what);
  };
  if (json.contains("rows")) return count("rows", "row");
  if (json.contains("series")) return count("series", "curve");
  if (json.contains("values")) return count("values", "value");
  if (json.contains("points")) return count("points", "point");
  if (json.contains("notApplicable")) return "not applicable";
  if (json.contains("fileName")) return json["fileName"].get<std::string>();
  if (json.contains("contentType")) return json["contentType"].get<std::string>();
  if (json.contains("description")) return json["url"].get<std::string>();
  return FigureText(json, columnUnit, " to ", [](Json const& number) {
    return number.is_null() ? std::string("?") : NumberText(number.get<double>(), 6);
  });
}

}  // namespace cli

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "cli/Failure.h"
#include "cli/Json.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

using lumo::AttributeType;

/// Reads a value; every complaint names the attribute.
class Reader {
 public:
  explicit Reader(lumo::Attribute const& attribute) : m_attribute(attribute) {}

  lumo::Value Read(Json const& json, AttributeType type) const {
    if (json.is_null()) return {};
    if (json.is_object() && json.contains("notApplicable")) {
      CheckMembers(json, {"notApplicable"});
      return lumo::NotApplicable();
    }
    switch (type) {
      case AttributeType::Text:
      case AttributeType::LongText: return Text(json);
      case AttributeType::Date: return lumo::DateTime{Text(json)};
      case AttributeType::Integer:
        return Take<std::int64_t>(json, json.is_number_integer(), "a whole number of 32 bits");
      case AttributeType::Logical: return Take<bool>(json, json.is_boolean(), "true or false");
      case AttributeType::Discrete: return Words(json);
      default: break;
    }
    if (!json.is_object()) Complain(std::string("takes an object") + FormOf(type));
    switch (type) {
      case AttributeType::Link:
        CheckMembers(json, {"url", "description"});
        return lumo::Link{TextAt(json, "url"), TextAt(json, "description")};
      case AttributeType::Range: return RangeOf(json);
      case AttributeType::Number: return PointsOf(json);
      case AttributeType::Picture:
      case AttributeType::File: return FileOf(json);
      case AttributeType::Grid: return GridOf(json);
      case AttributeType::Curve: return CurvesOf(json);
      default: Complain("has a type that cannot be imported");
    }
  }

 private:
  static char const* FormOf(AttributeType type) {
    switch (type) {
      case AttributeType::Range: return R"( such as {"low": 2.8, "high": 2.9, "unit": "g/cm^3"})";
      case AttributeType::Number: return R"( such as {"value": 107, "unit": "HV"})";
      case AttributeType::Link: return R"( such as {"url": "https://..."})";
      default: return "";
    }
  }
  [[noreturn]] void Complain(std::string const& why) const {
    Refuse("the attribute " + lumo::Quoted(m_attribute.name) + " " + why);
  }

  /// A member that is misspelt must not be lost.
  void CheckMembers(Json const& json, std::vector<std::string> const& known) const {
    for (auto const& [name, value] : json.items()) {
      if (std::find(known.begin(), known.end(), name) != known.end()) continue;
      Complain("takes no member " + lumo::Quoted(name) + "; there is " + lumo::Joined(known));
    }
  }

  template <class T>
  T Take(Json const& json, bool fits, char const* what) const {
    if (!fits) Complain(std::string("takes ") + what);
    return json.get<T>();
  }
  std::string Text(Json const& json) const {
    return Take<std::string>(json, json.is_string(), "a text");
  }
  std::string TextAt(Json const& json, char const* name) const {
    return json.contains(name) ? Text(json[name]) : "";
  }
  double NumberAt(Json const& json, char const* name) const {
    Json const value = json.is_object() && json.contains(name) ? json[name] : Json();
    if (!value.is_number()) Complain(std::string("needs a number for \"") + name + "\"");
    return value.get<double>();
  }
  bool FlagAt(Json const& json, char const* name) const {
    return json.contains(name) &&
           Take<bool>(json[name], json[name].is_boolean(), "true or false for flags");
  }
  Json const& ListAt(Json const& json, char const* name) const {
    if (!json.is_object() || !json.contains(name) || !json[name].is_array()) {
      Complain(std::string("needs a list \"") + name + "\"");
    }
    return json[name];
  }

  std::vector<std::string> Words(Json const& json) const {
    if (!json.is_array()) Complain("takes a list of words");
    std::vector<std::string> words;
    for (Json const& word : json) words.push_back(Text(word));
    return words;
  }

  lumo::Range RangeOf(Json const& json) const {
    auto const isSet = [&json](char const* end) {
      return json.contains(end) && !json[end].is_null();
    };
    lumo::Range range;
    if (isSet("low") || !isSet("high")) range.low = NumberAt(json, "low");
    if (isSet("high")) range.high = NumberAt(json, "high");
    range.unit = TextAt(json, "unit");
    range.estimated = FlagAt(json, "estimated");
    CheckMembers(json, {"low", "high", "unit", "estimated"});
    return range;
  }

  lumo::Value PointsOf(Json const& json) const {
    std::string const unit = TextAt(json, "unit");
    bool const estimated = FlagAt(json, "estimated");
    if (json.contains("value")) {
      CheckMembers(json, {"value", "unit", "estimated", "parameters"});
    } else {
      CheckMembers(json, {"points", "unit", "estimated"});
    }
    if (json.contains("value") && !json.contains("parameters")) {
      return lumo::Quantity{NumberAt(json, "value"), unit, estimated};
    }
    lumo::Points points{{}, unit, estimated};
    auto const add = [&](Json const& one) {
      points.points.push_back({NumberAt(one, "value"), ParametersIn(one)});
    };
    if (json.contains("value")) {
      add(json);
    } else {
      for (Json const& one : ListAt(json, "points")) {
        add(one);
        CheckMembers(one, {"value", "parameters"});
      }
    }
    return points;
  }

  /// {"Temperature": {"value": 150, "unit": "degC"}, "Condition": "T6"}; a number alone is in the
  /// unit that the server keeps.
  std::vector<lumo::Parameter> ParametersIn(Json const& json) const {
    std::vector<lumo::Parameter> parameters;
    if (!json.contains("parameters")) return parameters;
    if (!json["parameters"].is_object()) Complain("needs an object \"parameters\"");
    for (auto const& [name, figure] : json["parameters"].items()) {
      lumo::Parameter parameter{name, 0.0, ""};
      if (figure.is_object()) {
        CheckMembers(figure, {"value", "unit"});
        parameter.value = NumberAt(figure, "value");
        parameter.unit = TextAt(figure, "unit");
      } else if (figure.is_number()) {
        parameter.value = figure.get<double>();
      } else {
        parameter.value = Text(figure);
      }
      parameters.push_back(std::move(parameter));
    }
    return parameters;
  }

  lumo::File FileOf(Json const& json) const {
    CheckMembers(json, {"fileName", "contentType", "description", "data", "url"});
    if (!json.contains("data")) Complain("needs \"data\"; read it without --no-files");
    auto bytes = lumo::FromBase64(TextAt(json, "data"));
    if (!bytes) Complain("holds \"data\" that is not Base64");
    return {TextAt(json, "fileName"), TextAt(json, "contentType"), TextAt(json, "description"), "",
            std::move(*bytes)};
  }

  lumo::Value GridOf(Json const& json) const {
    auto grid = std::make_shared<lumo::Grid>();
    std::vector<AttributeType> types;
    CheckMembers(json, {"columns", "rows"});
    for (Json const& one : ListAt(json, "columns")) {
      std::string const name = Text(one);
      for (lumo::Grid::Column const& other : grid->columns) {
        if (other.name == name) Complain("has the column " + lumo::Quoted(name) + " twice");
      }
      grid->columns.push_back({name, ""});
      types.push_back(ColumnType(grid->columns.back().name));
    }
    for (Json const& cells : ListAt(json, "rows")) {
      if (!cells.is_array() || cells.size() > types.size()) Complain("has a row that does not fit");
      lumo::Grid::Row row;
      for (std::size_t i = 0; i < cells.size(); ++i) row.cells.push_back(Read(cells[i], types[i]));
      row.cells.resize(types.size());
      grid->rows.push_back(std::move(row));
    }
    return std::shared_ptr<lumo::Grid const>(std::move(grid));
  }

  AttributeType ColumnType(std::string const& name) const {
    for (lumo::GridColumnInfo const& column : m_attribute.columns) {
      if (column.name == name) return column.type;
    }
    Complain("has no column " + lumo::Quoted(name));
  }

  lumo::Value CurvesOf(Json const& json) const {
    lumo::Curves curves;
    curves.isGridded = FlagAt(json, "gridded");
    curves.isHidden = FlagAt(json, "hidden");
    curves.isLogarithmic = FlagAt(json, "logarithmic");
    CheckMembers(json, {"unit", "xAxis", "xUnit", "series", "gridded", "hidden", "logarithmic"});
    for (Json const& one : ListAt(json, "series")) {
      lumo::Curve curve;
      curve.yUnit = TextAt(json, "unit");
      curve.xName = TextAt(json, "xAxis");
      curve.xUnit = TextAt(json, "xUnit");
      for (Json const& point : ListAt(one, "points")) AddPoint(point, curve);
      curve.parameters = ParametersIn(one);
      CheckMembers(one, {"parameters", "points"});
      curves.curves.push_back(std::move(curve));
    }
    return curves;
  }

  void AddPoint(Json const& json, lumo::Curve& curve) const {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    bool const isRange = !json.is_object() || !json.contains("y");
    curve.y.push_back(NumberAt(json, isRange ? "low" : "y"));
    curve.yHigh.push_back(isRange ? NumberAt(json, "high") : kNone);
    CheckMembers(json, isRange ? std::vector<std::string>{"x", "low", "high", "estimated"}
                               : std::vector<std::string>{"x", "y", "estimated"});
    bool const hasWord = json.contains("x") && json["x"].is_string();
    curve.x.push_back(json.contains("x") && !hasWord ? NumberAt(json, "x") : kNone);
    curve.xWords.push_back(hasWord ? Text(json["x"]) : "");
    curve.estimated.push_back(FlagAt(json, "estimated"));
  }

  lumo::Attribute const& m_attribute;
};

}  // namespace

lumo::Value ValueOf(Json const& json, lumo::Attribute const& attribute) {
  return Reader(attribute).Read(json, attribute.type);
}

}  // namespace cli

#include <nlohmann/json.hpp>

#include <cmath>
#include <set>
#include <utility>
#include <vector>

#include "cli/Failure.h"
#include "cli/Json.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

constexpr double kExactIntegers = 1e15;
constexpr int kDeepestJson = 100;

void AddUnit(Json& json, std::string const& unit, bool estimated) {
  json["unit"] = unit;
  if (estimated) json["estimated"] = true;
}

Json ObjectOf(std::vector<lumo::Parameter> const& parameters) {
  Json json = Json::object();
  for (lumo::Parameter const& one : parameters) {
    auto const* const number = std::get_if<double>(&one.value);
    Json value = number == nullptr ? Json(std::get<std::string>(one.value)) : JsonOf(*number);
    json[one.name] = one.unit.empty()
                         ? std::move(value)
                         : Json::object({{"value", std::move(value)}, {"unit", one.unit}});
  }
  return json;
}

Json SeriesOf(lumo::Curve const& curve) {
  Json points = Json::array();
  for (std::size_t i = 0; i < curve.x.size(); ++i) {
    Json point = Json::object();
    if (!std::isnan(curve.x[i])) {
      point["x"] = JsonOf(curve.x[i]);
    } else if (!curve.xWords.empty() && !curve.xWords[i].empty()) {
      point["x"] = curve.xWords[i];
    }
    if (curve.yHigh.empty() || std::isnan(curve.yHigh[i])) {
      point["y"] = JsonOf(curve.y[i]);
    } else {
      point["low"] = JsonOf(curve.y[i]);
      point["high"] = JsonOf(curve.yHigh[i]);
    }
    if (!curve.estimated.empty() && curve.estimated[i]) point["estimated"] = true;
    points.push_back(std::move(point));
  }
  return {{"parameters", ObjectOf(curve.parameters)}, {"points", std::move(points)}};
}

/// Makes JSON of each kind of value.
struct Maker {
  Json operator()(std::monostate /*none*/) const { return nullptr; }
  Json operator()(lumo::NotApplicable /*none*/) const { return {{"notApplicable", true}}; }
  Json operator()(lumo::DateTime const& date) const { return date.text; }
  Json operator()(lumo::Quantity const& quantity) const {
    Json json = {{"value", JsonOf(quantity.value)}};
    AddUnit(json, quantity.unit, quantity.estimated);
    return json;
  }
  Json operator()(lumo::Range const& range) const {
    auto const end = [](std::optional<double> const& one) { return one ? JsonOf(*one) : Json(); };
    Json json = {{"low", end(range.low)}, {"high", end(range.high)}};
    AddUnit(json, range.unit, range.estimated);
    return json;
  }
  Json operator()(lumo::Points const& points) const {
    Json list = Json::array();
    for (lumo::Point const& point : points.points) {
      Json one = {{"value", JsonOf(point.value)}};
      if (!point.parameters.empty()) one["parameters"] = ObjectOf(point.parameters);
      list.push_back(std::move(one));
    }
    Json json = {{"points", std::move(list)}};
    AddUnit(json, points.unit, points.estimated);
    return json;
  }
  Json operator()(lumo::Curves const& curves) const {
    Json json = Json::object();
    if (!curves.curves.empty()) {
      lumo::Curve const& frame = curves.curves.front();
      json["unit"] = frame.yUnit;
      if (!frame.xName.empty()) json["xAxis"] = frame.xName;
      if (!frame.xUnit.empty()) json["xUnit"] = frame.xUnit;
    }
    json["series"] = Json::array();
    for (lumo::Curve const& curve : curves.curves) json["series"].push_back(SeriesOf(curve));
    if (curves.isGridded) json["gridded"] = true;
    if (curves.isHidden) json["hidden"] = true;
    if (curves.isLogarithmic) json["logarithmic"] = true;
    return json;
  }
  Json operator()(lumo::Link const& link) const {
    return {{"url", link.url}, {"description", link.description}};
  }
  Json operator()(lumo::File const& file) const {
    Json json = Json::object();
    if (!file.name.empty()) json = {{"fileName", file.name}, {"description", file.description}};
    json["contentType"] = file.contentType;
    if (file.url.empty()) {
      json["data"] = lumo::ToBase64(file.data);
    } else {
      json["url"] = file.url;
    }
    return json;
  }
  Json operator()(std::shared_ptr<lumo::Grid const> const& grid) const {
    Json json = {{"columns", Json::array()}, {"rows", Json::array()}};
    for (lumo::Grid::Column const& column : grid->columns) json["columns"].push_back(column.name);
    for (lumo::Grid::Row const& row : grid->rows) json["rows"].push_back(ListOf(row.cells));
    return json;
  }
  Json operator()(std::shared_ptr<lumo::List const> const& list) const {
    return {{"items", ListOf(list->items)}};
  }
  Json operator()(lumo::LinkedRecords const& /*links*/) const { return nullptr; }
  template <class Plain>
  Json operator()(Plain const& plain) const {
    return plain;
  }

  static Json ListOf(std::vector<lumo::Value> const& values) {
    Json list = Json::array();
    for (lumo::Value const& value : values) list.push_back(JsonOf(value));
    return list;
  }
};

}  // namespace

Json JsonOf(double number) {
  if (!std::isfinite(number)) return nullptr;
  double clean = number;
  lumo::ReadNumber(lumo::TextOf(number), clean);
  bool const isWhole = clean == std::floor(clean) && std::fabs(clean) < kExactIntegers;
  return isWhole ? Json(static_cast<std::int64_t>(clean)) : Json(clean);
}

Json JsonOf(lumo::Value const& value) { return std::visit(Maker(), value); }

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
  // Of two members of one name the last would win, without a word.
  std::vector<std::set<std::string>> members;
  std::string twice;
  auto const note = [&](int /*depth*/, Json::parse_event_t event, Json& parsed) {
    if (event == Json::parse_event_t::object_start) members.emplace_back();
    if (event == Json::parse_event_t::object_end) members.pop_back();
    if (event != Json::parse_event_t::key) return true;
    auto const& name = parsed.get_ref<std::string const&>();
    if (!members.back().insert(name).second && twice.empty()) twice = name;
    return true;
  };
  Json json =
      depth > kDeepestJson ? Json(Json::value_t::discarded) : Json::parse(text, note, false);
  if (!json.is_discarded() && !twice.empty()) {
    Refuse("an object has the member " + lumo::Quoted(twice) + " twice");
  }
  if (json.is_discarded()) {
    Refuse(lumo::Quoted(text.substr(0, 30) + (text.size() > 30 ? "..." : "")) +
           (depth > kDeepestJson ? " is nested too deeply" : " is not JSON"));
  }
  return json;
}

}  // namespace cli

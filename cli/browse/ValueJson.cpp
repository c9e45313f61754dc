#include "cli/browse/ValueJson.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "lumo/toolkit/Numbers.h"

namespace cli::browse {
namespace {

Json ListOf(std::vector<double> const& figures) {
  Json list = Json::array();
  for (double const figure : figures) list.push_back(JsonOf(figure));
  return list;
}

Json JsonOfEnd(std::optional<double> const& end) { return end ? JsonOf(*end) : Json(); }

Json ListOf(std::vector<lumo::Parameter> const& parameters) {
  Json list = Json::array();
  for (lumo::Parameter const& parameter : parameters) {
    Json one = {{"name", parameter.name}, {"unit", parameter.unit}};
    if (auto const* const number = std::get_if<double>(&parameter.value)) {
      one["value"] = JsonOf(*number);
    } else {
      one["value"] = std::get<std::string>(parameter.value);
    }
    list.push_back(one);
  }
  return list;
}

Json JsonOfCurve(lumo::Curve const& curve) {
  Json one = {{"xName", curve.xName},
              {"xUnit", curve.xUnit},
              {"yUnit", curve.yUnit},
              {"x", ListOf(curve.x)},
              {"y", ListOf(curve.y)},
              {"parameters", ListOf(curve.parameters)},
              {"isJoined", curve.interpolation != lumo::Interpolation::None},
              {"xIsLog", curve.xIsLogarithmic}};
  if (!curve.yHigh.empty()) one["yHigh"] = ListOf(curve.yHigh);
  if (!curve.xWords.empty()) one["xWords"] = curve.xWords;
  return one;
}

struct Writing {
  Json operator()(std::monostate /*none*/) const { return nullptr; }
  Json operator()(lumo::NotApplicable /*none*/) const { return {{"kind", "notApplicable"}}; }
  Json operator()(std::string const& text) const { return {{"kind", "text"}, {"text", text}}; }
  Json operator()(lumo::DateTime const& date) const {
    return {{"kind", "date"}, {"text", date.text}};
  }
  Json operator()(std::int64_t number) const { return {{"kind", "number"}, {"value", number}}; }
  Json operator()(bool isSo) const { return {{"kind", "logical"}, {"value", isSo}}; }
  Json operator()(lumo::Quantity const& one) const {
    return {{"kind", "number"},
            {"value", JsonOf(one.value)},
            {"unit", one.unit},
            {"isEstimated", one.estimated}};
  }
  Json operator()(lumo::Range const& range) const {
    return {{"kind", "range"},
            {"low", JsonOfEnd(range.low)},
            {"high", JsonOfEnd(range.high)},
            {"unit", range.unit},
            {"isEstimated", range.estimated}};
  }
  Json operator()(lumo::Points const& value) const {
    Json points = Json::array();
    for (lumo::Point const& point : value.points) {
      points.push_back({{"value", JsonOf(point.value)}, {"parameters", ListOf(point.parameters)}});
    }
    return {{"kind", "points"},
            {"points", points},
            {"unit", value.unit},
            {"isEstimated", value.estimated}};
  }
  Json operator()(std::vector<std::string> const& words) const {
    return {{"kind", "words"}, {"words", words}};
  }
  Json operator()(lumo::Curves const& value) const {
    Json curves = Json::array();
    for (lumo::Curve const& curve : value.curves) curves.push_back(JsonOfCurve(curve));
    return {{"kind", "curves"}, {"curves", curves}, {"yIsLog", value.isLogarithmic}};
  }
  Json operator()(lumo::Link const& link) const {
    return {{"kind", "link"},
            {"text", link.description.empty() ? link.url : link.description},
            {"url", link.url},
            {"address", SafeAddress(link.url)}};
  }
  Json operator()(lumo::File const& file) const {
    return {{"kind", "file"}, {"name", file.name}, {"description", file.description}};
  }
  Json operator()(std::shared_ptr<lumo::Grid const> const& grid) const {
    if (!grid) return nullptr;
    Json columns = Json::array();
    Json rows = Json::array();
    for (auto const& column : grid->columns) {
      columns.push_back({{"name", column.name}, {"unit", column.unit}});
    }
    for (auto const& row : grid->rows) {
      Json cells = Json::array();
      for (lumo::Value const& cell : row.cells) cells.push_back(JsonOf(cell));
      rows.push_back(cells);
    }
    return {{"kind", "grid"}, {"columns", columns}, {"rows", rows}};
  }
  Json operator()(std::shared_ptr<lumo::List const> const& list) const {
    if (!list) return nullptr;
    Json items = Json::array();
    for (lumo::Value const& item : list->items) items.push_back(JsonOf(item));
    return {{"kind", "list"}, {"items", items}};
  }
  Json operator()(lumo::LinkedRecords const& links) const {
    std::size_t count = 0;
    for (auto const& group : links.groups) count += group.records.size();
    return {{"kind", "text"}, {"text", std::to_string(count) + " linked records"}};
  }
};

}  // namespace

Json JsonOf(double figure) {
  if (!std::isfinite(figure)) return nullptr;
  double clean = figure;
  lumo::ReadNumber(lumo::TextOf(figure), clean);
  return clean;
}

Json JsonOf(lumo::Value const& value) { return std::visit(Writing(), value); }

std::string SafeAddress(std::string const& address) {
  std::string start = address.substr(0, 8);
  std::transform(start.begin(), start.end(), start.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  bool const isWeb = start.compare(0, 7, "http://") == 0 || start == "https://";
  return isWeb ? address : "";
}

std::string TextOf(Json const& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace cli::browse

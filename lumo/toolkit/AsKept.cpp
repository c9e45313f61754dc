#include <algorithm>
#include <cmath>
#include <utility>

#include "lumo/toolkit/ValueBytes.h"

namespace lumo {
namespace {

std::string WithLineFeeds(std::string const& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') {
      out += text[i];
    } else if (i + 1 == text.size() || text[i + 1] != '\n') {
      out += '\n';
    }
  }
  return out;
}

/// Brings the values of one attribute, or of one column, into the form in which they are kept.
class Keeper {
 public:
  Keeper(Attribute const& attribute, Units const& units) : m_attribute(attribute), m_units(units) {}

  Value Keep(Value value, AttributeType type, std::string const& unit) const {
    return std::visit(
        [&](auto&& held) { return this->Kept(std::forward<decltype(held)>(held), type, unit); },
        std::move(value));
  }

 private:
  double In(double figure, std::string const& from, std::string const& to) const {
    return from.empty() || from == to ? figure : m_units.Convert(figure, from, to);
  }
  void Turn(std::vector<double>& figures, std::string const& from, std::string const& to) const {
    for (double& figure : figures) {
      if (std::isfinite(figure)) figure = In(figure, from, to);
    }
  }
  ParameterInfo const* Info(std::string const& name) const {
    for (ParameterInfo const& info : m_attribute.parameters) {
      if (info.name == name) return &info;
    }
    return nullptr;
  }
  void Keep(std::vector<Parameter>& parameters) const {
    for (Parameter& parameter : parameters) {
      ParameterInfo const* const info = Info(parameter.name);
      auto* const figure = std::get_if<double>(&parameter.value);
      if (info != nullptr && figure != nullptr) *figure = In(*figure, parameter.unit, info->unit);
      parameter.unit = info != nullptr && figure != nullptr ? info->unit : "";
    }
    std::sort(parameters.begin(), parameters.end(),
              [](Parameter const& a, Parameter const& b) { return a.name < b.name; });
  }

  template <class Held>
  Value Kept(Held&& held, AttributeType /*type*/, std::string const& /*unit*/) const {
    return Value(std::forward<Held>(held));
  }
  Value Kept(std::string&& held, AttributeType /*type*/, std::string const& /*unit*/) const {
    if (held.empty()) return {};
    return WithLineFeeds(held);
  }
  Value Kept(DateTime&& held, AttributeType /*type*/, std::string const& /*unit*/) const {
    auto const time = held.Microseconds();
    return time ? DateTime::FromMicroseconds(*time) : std::move(held);
  }
  Value Kept(std::vector<std::string>&& held, AttributeType /*type*/,
             std::string const& /*unit*/) const {
    if (held.empty()) return {};
    std::sort(held.begin(), held.end());
    return std::move(held);
  }
  Value Kept(Quantity&& held, AttributeType type, std::string const& unit) const {
    double const figure = In(held.value, held.unit, unit);
    if (type == AttributeType::Range) return Range{figure, figure, unit, held.estimated};
    return Quantity{figure, unit, held.estimated};
  }
  Value Kept(Range&& held, AttributeType /*type*/, std::string const& unit) const {
    if (!held.low && !held.high) return {};
    for (auto* const end : {&held.low, &held.high}) {
      if (*end) *end = In(**end, held.unit, unit);
    }
    held.unit = unit;
    return std::move(held);
  }
  Value Kept(Points&& held, AttributeType type, std::string const& unit) const {
    if (held.points.empty()) return {};
    bool const isSingle = held.points.size() == 1 && held.points[0].parameters.empty();
    if (isSingle) {
      return Kept(Quantity{held.points[0].value, held.unit, held.estimated}, type, unit);
    }
    for (Point& point : held.points) {
      point.value = In(point.value, held.unit, unit);
      Keep(point.parameters);
    }
    held.unit = unit;
    return std::move(held);
  }
  Value Kept(Curves&& held, AttributeType /*type*/, std::string const& unit) const {
    if (held.curves.empty()) return {};
    for (Curve& curve : held.curves) {
      Turn(curve.y, curve.yUnit, unit);
      Turn(curve.yHigh, curve.yUnit, unit);
      curve.yUnit = unit;
      ParameterInfo const* const axis = Info(curve.xName);
      if (axis != nullptr) {
        Turn(curve.x, curve.xUnit, axis->unit);
        curve.xUnit = axis->unit;
      }
      bool const isCertain = std::none_of(curve.estimated.begin(), curve.estimated.end(),
                                          [](bool estimated) { return estimated; });
      if (isCertain) curve.estimated.clear();
      auto const& high = curve.yHigh;
      bool const hasRange =
          std::any_of(high.begin(), high.end(), [](double end) { return !std::isnan(end); });
      if (!hasRange) curve.yHigh.clear();
      auto const& words = curve.xWords;
      bool const hasWord = std::any_of(words.begin(), words.end(),
                                       [](std::string const& word) { return !word.empty(); });
      if (!hasWord) curve.xWords.clear();
      Keep(curve.parameters);
      curve.interpolation = Interpolation();
      curve.xIsLogarithmic = false;
    }
    return std::move(held);
  }
  Value Kept(Link&& held, AttributeType /*type*/, std::string const& /*unit*/) const {
    return Link{WithLineFeeds(held.url), WithLineFeeds(held.description)};
  }
  Value Kept(File&& held, AttributeType /*type*/, std::string const& /*unit*/) const {
    held.url.clear();
    held.name = WithLineFeeds(held.name);
    held.description = WithLineFeeds(held.description);
    return std::move(held);
  }
  Value Kept(std::shared_ptr<Grid const>&& held, AttributeType /*type*/,
             std::string const& /*unit*/) const {
    if (!held || held->rows.empty()) return {};
    auto grid = std::make_shared<Grid>();
    for (GridColumnInfo const& info : m_attribute.columns) {
      grid->columns.push_back({info.name, info.unit});
    }
    for (Grid::Row const& from : held->rows) grid->rows.push_back(KeptRow(*held, from));
    return std::shared_ptr<Grid const>(std::move(grid));
  }
  Grid::Row KeptRow(Grid const& grid, Grid::Row const& from) const {
    Grid::Row row;
    row.linkingValue = from.linkingValue;
    for (GridColumnInfo const& info : m_attribute.columns) {
      Value cell;
      for (std::size_t i = 0; i < grid.columns.size() && i < from.cells.size(); ++i) {
        if (grid.columns[i].name == info.name) cell = from.cells[i];
      }
      row.cells.push_back(Keep(std::move(cell), info.type, info.unit));
    }
    return row;
  }

  Attribute const& m_attribute;
  Units const& m_units;
};

}  // namespace

Value AsKept(Value value, Attribute const& attribute, Units const& units) {
  return Keeper(attribute, units).Keep(std::move(value), attribute.type, attribute.unit);
}

}  // namespace lumo

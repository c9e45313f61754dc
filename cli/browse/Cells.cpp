#include "cli/browse/Cells.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace cli::browse {
namespace {

constexpr double kOpen = std::numeric_limits<double>::infinity();

/// Figures that hold for some values of parameters.
struct Sample {
  Cell cell;
  std::vector<lumo::Parameter> const* parameters;
};

void Widen(std::optional<Cell>& all, Cell const& one) {
  all = all ? Cell{std::min(all->low, one.low), std::max(all->high, one.high)} : one;
}

double const* NumberOf(Sample const& sample, std::string const& name) {
  for (lumo::Parameter const& parameter : *sample.parameters) {
    if (parameter.name == name) return std::get_if<double>(&parameter.value);
  }
  return nullptr;
}

bool HasOtherWord(std::vector<lumo::Parameter> const& parameters, Conditions const& conditions) {
  return std::any_of(parameters.begin(), parameters.end(), [&](lumo::Parameter const& parameter) {
    auto const condition = conditions.find(parameter.name);
    return condition != conditions.end() && condition->second.index() == parameter.value.index() &&
           std::holds_alternative<std::string>(parameter.value) &&
           condition->second != parameter.value;
  });
}

using Samples = std::vector<Sample>;

std::optional<Cell> Reduce(Samples const& samples, Conditions::const_iterator condition,
                           Conditions::const_iterator end);

/// What the samples come to at that place of a parameter, each step of which is reduced by the
/// conditions that follow. Steps without a figure under these are left out.
std::optional<Cell> At(std::map<double, Samples> const& steps, double place,
                       Conditions::const_iterator condition, Conditions::const_iterator end) {
  std::map<double, Cell> cells;
  for (auto const& [at, samples] : steps) {
    if (auto const cell = Reduce(samples, condition, end)) cells.emplace(at, *cell);
  }
  auto const next = cells.lower_bound(place);
  if (next == cells.end()) return {};
  if (next->first == place) return next->second;
  if (next == cells.begin()) return {};
  auto const before = std::prev(next);
  double const part = (place - before->first) / (next->first - before->first);
  auto const between = [part](double a, double b) { return a + part * (b - a); };
  return Cell{between(before->second.low, next->second.low),
              between(before->second.high, next->second.high)};
}

std::optional<Cell> Reduce(Samples const& samples, Conditions::const_iterator condition,
                           Conditions::const_iterator end) {
  for (; condition != end; ++condition) {
    double const* const place = std::get_if<double>(&condition->second);
    if (!place) continue;
    std::map<double, Samples> steps;
    for (Sample const& sample : samples) {
      if (double const* const at = NumberOf(sample, condition->first)) steps[*at].push_back(sample);
    }
    if (!steps.empty()) return At(steps, *place, std::next(condition), end);
  }
  std::optional<Cell> all;
  for (Sample const& sample : samples) Widen(all, sample.cell);
  return all;
}

/// The figures of a curve between its ends, or at the place that a condition names.
std::optional<Cell> CellOfCurve(lumo::Curve const& curve, Conditions const& conditions) {
  auto const condition = conditions.find(curve.xName);
  if (condition != conditions.end() && curve.xWords.empty()) {
    double const* const place = std::get_if<double>(&condition->second);
    std::optional<double> const there = place ? curve.At(*place) : std::nullopt;
    return there ? std::optional<Cell>({*there, *there}) : std::nullopt;
  }
  std::optional<Cell> all;
  for (std::size_t i = 0; i < curve.y.size(); ++i) {
    bool const isOther = condition != conditions.end() && i < curve.xWords.size() &&
                         condition->second != decltype(condition->second)(curve.xWords[i]);
    double const middle = curve.Middle(i);
    if (!isOther && std::isfinite(middle)) Widen(all, {middle, middle});
  }
  return all;
}

struct Reading {
  Conditions const& conditions;

  template <class Other>
  std::optional<Cell> operator()(Other const& /*value*/) const {
    return {};
  }
  std::optional<Cell> operator()(std::int64_t number) const {
    return Cell{static_cast<double>(number), static_cast<double>(number)};
  }
  std::optional<Cell> operator()(lumo::Quantity const& quantity) const {
    return Cell{quantity.value, quantity.value};
  }
  std::optional<Cell> operator()(lumo::Range const& range) const {
    if (!range.low && !range.high) return {};
    return Cell{range.low.value_or(-kOpen), range.high.value_or(kOpen)};
  }
  std::optional<Cell> operator()(lumo::Points const& value) const {
    Samples samples;
    for (lumo::Point const& point : value.points) {
      if (HasOtherWord(point.parameters, conditions)) continue;
      samples.push_back({{point.value, point.value}, &point.parameters});
    }
    return Reduce(samples, conditions.begin(), conditions.end());
  }
  std::optional<Cell> operator()(lumo::Curves const& value) const {
    Samples samples;
    for (lumo::Curve const& curve : value.curves) {
      if (HasOtherWord(curve.parameters, conditions)) continue;
      if (auto const cell = CellOfCurve(curve, conditions)) {
        samples.push_back({*cell, &curve.parameters});
      }
    }
    return Reduce(samples, conditions.begin(), conditions.end());
  }
};

void Note(Dependence& dependence, bool isFirst, std::variant<double, std::string> const& value) {
  if (double const* const number = std::get_if<double>(&value)) {
    if (!std::isfinite(*number)) return;
    dependence.least = isFirst ? *number : std::min(dependence.least, *number);
    dependence.most = isFirst ? *number : std::max(dependence.most, *number);
    return;
  }
  auto& words = dependence.words;
  auto const& word = std::get<std::string>(value);
  auto const place = std::lower_bound(words.begin(), words.end(), word);
  if (place == words.end() || *place != word) words.insert(place, word);
}

void Note(std::map<std::string, Dependence>& all, lumo::Parameter const& parameter) {
  auto const [there, isFirst] = all.try_emplace(parameter.name, Dependence{parameter.unit});
  Note(there->second, isFirst, parameter.value);
}

}  // namespace

std::optional<Cell> CellOf(lumo::Value const& value, Conditions const& conditions) {
  return std::visit(Reading{conditions}, value);
}

void Collect(lumo::Value const& value, std::map<std::string, Dependence>& dependences) {
  if (auto const* const points = std::get_if<lumo::Points>(&value)) {
    for (lumo::Point const& point : points->points) {
      for (auto const& parameter : point.parameters) Note(dependences, parameter);
    }
  }
  auto const* const curves = std::get_if<lumo::Curves>(&value);
  if (!curves) return;
  for (lumo::Curve const& curve : curves->curves) {
    for (auto const& parameter : curve.parameters) Note(dependences, parameter);
    for (std::size_t i = 0; i < curve.y.size(); ++i) {
      bool const isWord = i < curve.xWords.size();
      if (!isWord && i >= curve.x.size()) break;
      lumo::Parameter place{curve.xName, 0.0, isWord ? "" : curve.xUnit};
      if (isWord) {
        place.value = curve.xWords[i];
      } else {
        place.value = curve.x[i];
      }
      Note(dependences, place);
    }
  }
}

}  // namespace cli::browse

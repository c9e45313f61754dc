#include "lumo/toolkit/Units.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <type_traits>
#include <utility>

#include "lumo/toolkit/Digits.h"
#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

/// Calls `convert(figure, unit)` on each figure of a value, and `rename(unit)` on each unit.
/// Both tell by the unit what to do with it.
template <class StepFor>
class Walk {
 public:
  /// `stepFor` gives the step for a unit, or null. Axes and parameters are left alone unless
  /// `withParameters`.
  Walk(StepFor const& stepFor, bool withParameters, ConvertedDigits digits = ConvertedDigits::All)
      : m_stepFor(stepFor), m_withParameters(withParameters), m_digits(digits) {}

  bool HasConverted() const { return m_hasConverted; }

  void operator()(Value& value) {
    std::visit([this](auto& held) { this->Convert(held); }, value);
  }

 private:
  template <class Held>
  void Convert(Held& /*held*/) {}  // holds no figures

  void Convert(Quantity& held) { Apply(held.unit, held.value); }
  void Convert(Range& held) { Apply(held.unit, held.low, held.high); }
  void Convert(Points& held) {
    UnitStep const* const step = m_stepFor(held.unit);
    for (Point& point : held.points) {
      if (step != nullptr) Turn(*step, point.value);
      Convert(point.parameters);
    }
    Rename(step, held.unit);
  }
  void Convert(Curves& held) {
    for (Curve& curve : held.curves) {
      Apply(curve.yUnit, curve.y, curve.yHigh);
      if (m_withParameters) Apply(curve.xUnit, curve.x);
      Convert(curve.parameters);
    }
  }
  void Convert(std::vector<Parameter>& parameters) {
    if (!m_withParameters) return;
    for (Parameter& parameter : parameters) {
      if (auto* const figure = std::get_if<double>(&parameter.value)) {
        Apply(parameter.unit, *figure);
      }
    }
  }
  void Convert(std::shared_ptr<Grid const>& held) {
    if (!held) return;
    auto grid = std::make_shared<Grid>(*held);
    for (Grid::Column& column : grid->columns) Apply(column.unit);
    for (Grid::Row& row : grid->rows) {
      for (Value& cell : row.cells) (*this)(cell);
    }
    held = std::move(grid);
  }
  void Convert(std::shared_ptr<List const>& held) {
    if (!held) return;
    auto list = std::make_shared<List>(*held);
    for (Value& item : list->items) (*this)(item);
    held = std::move(list);
  }

  template <class... Figures>
  void Apply(std::string& unit, Figures&... figures) {
    UnitStep const* const step = m_stepFor(unit);
    if (step == nullptr) return;
    (Turn(*step, figures), ...);
    Rename(step, unit);
  }
  void Rename(UnitStep const* step, std::string& unit) {
    if (step == nullptr) return;
    m_hasConverted = true;
    unit = step->target;
  }
  void Turn(UnitStep const& step, double& figure) const { figure = step(figure, m_digits); }
  void Turn(UnitStep const& step, std::optional<double>& figure) const {
    if (figure) Turn(step, *figure);
  }
  void Turn(UnitStep const& step, std::vector<double>& figures) const {
    for (double& figure : figures) Turn(step, figure);
  }

  StepFor const& m_stepFor;
  bool m_withParameters;
  ConvertedDigits m_digits;
  bool m_hasConverted = false;
};

constexpr int kShownDigits = 4;
constexpr int kGuardDigits = 3;
constexpr int kEnoughDigits = 6;
constexpr int kMostDigits = 15;  ///< of a double

int EnoughFor(int digits) { return std::max(digits + kGuardDigits, kEnoughDigits); }

/// Whether a range would be turned round, as a negative factor does.
bool IsUsable(UnitStep const& step) {
  return std::isfinite(step.factor) && step.factor > 0 && std::isfinite(step.offset);
}

UnitStep const* StepTo(std::vector<UnitStep> const& steps, std::string const& target) {
  auto const found = std::find_if(steps.begin(), steps.end(),
                                  [&](UnitStep const& step) { return step.target == target; });
  return found == steps.end() ? nullptr : &*found;
}

}  // namespace

double UnitStep::operator()(double figure) const {
  double const scaled = figure * factor;
  double const result = scaled + offset;
  double const size = std::max(std::fabs(scaled), std::fabs(offset));
  if (!std::isfinite(result) || size == 0 || std::fabs(result) > size / 2) return result;
  // So many digits after the point are left of the larger one.
  double const digits = std::pow(10.0, 13.0 - std::floor(std::log10(size)));
  double const rounded = std::round(result * digits) / digits;
  return std::isfinite(rounded) ? rounded : result;
}

double UnitStep::operator()(double figure, ConvertedDigits digits) const {
  double const result = (*this)(figure);
  if (digits == ConvertedDigits::All || !std::isfinite(result)) return result;
  int const own = DigitsOf(figure);
  if (digits == ConvertedDigits::Shown) {
    // 20 degC are 293.15 K, and an offset is no part of what was measured.
    return Rounded(result, std::max(own, offset == 0 ? kShownDigits : kShownDigits + 1));
  }
  UnitStep const back = {"", 1 / factor, -offset / factor};
  for (int count = EnoughFor(own); count <= kMostDigits; ++count) {
    double const rounded = Rounded(result, count);
    // Zeros at the end do not show how many digits there were.
    if (std::max(DigitsOf(rounded), kEnoughDigits) < own + kGuardDigits) continue;
    if (Rounded(back(rounded), own) == Rounded(figure, own)) return rounded;
  }
  return result;
}

std::optional<double> UnitStep::Meant(double converted) const {
  int const digits = std::max(DigitsOf(converted), kEnoughDigits);
  double const exact = (*this)(converted);
  for (int count = 1; count <= digits - kGuardDigits; ++count) {
    double const figure = Rounded(exact, count);
    double const again = Rounded((figure - offset) / factor, digits);
    if (again == Rounded(converted, digits)) return figure;
  }
  return {};
}

UnitSystem::UnitSystem() : UnitSystem(std::map<std::string, UnitStep>()) {}

UnitSystem::UnitSystem(std::map<std::string, UnitStep> steps) {
  for (auto step = steps.begin(); step != steps.end();) {
    bool const changes = step->first != step->second.target && IsUsable(step->second);
    step = changes ? std::next(step) : steps.erase(step);
  }
  m_steps = std::make_shared<std::map<std::string, UnitStep> const>(std::move(steps));
}

UnitStep const* UnitSystem::StepFor(std::string const& unit) const {
  auto const found = m_steps->find(unit);
  return found == m_steps->end() ? nullptr : &found->second;
}

std::string const& UnitSystem::UnitFor(std::string const& unit) const {
  UnitStep const* const step = StepFor(unit);
  return step == nullptr ? unit : step->target;
}

Value UnitSystem::Convert(Value value, ConvertedDigits digits) const {
  if (m_steps->empty()) return value;
  auto const stepFor = [this](std::string const& unit) { return StepFor(unit); };
  Walk<decltype(stepFor)>(stepFor, true, digits)(value);
  return value;
}

Units::Units() : Units(std::map<std::string, std::vector<UnitStep>>()) {}

Units::Units(std::map<std::string, std::vector<UnitStep>> steps) {
  for (auto& [unit, ways] : steps) {
    ways.erase(std::remove_if(ways.begin(), ways.end(),
                              [](UnitStep const& step) { return !IsUsable(step); }),
               ways.end());
  }
  m_steps = std::make_shared<std::map<std::string, std::vector<UnitStep>> const>(std::move(steps));
}

std::map<std::string, std::vector<UnitStep>> const& Units::Steps() const { return *m_steps; }

bool Units::Knows(std::string const& unit) const { return m_steps->count(unit) != 0; }

std::vector<std::string> Units::TargetsOf(std::string const& unit) const {
  std::vector<std::string> targets;
  for (auto const& [source, steps] : *m_steps) {
    if (source != unit && StepTo(steps, unit) == nullptr) continue;
    for (UnitStep const& step : steps) {
      bool const isNew = std::find(targets.begin(), targets.end(), step.target) == targets.end();
      if (isNew) targets.push_back(step.target);
    }
  }
  bool const isNew = std::find(targets.begin(), targets.end(), unit) == targets.end();
  if (isNew) targets.insert(targets.begin(), unit);
  return targets;
}

std::optional<UnitStep> Units::Find(std::string const& from, std::string const& to) const {
  auto const direct = m_steps->find(from);
  if (direct != m_steps->end()) {
    if (UnitStep const* const step = StepTo(direct->second, to)) return *step;
  }
  for (auto const& [source, steps] : *m_steps) {
    UnitStep const* const back = StepTo(steps, from);
    if (back == nullptr) continue;
    UnitStep const onwards = {to, 1, 0};
    UnitStep const* const step = source == to ? &onwards : StepTo(steps, to);
    if (step == nullptr) continue;
    double const factor = step->factor / back->factor;
    return UnitStep{to, factor, step->offset - back->offset * factor};
  }
  return {};
}

bool Units::CanConvert(std::string const& from, std::string const& to) const {
  return from == to || Find(from, to);
}

UnitStep Units::Step(std::string const& from, std::string const& to) const {
  if (auto step = Find(from, to)) return *step;
  auto const named = [](std::string const& unit) { return unit.empty() ? "no unit" : unit; };
  if (from.empty()) {
    throw Error(ErrorCode::InvalidArgument,
                "a figure without a unit cannot be converted into " + named(to));
  }
  std::vector<std::string> targets = TargetsOf(from);
  std::string const possible = targets.size() == 1
                                   ? "the server converts " + from + " into no other unit"
                                   : from + " can be shown in " + Joined(targets);
  throw Error(ErrorCode::InvalidArgument,
              "cannot convert " + from + " into " + named(to) + ": " + possible,
              Hint{HintCode::OneOf, std::move(targets)});
}

double Units::Convert(double figure, std::string const& from, std::string const& to) const {
  return from == to ? figure : Step(from, to)(figure);
}

std::optional<double> Units::Meant(double figure, std::string const& from,
                                   std::string const& to) const {
  auto const step = from == to ? std::nullopt : Find(from, to);
  return step ? step->Meant(figure) : std::nullopt;
}

Value Units::Convert(Value value, std::string const& to) const {
  std::string first;  // of the units that cannot be converted
  bool fits = false;
  std::map<std::string, std::optional<UnitStep>> found;
  auto const stepFor = [&](std::string const& unit) -> UnitStep const* {
    fits = fits || unit == to;
    if (unit == to) return nullptr;
    auto const [step, isNew] = found.try_emplace(unit);
    if (isNew) step->second = Find(unit, to);
    if (!step->second && first.empty()) first = unit;
    return step->second ? &*step->second : nullptr;
  };
  Walk<decltype(stepFor)> walk(stepFor, false);
  walk(value);
  if (walk.HasConverted() || fits) return value;
  Step(first, to);
  return value;
}

std::optional<double> Units::NumberIn(Value const& value, std::string const& unit) const {
  auto const number = lumo::NumberIn(value);
  return number ? std::optional<double>(Convert(*number, UnitIn(value), unit)) : std::nullopt;
}

}  // namespace lumo

#include "lumo/toolkit/Condition.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <utility>

#include "lumo/toolkit/ConditionNode.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

using Node = Condition::Node;

constexpr double kOpen = std::numeric_limits<double>::infinity();
/// What conversions may leave between two figures that are the same.
constexpr double kSlack = 1e-12;

/// The range that a value covers.
struct Hull {
  double low = kOpen;
  double high = -kOpen;

  void Add(double figure) {
    if (std::isnan(figure)) return;
    low = std::min(low, figure);
    high = std::max(high, figure);
  }
  bool IsEmpty() const { return low > high; }
};

class HullOf {
 public:
  Hull operator()(std::int64_t number) const {
    return {static_cast<double>(number), static_cast<double>(number)};
  }
  Hull operator()(Quantity const& quantity) const {
    Hull hull;
    hull.Add(quantity.value);
    return hull;
  }
  Hull operator()(Range const& range) const {
    if (!range.low && !range.high) return {};
    return {range.low.value_or(-kOpen), range.high.value_or(kOpen)};
  }
  Hull operator()(Points const& points) const {
    Hull hull;
    for (Point const& point : points.points) hull.Add(point.value);
    return hull;
  }
  Hull operator()(Curves const& curves) const {
    Hull hull;
    for (Curve const& curve : curves.curves) {
      for (double const y : curve.y) hull.Add(y);
      for (double const y : curve.yHigh) hull.Add(y);
    }
    return hull;
  }
  template <class Other>
  Hull operator()(Other const& /*other*/) const {
    return {};
  }
};

/// Nothing for a value without figures, and for one whose unit does not fit.
std::optional<Hull> HullIn(Value const& value, std::string const& unit, Units const& units) {
  Hull hull = std::visit(HullOf(), value);
  std::string const& own = UnitIn(value);
  if (hull.IsEmpty() || !units.CanConvert(own, unit)) return {};
  if (std::isfinite(hull.low)) hull.low = units.Convert(hull.low, own, unit);
  if (std::isfinite(hull.high)) hull.high = units.Convert(hull.high, own, unit);
  return hull;
}

bool IsAbove(double figure, Bound const& bound) {
  return bound.isIncluded ? figure >= bound.number - std::fabs(bound.number) * kSlack
                          : figure > bound.number;
}
bool IsBelow(double figure, Bound const& bound) {
  return bound.isIncluded ? figure <= bound.number + std::fabs(bound.number) * kSlack
                          : figure < bound.number;
}

/// `hullIn` gives the range in a unit; nothing when there is none.
template <class HullInUnit>
std::optional<bool> Meets(NumberTest const& test, HullInUnit const& hullIn) {
  bool holds = true;
  bool const isAll = test.match == Match::All;
  if (test.low) {
    std::optional<Hull> const hull = hullIn(test.low->unit);
    if (!hull) return {};
    holds = holds && IsAbove(isAll ? hull->low : hull->high, *test.low);
  }
  if (test.high) {
    std::optional<Hull> const hull = hullIn(test.high->unit);
    if (!hull) return {};
    holds = holds && IsBelow(isAll ? hull->high : hull->low, *test.high);
  }
  return holds;
}

/// Nothing where the power, or a division by 0, has no value.
std::optional<Hull> PowerOf(Hull const& hull, double power) {
  if (power == 1) return hull;
  bool const isInverse = power == -1 && (hull.low > 0 || hull.high < 0);
  if (isInverse) return Hull{1 / hull.high, 1 / hull.low};
  if (hull.low < 0 || (power < 0 && hull.low == 0)) return {};
  Hull result;
  result.Add(std::pow(hull.low, power));
  result.Add(std::pow(hull.high, power));
  return result;
}

std::optional<Hull> ProductOf(std::vector<Factor> const& factors, Units const& units,
                              Condition::ValueOf const& valueOf) {
  Hull product = {1, 1};
  for (Factor const& factor : factors) {
    auto const hull = HullIn(valueOf(factor.subject.attribute.name), factor.unit, units);
    auto const raised = hull ? PowerOf(*hull, factor.power) : std::nullopt;
    if (!raised) return {};
    Hull next;
    for (double const a : {product.low, product.high}) {
      for (double const b : {raised->low, raised->high}) next.Add(a * b);
    }
    if (next.IsEmpty()) return {};
    product = next;
  }
  return product;
}

/// Calls `take` on each text of a value until one pleases.
class AnyText {
 public:
  explicit AnyText(std::function<bool(std::string const&)> take) : m_take(std::move(take)) {}

  bool operator()(std::string const& text) const { return m_take(text); }
  bool operator()(std::vector<std::string> const& words) const {
    return std::any_of(words.begin(), words.end(), m_take);
  }
  bool operator()(Link const& link) const { return m_take(link.url) || m_take(link.description); }
  bool operator()(File const& file) const {
    return m_take(file.name) || m_take(file.description) || m_take(file.contentType);
  }
  bool operator()(std::shared_ptr<List const> const& list) const {
    return list && std::any_of(list->items.begin(), list->items.end(),
                               [this](Value const& item) { return std::visit(*this, item); });
  }
  bool operator()(std::shared_ptr<Grid const> const& grid) const {
    return grid && std::any_of(grid->rows.begin(), grid->rows.end(), [this](auto const& row) {
             return std::any_of(row.cells.begin(), row.cells.end(),
                                [this](Value const& cell) { return std::visit(*this, cell); });
           });
  }
  template <class Other>
  bool operator()(Other const& /*other*/) const {
    return false;
  }

 private:
  std::function<bool(std::string const&)> m_take;
};

bool ContainsIgnoringCase(std::string const& text, std::string const& part) {
  return Lower(text).find(Lower(part)) != std::string::npos;
}

bool IsMissing(Value const& value) {
  return std::holds_alternative<std::monostate>(value) ||
         std::holds_alternative<NotApplicable>(value);
}

/// Judges one value, which is there.
class Judgement {
 public:
  Judgement(Value const& value, Units const& units) : m_value(value), m_units(units) {}

  std::optional<bool> operator()(NumberTest const& test) const {
    return Meets(test, [this](std::string const& unit) { return HullIn(m_value, unit, m_units); });
  }
  std::optional<bool> operator()(DateTest const& test) const {
    auto const* const date = std::get_if<DateTime>(&m_value);
    auto const moment = date == nullptr ? std::nullopt : date->Microseconds();
    if (!moment) return {};
    return (!test.from || *moment >= *test.from) && (!test.before || *moment < *test.before);
  }
  std::optional<bool> operator()(WordTest const& test) const {
    return std::visit(AnyText([&test](std::string const& word) {
                        return std::find(test.words.begin(), test.words.end(), word) !=
                               test.words.end();
                      }),
                      m_value);
  }
  std::optional<bool> operator()(LogicalTest const& test) const {
    auto const* const logical = std::get_if<bool>(&m_value);
    return logical == nullptr ? std::nullopt : std::optional<bool>(*logical == test.isYes);
  }
  std::optional<bool> operator()(TextTest const& test) const {
    bool const isEqual = test.kind == TextTest::Kind::Equal;
    bool const isThere = std::visit(AnyText([&](std::string const& text) {
                                      return isEqual ? EqualIgnoringCase(Trimmed(text), test.text)
                                                     : ContainsIgnoringCase(text, test.text);
                                    }),
                                    m_value);
    return isThere != (test.kind == TextTest::Kind::Lacks);
  }
  std::optional<bool> operator()(ExistsTest const& /*test*/) const { return true; }
  std::optional<bool> operator()(ProductTest const& /*test*/) const { return {}; }

 private:
  Value const& m_value;
  Units const& m_units;
};

bool IsLacks(Comparison const& comparison) {
  auto const* const text = std::get_if<TextTest>(&comparison.test);
  return text != nullptr && text->kind == TextTest::Kind::Lacks;
}

std::optional<bool> HoldsFor(Comparison const& comparison, Units const& units, Value const& value) {
  if (IsMissing(value)) {
    if (std::holds_alternative<ExistsTest>(comparison.test)) return false;
    return IsLacks(comparison) ? std::optional<bool>(true) : std::nullopt;
  }
  return std::visit(Judgement(value, units), comparison.test);
}

/// In a column any row will do, but to lack a text all of them have to.
std::optional<bool> HoldsInColumn(Comparison const& comparison, Units const& units,
                                  Value const& value) {
  auto const* const grid = std::get_if<std::shared_ptr<Grid const>>(&value);
  if (grid == nullptr || !*grid) return HoldsFor(comparison, units, Value());
  auto const& columns = (*grid)->columns;
  auto const column = std::find_if(columns.begin(), columns.end(), [&](auto const& one) {
    return one.name == comparison.subject.column;
  });
  auto const place = static_cast<std::size_t>(column - columns.begin());
  bool const decides = !IsLacks(comparison);
  std::optional<bool> result = IsLacks(comparison) ? std::optional<bool>(true) : std::nullopt;
  for (Grid::Row const& row : (*grid)->rows) {
    if (place >= row.cells.size()) continue;
    auto const holds = HoldsFor(comparison, units, row.cells[place]);
    if (holds == decides) return decides;
    if (holds) result = holds;
  }
  return result;
}

std::optional<bool> JudgeNode(Node const& node, Units const& units,
                              Condition::ValueOf const& valueOf) {
  if (node.kind == Node::Kind::Comparison) return Holds(node.comparison, units, valueOf);
  if (node.kind == Node::Kind::Not) {
    auto const holds = JudgeNode(*node.parts[0], units, valueOf);
    return holds ? std::optional<bool>(!*holds) : std::nullopt;
  }
  bool const decides = node.kind == Node::Kind::Or;
  std::optional<bool> result = !decides;
  for (auto const& part : node.parts) {
    auto const holds = JudgeNode(*part, units, valueOf);
    if (holds == decides) return decides;
    if (!holds) result = std::nullopt;
  }
  return result;
}

void AddAttributes(Node const& node, std::set<std::string>& names) {
  for (auto const& part : node.parts) AddAttributes(*part, names);
  if (node.kind != Node::Kind::Comparison) return;
  names.insert(node.comparison.subject.attribute.name);
  if (auto const* const product = std::get_if<ProductTest>(&node.comparison.test)) {
    for (Factor const& factor : product->factors) names.insert(factor.subject.attribute.name);
  }
}

}  // namespace

std::optional<bool> Holds(Comparison const& comparison, Units const& units,
                          Condition::ValueOf const& valueOf) {
  if (auto const* const test = std::get_if<ProductTest>(&comparison.test)) {
    return Meets(test->interval, [&](std::string const& /*unit*/) {
      return ProductOf(test->factors, units, valueOf);
    });
  }
  Value const& value = valueOf(comparison.subject.attribute.name);
  return comparison.subject.column.empty() ? HoldsFor(comparison, units, value)
                                           : HoldsInColumn(comparison, units, value);
}

Condition Condition::Both(Condition const& a, Condition const& b) {
  auto node = std::make_shared<Node>();
  node->kind = Node::Kind::And;
  node->parts = {a.m_top, b.m_top};
  return {std::move(node), a.m_units};
}

std::vector<std::string> Condition::Attributes() const {
  std::set<std::string> names;
  AddAttributes(*m_top, names);
  return {names.begin(), names.end()};
}

std::optional<bool> Condition::Judge(ValueOf const& valueOf) const {
  return JudgeNode(*m_top, m_units, valueOf);
}

}  // namespace lumo

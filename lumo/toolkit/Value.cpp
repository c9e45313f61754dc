#include "lumo/toolkit/Value.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>
#include <type_traits>
#include <utility>

#include "lumo/toolkit/Numbers.h"

namespace lumo {
namespace {

// ---- equality

auto Fields(RecordId const& v) { return std::tie(v.database, v.identity, v.guid); }
auto Fields(DateTime const& v) { return std::tie(v.text); }
auto Fields(Quantity const& v) { return std::tie(v.value, v.unit, v.estimated); }
auto Fields(Range const& v) { return std::tie(v.low, v.high, v.unit, v.estimated); }
auto Fields(Parameter const& v) { return std::tie(v.name, v.value, v.unit); }
auto Fields(Point const& v) { return std::tie(v.value, v.parameters); }
auto Fields(Points const& v) { return std::tie(v.points, v.unit, v.estimated); }
auto Fields(Curve const& v) {
  return std::tie(v.xName, v.xUnit, v.yUnit, v.x, v.y, v.yHigh, v.xWords, v.estimated, v.parameters,
                  v.interpolation, v.xIsLogarithmic);
}
auto Fields(Curves const& v) {
  return std::tie(v.curves, v.isGridded, v.isHidden, v.isLogarithmic);
}
auto Fields(Link const& v) { return std::tie(v.url, v.description); }
auto Fields(File const& v) { return std::tie(v.name, v.contentType, v.description, v.url, v.data); }
auto Fields(LinkedRecords::Group const& v) { return std::tie(v.name, v.records); }
auto Fields(LinkedRecords const& v) { return std::tie(v.groups); }
auto Fields(Grid::Column const& v) { return std::tie(v.name, v.unit); }
auto Fields(Grid::Row const& v) { return std::tie(v.cells, v.linkingValue, v.links); }
auto Fields(Grid const& v) { return std::tie(v.columns, v.rows); }
auto Fields(List const& v) { return std::tie(v.items); }

/// A class, so that its functions know each other whatever their order.
struct Comparison {
  template <class T>
  static bool IsSame(T const& a, T const& b) {
    if constexpr (std::is_same_v<T, double>) {
      return a == b || (std::isnan(a) && std::isnan(b));
    } else if constexpr (std::is_scalar_v<T> || std::is_same_v<T, std::string>) {
      return a == b;
    } else if constexpr (std::is_empty_v<T>) {
      return true;
    } else {
      return AreSame(Fields(a), Fields(b));
    }
  }
  template <class T>
  static bool IsSame(std::vector<T> const& a, std::vector<T> const& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](T const& x, T const& y) { return IsSame(x, y); });
  }
  template <class T>
  static bool IsSame(std::optional<T> const& a, std::optional<T> const& b) {
    return a.has_value() == b.has_value() && (!a || IsSame(*a, *b));
  }
  template <class T>
  static bool IsSame(std::shared_ptr<T const> const& a, std::shared_ptr<T const> const& b) {
    return a == b || (a && b && IsSame(*a, *b));
  }
  template <class... T>
  static bool IsSame(std::variant<T...> const& a, std::variant<T...> const& b) {
    auto const same = [&b](auto const& x) {
      return IsSame(x, std::get<std::decay_t<decltype(x)>>(b));
    };
    return a.index() == b.index() && std::visit(same, a);
  }
  template <class... T>
  static bool AreSame(std::tuple<T&...> const& a, std::tuple<T&...> const& b) {
    return AllSame(a, b, std::index_sequence_for<T...>());
  }
  template <class Tuple, std::size_t... I>
  static bool AllSame(Tuple const& a, Tuple const& b, std::index_sequence<I...> /*places*/) {
    return (IsSame(std::get<I>(a), std::get<I>(b)) && ...);
  }
};

// ---- dates

/// Takes figures off the front of a text.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : m_rest(text) {}

  bool Skip(char c) {
    if (m_rest.empty() || m_rest.front() != c) return false;
    m_rest.remove_prefix(1);
    return true;
  }
  /// A number of just so many figures within the bounds.
  bool Number(std::size_t figures, int low, int high, int& number) {
    if (m_rest.size() < figures) return false;
    if (m_rest.front() == '-' || !ReadInteger(m_rest.substr(0, figures), number)) return false;
    m_rest.remove_prefix(figures);
    return number >= low && number <= high;
  }
  /// What follows "." as microseconds; figures beyond these are dropped.
  bool Fraction(int& microseconds) {
    std::size_t figures = 0;
    microseconds = 0;
    for (; !m_rest.empty() && m_rest.front() >= '0' && m_rest.front() <= '9'; ++figures) {
      if (figures < 6) microseconds = microseconds * 10 + (m_rest.front() - '0');
      m_rest.remove_prefix(1);
    }
    for (std::size_t i = figures; i < 6; ++i) microseconds *= 10;
    return figures > 0;
  }
  bool IsAtEnd() const { return m_rest.empty(); }

 private:
  std::string_view m_rest;
};

/// Days from 1970-01-01 to a day of the Gregorian calendar. Years begin in March here, so that the
/// leap day is the last of its year; 400 of them have 146097 days.
std::int64_t DaysTo(int year, int month, int day) {
  std::int64_t const y = month <= 2 ? year - 1 : year;
  std::int64_t const era = y / 400;
  std::int64_t const yearOfEra = y - era * 400;
  std::int64_t const dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

int DaysOf(int year, int month) {
  constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  bool const isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && isLeap ? 29 : kDays.at(static_cast<std::size_t>(month - 1));
}

/// "Z", "+01:00" or nothing, in minutes east of Greenwich.
bool ReadZone(DateReader& in, int& minutes) {
  minutes = 0;
  if (in.IsAtEnd() || in.Skip('Z')) return true;
  int const sign = in.Skip('-') ? -1 : 1;
  int hours = 0;
  int more = 0;
  if (sign > 0 && !in.Skip('+')) return false;
  if (!in.Number(2, 0, 14, hours) || !in.Skip(':') || !in.Number(2, 0, 59, more)) return false;
  minutes = sign * (hours * 60 + more);
  return true;
}

// ---- curves

struct Place {
  double x = 0;
  double y = 0;
};

double OnLine(Place const& a, Place const& b, double x) {
  return a.y + (b.y - a.y) * ((x - a.x) / (b.x - a.x));
}

/// Natural cubic spline through points of growing x, three or more. The second derivatives solve a
/// system with three diagonals.
double OnSpline(std::vector<Place> const& points, double x) {
  std::size_t const last = points.size() - 1;
  std::vector<double> second(points.size(), 0.0);
  std::vector<double> factor(points.size(), 0.0);
  for (std::size_t i = 1; i < last; ++i) {
    double const before = points[i].x - points[i - 1].x;
    double const after = points[i + 1].x - points[i].x;
    double const bend =
        (points[i + 1].y - points[i].y) / after - (points[i].y - points[i - 1].y) / before;
    double const pivot = 2 * (before + after) - before * factor[i - 1];
    factor[i] = after / pivot;
    second[i] = (6 * bend - before * second[i - 1]) / pivot;
  }
  for (std::size_t i = last - 1; i > 0; --i) second[i] -= factor[i] * second[i + 1];
  auto const above = std::upper_bound(points.begin() + 1, points.end() - 1, x,
                                      [](double at, Place const& point) { return at < point.x; });
  auto const i = static_cast<std::size_t>(above - points.begin());
  Place const& a = points[i - 1];
  Place const& b = points[i];
  double const width = b.x - a.x;
  double const toB = (b.x - x) / width;
  double const toA = (x - a.x) / width;
  return toB * a.y + toA * b.y +
         ((toB * toB * toB - toB) * second[i - 1] + (toA * toA * toA - toA) * second[i]) * width *
             width / 6;
}

bool Grows(std::vector<Place> const& points) {
  return std::adjacent_find(points.begin(), points.end(), [](Place const& a, Place const& b) {
           return a.x >= b.x;
         }) == points.end();
}

std::optional<double> Between(std::vector<Place>& points, double x, Interpolation how) {
  if (how == Interpolation::CubicSpline && points.size() > 2) {
    if (points.front().x > points.back().x) std::reverse(points.begin(), points.end());
    if (Grows(points)) {
      if (x < points.front().x || x > points.back().x) return {};
      return OnSpline(points, x);
    }
  }
  for (std::size_t i = 1; i < points.size(); ++i) {
    auto const [low, high] = std::minmax(points[i - 1].x, points[i].x);
    if (low < x && x < high) return OnLine(points[i - 1], points[i], x);
  }
  return {};
}

}  // namespace

std::optional<std::int64_t> DateTime::Microseconds() const {
  DateReader in(text);
  int year = 0;
  int month = 0;
  int day = 0;
  if (!in.Number(4, 1, 9999, year) || !in.Skip('-') || !in.Number(2, 1, 12, month) ||
      !in.Skip('-') || !in.Number(2, 1, DaysOf(year, month), day)) {
    return {};
  }
  int hour = 0;
  int minute = 0;
  int second = 0;
  int fraction = 0;
  int zone = 0;
  if (in.Skip('T') || in.Skip(' ')) {
    if (!in.Number(2, 0, 23, hour) || !in.Skip(':') || !in.Number(2, 0, 59, minute)) return {};
    if (in.Skip(':') && !in.Number(2, 0, 59, second)) return {};
    if (in.Skip('.') && !in.Fraction(fraction)) return {};
  }
  if (!ReadZone(in, zone) || !in.IsAtEnd()) return {};
  std::int64_t const minutes = (DaysTo(year, month, day) * 24 + hour) * 60 + minute - zone;
  return (minutes * 60 + second) * 1'000'000 + fraction;
}

DateTime DateTime::FromMicroseconds(std::int64_t microseconds) {
  constexpr std::int64_t kDay = 86'400'000'000;
  std::int64_t const days = microseconds / kDay - (microseconds % kDay < 0 ? 1 : 0);
  std::int64_t const rest = microseconds - days * kDay;
  // The inverse of `DaysTo`, by eras of 400 years that begin in March.
  std::int64_t const shifted = days + 719468;
  std::int64_t const era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
  std::int64_t const dayOfEra = shifted - era * 146097;
  std::int64_t const yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  std::int64_t const dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  std::int64_t const month = (5 * dayOfYear + 2) / 153;  // 0 is March
  std::int64_t const day = dayOfYear - (153 * month + 2) / 5 + 1;
  std::int64_t const year = yearOfEra + era * 400 + (month >= 10 ? 1 : 0);
  std::int64_t const seconds = rest / 1'000'000;
  auto const padded = [](std::int64_t number, std::size_t size) {
    std::string const digits = std::to_string(number);
    return std::string(size - std::min(size, digits.size()), '0') + digits;
  };
  std::string text = padded(year, 4) + "-" + padded(month < 10 ? month + 3 : month - 9, 2) + "-" +
                     padded(day, 2) + "T" + padded(seconds / 3600, 2) + ":" +
                     padded(seconds / 60 % 60, 2) + ":" + padded(seconds % 60, 2);
  if (rest % 1'000'000 != 0) text += "." + padded(rest % 1'000'000, 6);
  return {std::move(text)};
}

double Curve::Middle(std::size_t point) const {
  bool const isRange = !yHigh.empty() && !std::isnan(yHigh.at(point));
  if (!isRange) return y.at(point);
  if (std::isinf(yHigh[point])) return y.at(point);
  return std::isinf(y.at(point)) ? yHigh[point] : y[point] + (yHigh[point] - y[point]) / 2;
}

std::optional<double> Curve::At(double place) const {
  std::vector<Place> points;
  bool canBeLogarithmic = xIsLogarithmic && place > 0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    double const middle = Middle(i);
    if (x[i] == place && std::isfinite(middle)) return middle;
    if (!std::isfinite(x[i]) || !std::isfinite(middle)) continue;
    points.push_back({x[i], middle});
    canBeLogarithmic = canBeLogarithmic && x[i] > 0;
  }
  if (interpolation == Interpolation::None || !std::isfinite(place)) return {};
  if (canBeLogarithmic) {
    for (Place& point : points) point.x = std::log(point.x);
    place = std::log(place);
  }
  return Between(points, place, interpolation);
}

bool Same(Value const& a, Value const& b) { return Comparison::IsSame(a, b); }

std::optional<double> NumberIn(Value const& value) {
  if (auto const* const quantity = std::get_if<Quantity>(&value)) return quantity->value;
  if (auto const* const integer = std::get_if<std::int64_t>(&value)) {
    return static_cast<double>(*integer);
  }
  auto const* const range = std::get_if<Range>(&value);
  if (range == nullptr || !range->low || !range->high) {
    return range == nullptr ? std::nullopt : range->low ? range->low : range->high;
  }
  return *range->low + (*range->high - *range->low) / 2;
}

std::string const& UnitIn(Value const& value) {
  static std::string const none;
  if (auto const* const quantity = std::get_if<Quantity>(&value)) return quantity->unit;
  if (auto const* const range = std::get_if<Range>(&value)) return range->unit;
  if (auto const* const points = std::get_if<Points>(&value)) return points->unit;
  auto const* const curves = std::get_if<Curves>(&value);
  return curves == nullptr || curves->curves.empty() ? none : curves->curves.front().yUnit;
}

}  // namespace lumo

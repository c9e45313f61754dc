#include "cli/Plot.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

#include "cli/Cells.h"
#include "cli/Rows.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

constexpr int kHeight = 15;
constexpr std::size_t kMargin = 10;
constexpr std::size_t kLeast = 30;
constexpr std::size_t kMost = 200;
constexpr std::size_t kUsual = 74;
constexpr int kDigits = 4;
constexpr std::size_t kNamed = 10;  ///< records that are named for having no curve
/// After these signs repeat.
constexpr char kSigns[] = "*o+x#@%&abcdefghijklmnpqrstuvwyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

struct Point {
  double x;
  double y;
};
using Points = std::vector<Point>;

struct Extent {
  double least = std::numeric_limits<double>::infinity();
  double most = -std::numeric_limits<double>::infinity();

  void Add(double value) {
    least = std::min(least, value);
    most = std::max(most, value);
  }
  /// Where the value lies among so many cells.
  std::size_t Place(double value, std::size_t cells) const {
    if (most <= least) return cells / 2;
    return static_cast<std::size_t>(
        std::lround((value - least) / (most - least) * static_cast<double>(cells - 1)));
  }
};

/// The finite points by their x, the middle where a point is a range.
Points PointsOf(lumo::Curve const& curve) {
  Points points;
  for (std::size_t i = 0; i < curve.x.size(); ++i) {
    double const y = curve.Middle(i);
    if (std::isfinite(curve.x[i]) && std::isfinite(y)) points.push_back({curve.x[i], y});
  }
  std::sort(points.begin(), points.end(), [](Point const& a, Point const& b) { return a.x < b.x; });
  return points;
}

std::string Short(double number) { return lumo::TextOf(number, kDigits); }

class Canvas {
 public:
  Canvas(Extent const& x, Extent const& y, std::size_t width)
      : m_x(x), m_y(y), m_width(width), m_rows(kHeight, std::string(width, ' ')) {}

  void Draw(Points const& points, char sign) {
    for (std::size_t i = 1; i < points.size(); ++i) DrawLine(points[i - 1], points[i]);
    for (Point const& point : points) Set(point, sign);
  }

  std::string Text(std::string const& xName, std::string const& unit) const {
    std::string text = Right(unit, kMargin) + '\n';
    for (int row = kHeight - 1; row >= 0; --row) {
      bool const isNamed = row % 7 == 0;
      double const figure = m_y.least + (m_y.most - m_y.least) * row / (kHeight - 1);
      std::string line = Right(isNamed ? Short(figure) : "", kMargin) + " |" +
                         m_rows[static_cast<std::size_t>(row)];
      text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }
    text += std::string(kMargin + 1, ' ') + "+" + std::string(m_width, '-') + '\n';
    std::string const least = Short(m_x.least);
    std::string const most = Short(m_x.most);
    std::string const middle = OneLine(xName);
    std::size_t const gap = m_width - std::min(m_width, least.size() + most.size());
    std::size_t const side = (gap - std::min(gap, Width(middle))) / 2;
    text += std::string(kMargin + 2, ' ') + least + std::string(side, ' ') + middle +
            Right(most, m_width - std::min(m_width, least.size() + side + Width(middle)));
    return text + '\n';
  }

 private:
  void Set(Point const& point, char sign) {
    char& cell = m_rows[m_y.Place(point.y, kHeight)][m_x.Place(point.x, m_width)];
    if (sign != '.' || cell == ' ') cell = sign;
  }

  void DrawLine(Point const& from, Point const& to) {
    for (std::size_t step = 1; step < m_width; ++step) {
      double const part = static_cast<double>(step) / static_cast<double>(m_width);
      Set({from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part}, '.');
    }
  }

  Extent m_x;
  Extent m_y;
  std::size_t m_width;
  std::vector<std::string> m_rows;
};

/// Collects the curves of all records, and draws those of an attribute in one frame.
class PlotWriter : public RowWriter {
 public:
  PlotWriter(RowLayout const& layout, Sink& sink) : m_layout(layout), m_sink(sink) {}

  void Write(Row const& row) override {
    ++m_records;
    bool hasCurve = false;
    for (RowColumn const& column : m_layout.columns) {
      if (column.kind != RowColumn::Kind::Value) continue;
      auto const* const curves = std::get_if<lumo::Curves>(&row.values[column.place]);
      if (curves == nullptr) continue;
      for (lumo::Curve const& curve : curves->curves) {
        hasCurve = hasCurve || !PointsOf(curve).empty();
        m_curves[column.place].push_back({row.head.name, curve});
      }
    }
    if (!hasCurve) m_without.push_back(row.head.name);
  }

  void End() override {
    std::size_t const width = m_sink.Screen().width;
    bool isEmpty = true;
    for (auto& [place, curves] : m_curves) {
      std::string const first = curves.front().name;
      bool const isOne = std::all_of(curves.begin(), curves.end(),
                                     [&](NamedCurve const& one) { return one.name == first; });
      if (isOne) {
        for (NamedCurve& one : curves) one.name.clear();
      }
      std::string const drawn = Plot(curves, width == 0 ? kUsual : width);
      if (drawn.empty()) continue;
      lumo::Attribute const& attribute = m_layout.attributes[place];
      m_sink.Write((isOne ? OneLine(first) + ": " : "") + WithUnit(attribute.name, attribute.unit) +
                   '\n' + drawn);
      isEmpty = false;
    }
    if (isEmpty) {
      m_sink.Write("nothing to draw: " + Count(m_records, "record") + " without a curve in " +
                   Count(m_layout.attributes.size(), "attribute") + '\n');
    } else if (!m_without.empty()) {
      std::size_t const shown = std::min(m_without.size(), kNamed);
      std::size_t const others = m_without.size() - shown;
      m_without.resize(shown);
      m_sink.Write("no curve: " + OneLine(lumo::Joined(m_without)) +
                   (others == 0 ? "" : " and " + std::to_string(others) + " more") + '\n');
    }
    m_sink.Flush();
  }

 private:
  RowLayout const& m_layout;
  Sink& m_sink;
  std::size_t m_records = 0;
  std::vector<std::string> m_without;  ///< names of records of which nothing is drawn
  std::map<std::size_t, std::vector<NamedCurve>> m_curves;  // by the place of the attribute
};

}  // namespace

std::string Plot(std::vector<NamedCurve> const& curves, std::size_t width) {
  Extent x;
  Extent y;
  std::vector<Points> all;
  for (NamedCurve const& one : curves) {
    all.push_back(PointsOf(one.curve));
    for (Point const& point : all.back()) {
      x.Add(point.x);
      y.Add(point.y);
    }
  }
  if (x.least > x.most) return "";
  Canvas canvas(x, y, std::clamp(width, kLeast + kMargin + 4, kMost) - kMargin - 4);
  std::string legend;
  for (std::size_t i = 0; i < curves.size(); ++i) {
    char const sign = kSigns[i % (sizeof kSigns - 1)];
    canvas.Draw(all[i], sign);
    std::string const parameters = TextOf(curves[i].curve.parameters);
    std::string const name = OneLine(curves[i].name);
    bool const hasBoth = !name.empty() && !parameters.empty();
    std::string const label = name + (hasBoth ? ": " : "") + parameters;
    if (!label.empty()) legend += std::string(kMargin + 2, ' ') + sign + "  " + label + '\n';
  }
  if (curves.size() > sizeof kSigns - 1) {
    legend += std::to_string(curves.size()) + " curves: their signs repeat\n";
  }
  lumo::Curve const& frame = curves.front().curve;
  return canvas.Text(WithUnit(frame.xName, frame.xUnit), frame.yUnit) + legend;
}

std::unique_ptr<RowWriter> MakePlotWriter(RowLayout const& layout, Sink& sink) {
  return std::make_unique<PlotWriter>(layout, sink);
}

}  // namespace cli

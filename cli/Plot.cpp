#include "cli/Plot.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "cli/Text.h"

namespace cli {
namespace {

constexpr int kWidth = 60;
constexpr int kHeight = 15;
constexpr std::size_t kMargin = 10;
constexpr char kSigns[] = "*o+x#@";

struct Point {
  double x;
  double y;
};

struct Curve {
  std::string label;
  std::vector<Point> points;
};

struct Extent {
  double least = std::numeric_limits<double>::infinity();
  double most = -std::numeric_limits<double>::infinity();

  void Add(double value) {
    least = std::min(least, value);
    most = std::max(most, value);
  }
  /// Where the value lies among so many cells.
  int Place(double value, int cells) const {
    if (most <= least) return cells / 2;
    return static_cast<int>(std::lround((value - least) / (most - least) * (cells - 1)));
  }
};

std::string LabelOf(Json const& series) {
  std::string label;
  for (auto const& [name, value] : series["parameters"].items()) {
    label += (label.empty() ? "" : ", ") + name + " = " + CellText(value);
  }
  return OneLine(label);
}

/// The curve through the points, through the middle where a point is a range.
Curve CurveOf(Json const& series) {
  Curve curve = {LabelOf(series), {}};
  for (Json const& point : series["points"]) {
    auto const number = [&point](char const* name) {
      return point.contains(name) && point[name].is_number()
                 ? point[name].get<double>()
                 : std::numeric_limits<double>::quiet_NaN();
    };
    double const y = point.contains("y") ? number("y") : (number("low") + number("high")) / 2;
    if (std::isfinite(number("x")) && std::isfinite(y)) curve.points.push_back({number("x"), y});
  }
  std::sort(curve.points.begin(), curve.points.end(),
            [](Point const& a, Point const& b) { return a.x < b.x; });
  return curve;
}

std::string Right(std::string text, std::size_t width) {
  return text.size() < width ? text.insert(0, width - text.size(), ' ') : text;
}

class Canvas {
 public:
  Canvas(Extent const& x, Extent const& y) : m_x(x), m_y(y) {}

  void Draw(Curve const& curve, char sign) {
    for (std::size_t i = 1; i < curve.points.size(); ++i) {
      DrawLine(curve.points[i - 1], curve.points[i]);
    }
    for (Point const& point : curve.points) Set(point, sign);
  }

  std::string Text(std::string const& xName, std::string const& unit) const {
    std::string text = Right(unit, kMargin) + '\n';
    for (int row = kHeight - 1; row >= 0; --row) {
      bool const isNamed = row % 7 == 0;
      double const figure = m_y.least + (m_y.most - m_y.least) * row / (kHeight - 1);
      std::string line = Right(isNamed ? NumberText(figure, 4) : "", kMargin) + " |" +
                         m_rows[static_cast<std::size_t>(row)];
      text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }
    text += std::string(kMargin + 1, ' ') + "+" + std::string(kWidth, '-') + '\n';
    std::string const least = NumberText(m_x.least, 4);
    std::string const most = NumberText(m_x.most, 4);
    std::string const middle = OneLine(xName);
    std::size_t const gap = kWidth - std::min<std::size_t>(kWidth, least.size() + most.size());
    std::size_t const side = (gap - std::min(gap, middle.size())) / 2;
    text +=
        std::string(kMargin + 2, ' ') + least + std::string(side, ' ') + middle +
        Right(most, kWidth - std::min<std::size_t>(kWidth, least.size() + side + middle.size()));
    return text + '\n';
  }

 private:
  void Set(Point const& point, char sign) {
    char& cell = m_rows[static_cast<std::size_t>(m_y.Place(point.y, kHeight))]
                       [static_cast<std::size_t>(m_x.Place(point.x, kWidth))];
    if (sign != '.' || cell == ' ') cell = sign;
  }

  void DrawLine(Point const& from, Point const& to) {
    for (int step = 1; step < kWidth; ++step) {
      double const part = static_cast<double>(step) / kWidth;
      Set({from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part}, '.');
    }
  }

  Extent m_x;
  Extent m_y;
  std::vector<std::string> m_rows{kHeight, std::string(kWidth, ' ')};
};

}  // namespace

std::string Plot(Json const& value) {
  std::vector<Curve> curves;
  Extent x;
  Extent y;
  for (Json const& series : value["series"]) {
    curves.push_back(CurveOf(series));
    for (Point const& point : curves.back().points) {
      x.Add(point.x);
      y.Add(point.y);
    }
  }
  if (x.least > x.most) return "  no points\n";
  Canvas canvas(x, y);
  std::string legend;
  for (std::size_t i = 0; i < curves.size(); ++i) {
    char const sign = kSigns[i % (sizeof kSigns - 1)];
    canvas.Draw(curves[i], sign);
    if (curves[i].label.empty()) continue;
    legend += std::string(kMargin + 2, ' ') + sign + "  " + curves[i].label + '\n';
  }
  return canvas.Text(value.value("xAxis", ""), value.value("unit", "")) + legend;
}

}  // namespace cli

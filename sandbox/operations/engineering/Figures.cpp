#include "sandbox/operations/engineering/Figures.h"

#include <algorithm>

#include "sandbox/Fault.h"

namespace sandbox {

std::vector<Attribute> ByName(Store& store, std::string const& name, int tableId) {
  return Attributes(store, "a.name = ? AND a.table_id = ?", {name, Id(tableId)});
}

Figure FigureOf(Store& store, Record const& record, Attribute const& attribute) {
  auto const rows =
      store.Rows("SELECT low, high FROM attribute_value WHERE record_id = ? AND attribute_id = ?",
                 {Id(record.id), Id(attribute.id)});
  if (rows.empty() || rows[0].Text(0).empty()) return {attribute, {}};
  return {attribute, (rows[0].Real(0) + rows[0].Real(1)) / 2};
}

std::vector<Figure> NeededFigures(Store& store, Record const& record) {
  constexpr char const* kNeeded[] = {"Density",          "Young's modulus",
                                     "Poisson's ratio",  "Yield strength (elastic limit)",
                                     "Tensile strength", "Thermal expansion coefficient"};
  std::vector<Figure> figures;
  for (char const* const name : kNeeded) {
    for (Attribute const& attribute : ByName(store, name, record.tableId)) {
      figures.push_back(FigureOf(store, record, attribute));
    }
  }
  return figures;
}

Curve CurveOf(Store& store, Record const& record) {
  Curve curve;
  auto const rows = store.Rows(
      "SELECT v.xml FROM attribute_value v JOIN attribute a ON a.id = v.attribute_id"
      " WHERE v.record_id = ? AND a.name = ?",
      {Id(record.id), kCurve});
  if (rows.empty()) return curve;
  pugi::xml_document value;
  value.load_string(("<v>" + rows[0].Text(0) + "</v>").c_str());
  pugi::xml_node const series = value.first_child().child("b:Graph").child("b:Series");
  for (pugi::xml_node const point : series.child("b:XYPoints").children()) {
    double const x = NumberOf(point.child("b:X").child("b:Value").text().get());
    bool const isRange = !point.child("b:LowerY").empty();
    double const y = isRange ? (NumberOf(point.child("b:LowerY").text().get()) +
                                NumberOf(point.child("b:UpperY").text().get())) /
                                   2
                             : NumberOf(point.child("b:Y").text().get());
    curve.emplace_back(x, y);
  }
  return curve;
}

double Interpolated(Curve const& curve, double x) {
  if (x < curve.front().first || x > curve.back().first) {
    throw Fault("the curve is not defined at a temperature of " + TextOfNumber(x) + " degC");
  }
  auto const above = std::find_if(curve.begin() + 1, curve.end(),
                                  [x](auto const& point) { return point.first >= x; });
  auto const below = above - 1;
  double const part = (x - below->first) / (above->first - below->first);
  return below->second + part * (above->second - below->second);
}

}  // namespace sandbox

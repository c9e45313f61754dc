#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/model/Attributes.h"
#include "sandbox/model/Records.h"

namespace sandbox {

/// A figure of a record: the middle of its range, in the database's unit.
struct Figure {
  Attribute attribute;
  std::optional<double> value;
};

/// The attributes of that name in a table: one or none.
std::vector<Attribute> ByName(Store& store, std::string const& name, int tableId);
Figure FigureOf(Store& store, Record const& record, Attribute const& attribute);

/// What the exporters need: density, Young's modulus, Poisson's ratio, yield strength, tensile
/// strength and thermal expansion.
std::vector<Figure> NeededFigures(Store& store, Record const& record);
constexpr std::size_t kYield = 3;     ///< place of the yield strength among them
constexpr std::size_t kRequired = 5;  ///< so many must be there

/// The curve from which a card takes the yield strength at a temperature.
constexpr char kCurve[] = "Yield strength against temperature";
using Curve = std::vector<std::pair<double, double>>;
/// Points of the record's first curve of yield strength; empty without one.
Curve CurveOf(Store& store, Record const& record);
/// Throws `Fault` beyond the ends of the curve.
double Interpolated(Curve const& curve, double x);

}  // namespace sandbox

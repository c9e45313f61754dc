#pragma once

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "lumo/toolkit/Value.h"

namespace cli::browse {

/// What holds when a value is read, by the parameter's name: 100 in its unit, or a word.
using Conditions = std::map<std::string, std::variant<double, std::string>>;

/// What a chart shows of a value: a figure, or a range of figures. An open end is infinite.
struct Cell {
  double low = 0;
  double high = 0;
};

/// The figures of a value under these conditions. A condition on a number is met by interpolation
/// between the points, or curves, to both sides of it; a value that has none on one of the sides
/// has no figure there. What no condition settles widens the range. Nothing for a value without
/// figures.
std::optional<Cell> CellOf(lumo::Value const& value, Conditions const& conditions);

/// A parameter on which the figures of some values depend.
struct Dependence {
  std::string unit = {};
  double least = 0;
  double most = 0;
  std::vector<std::string> words = {};  ///< of one that takes words; sorted
};
/// Adds what the figures of this value depend on, by name.
void Collect(lumo::Value const& value, std::map<std::string, Dependence>& dependences);

}  // namespace cli::browse

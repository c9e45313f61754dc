#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "lumo/toolkit/Condition.h"

/// What conditions are made of. Not installed.
namespace lumo {

/// What a comparison looks at: an attribute, or a column of its grids.
struct Subject {
  Attribute attribute = {};
  std::string column = {};  ///< empty for the attribute itself
  AttributeType type = AttributeType::Text;
  std::string unit = {};
  std::vector<std::string> words = {};
};

/// One factor of a product, in the unit in which the product is formed.
struct Factor {
  Subject subject = {};
  double power = 1;
  std::string unit = {};
};

/// One end of an interval of numbers.
struct Bound {
  double number = 0;
  std::string unit = {};
  bool isIncluded = true;
};

/// Numbers between two ends, of which one may be missing.
struct NumberTest {
  std::optional<Bound> low = {};
  std::optional<Bound> high = {};
  Match match = Match::Overlap;
};
/// The same for a product, whose factors say their units.
struct ProductTest {
  std::vector<Factor> factors = {};
  NumberTest interval = {};
};
/// Moments from the first on and before the second, in microseconds as `DateTime` has them.
struct DateTest {
  std::optional<std::int64_t> from = {};
  std::optional<std::int64_t> before = {};
};
struct WordTest {
  std::vector<std::string> words = {};  ///< any of them
};
struct LogicalTest {
  bool isYes = true;
};
struct TextTest {
  enum class Kind { Equal, Contains, Lacks } kind = Kind::Contains;
  std::string text = {};
};
struct ExistsTest {};

/// A comparison; a `ProductTest` has subjects of its own.
struct Comparison {
  Subject subject = {};
  std::variant<NumberTest, ProductTest, DateTest, WordTest, LogicalTest, TextTest, ExistsTest>
      test = {};
};

/// A node of the tree: a comparison, or nodes that are joined.
struct Condition::Node {
  enum class Kind { Comparison, Not, And, Or } kind = Kind::Comparison;
  lumo::Comparison comparison = {};
  std::vector<std::shared_ptr<Node const>> parts = {};  ///< one for `Not`
};

/// Whether a comparison holds for these values; nothing when they do not tell.
std::optional<bool> Holds(Comparison const& comparison, Units const& units,
                          Condition::ValueOf const& valueOf);

/// The factors of a unit's symbol with their powers. "." binds closer than "/": "W/m.K" is W/(m.K).
/// Symbols that say the same have the same factors: "GPa/(kg/m^3)" and "GPa.m^3/kg".
LUMO_API std::map<std::string, double> FactorsOf(std::string const& unit);
/// The factors as a symbol: "GPa.m^3/kg".
LUMO_API std::string SymbolOf(std::map<std::string, double> const& factors);

}  // namespace lumo

#pragma once

#include <string>
#include <vector>

#include "lumo/toolkit/Value.h"

namespace lumo {

/// What an attribute holds, and what its `Value` is then.
enum class AttributeType {
  Text,      ///< std::string, a line
  LongText,  ///< std::string
  Integer,   ///< std::int64_t
  Logical,   ///< bool
  Date,      ///< DateTime
  Discrete,  ///< std::vector<std::string>, words out of those that the attribute allows
  Number,    ///< Quantity, or Points when it depends on parameters
  Range,     ///< Range
  Curve,     ///< Curves
  Grid,      ///< Grid
  Link,      ///< Link
  Picture,   ///< File without a name
  File,      ///< File
  Other      ///< what this library cannot read
};

/// In words for people: "range of numbers".
LUMO_API char const* NameOf(AttributeType type);
/// Of a code on the wire, such as "RNGE".
LUMO_API AttributeType AttributeTypeOf(std::string const& code);

/// What figures and curves depend on.
struct ParameterInfo {
  std::string name = {};
  int identity = 0;
  std::string unit = {};
  bool isDiscrete = false;  ///< takes words, not numbers
  Interpolation interpolation = Interpolation::None;
  bool isLogarithmic = false;           ///< the scale of its axis
  std::vector<std::string> words = {};  ///< those that a discrete one takes
  std::vector<double> numbers = {};     ///< those that a restricted one takes
};

/// A column of an attribute that holds grids.
struct GridColumnInfo {
  std::string name = {};
  AttributeType type = AttributeType::Text;
  std::string unit = {};
  std::vector<std::string> words = {};
};

/// An attribute of a table.
struct Attribute {
  std::string name = {};
  int identity = 0;
  AttributeType type = AttributeType::Text;
  std::string unit = {};       ///< in which the server keeps its figures
  bool isMultiValued = false;  ///< takes several words
  bool isSearchable = true;
  std::vector<std::string> words = {};  ///< those that a discrete one takes
  std::vector<GridColumnInfo> columns = {};
  /// Of a number or a curve; see `Table::Attributes` for when they are known.
  std::vector<ParameterInfo> parameters = {};
};

}  // namespace lumo

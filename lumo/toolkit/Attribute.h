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
  std::string name = {};    ///< as the server has it
  int identity = 0;         ///< by which requests name it
  std::string unit = {};    ///< in which its figures stand
  bool isDiscrete = false;  ///< takes words, not numbers
  /// How values between the given ones are found.
  Interpolation interpolation = Interpolation::None;
  bool isLogarithmic = false;           ///< the scale of its axis
  std::vector<std::string> words = {};  ///< those that a discrete one takes
  std::vector<double> numbers = {};     ///< those that a restricted one takes
};

/// A column of an attribute that holds grids.
struct GridColumnInfo {
  std::string name = {};                     ///< of the column
  AttributeType type = AttributeType::Text;  ///< what its cells hold
  std::string unit = {};                     ///< in which its figures stand
  std::vector<std::string> words = {};       ///< those that a discrete one takes
};

/// An attribute of a table.
struct Attribute {
  std::string name = {};                     ///< as the server has it
  int identity = 0;                          ///< by which requests name it
  AttributeType type = AttributeType::Text;  ///< what it holds
  std::string unit = {};                     ///< in which the server keeps its figures
  bool isMultiValued = false;                ///< takes several words
  bool isSearchable = true;                  ///< conditions may be on it
  std::vector<std::string> words = {};       ///< those that a discrete one takes
  std::vector<GridColumnInfo> columns = {};  ///< of a grid
  /// Of a number or a curve; see `Table::Attributes` for when they are known.
  std::vector<ParameterInfo> parameters = {};
};

}  // namespace lumo

#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// Codes of the attribute types. Three have no value class: "FUNC", "DSFN" and "MAFN" stand in
/// attribute definitions only.
class LUMO_API AttributeTypes {
 public:
  /// As it stands in replies:
  static std::string const POINT_TYPE_STRING;
  static std::string const RANGE_TYPE_STRING;
  static std::string const FLOAT_FUNCTIONAL_TYPE_STRING;
  static std::string const INTEGER_TYPE_STRING;
  static std::string const LOGICAL_TYPE_STRING;
  static std::string const DISCRETE_TYPE_STRING;
  static std::string const SHORT_TEXT_TYPE_STRING;
  static std::string const LONG_TEXT_TYPE_STRING;
  static std::string const DATE_TIME_TYPE_STRING;
  static std::string const HYPERLINK_TYPE_STRING;
  static std::string const PICTURE_TYPE_STRING;
  static std::string const FILE_TYPE_STRING;
  static std::string const DISCRETE_FUNCTIONAL_TYPE_STRING;
  static std::string const MATHS_FUNCTIONAL_TYPE_STRING;
  static std::string const TABULAR_TYPE_STRING;
  static std::string const LIST_TYPE_STRING;
  static std::string const EMPTY_TYPE_STRING;
  static std::string const LINK_TYPE_STRING;
  static std::string const FLOAT_FUNCTIONAL_SERIES_TYPE_STRING;
  static std::string const FLOAT_FUNCTIONAL_GRIDDED_TYPE_STRING;
};

#include "lumo/toolkit/Attribute.h"

#include "lumo/values/AttributeTypes.h"

namespace lumo {

char const* NameOf(AttributeType type) {
  switch (type) {
    case AttributeType::Text: return "text";
    case AttributeType::LongText: return "long text";
    case AttributeType::Integer: return "whole number";
    case AttributeType::Logical: return "yes or no";
    case AttributeType::Date: return "date";
    case AttributeType::Discrete: return "words";
    case AttributeType::Number: return "number";
    case AttributeType::Range: return "range of numbers";
    case AttributeType::Curve: return "curve";
    case AttributeType::Grid: return "table";
    case AttributeType::Link: return "link";
    case AttributeType::Picture: return "picture";
    case AttributeType::File: return "file";
    case AttributeType::Other: break;
  }
  return "unknown";
}

AttributeType AttributeTypeOf(std::string const& code) {
  struct Entry {
    std::string const& code;
    AttributeType type;
  };
  Entry const entries[] = {
      {AttributeTypes::SHORT_TEXT_TYPE_STRING, AttributeType::Text},
      {AttributeTypes::LONG_TEXT_TYPE_STRING, AttributeType::LongText},
      {AttributeTypes::INTEGER_TYPE_STRING, AttributeType::Integer},
      {AttributeTypes::LOGICAL_TYPE_STRING, AttributeType::Logical},
      {AttributeTypes::DATE_TIME_TYPE_STRING, AttributeType::Date},
      {AttributeTypes::DISCRETE_TYPE_STRING, AttributeType::Discrete},
      {AttributeTypes::POINT_TYPE_STRING, AttributeType::Number},
      {AttributeTypes::RANGE_TYPE_STRING, AttributeType::Range},
      {AttributeTypes::FLOAT_FUNCTIONAL_TYPE_STRING, AttributeType::Curve},
      {AttributeTypes::TABULAR_TYPE_STRING, AttributeType::Grid},
      {AttributeTypes::HYPERLINK_TYPE_STRING, AttributeType::Link},
      {AttributeTypes::PICTURE_TYPE_STRING, AttributeType::Picture},
      {AttributeTypes::FILE_TYPE_STRING, AttributeType::File},
  };
  for (Entry const& entry : entries) {
    if (entry.code == code) return entry.type;
  }
  return AttributeType::Other;
}

}  // namespace lumo

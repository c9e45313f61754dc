#pragma once

#include <string>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"

/// Text of any length.
class LUMO_API LongTextDataType : public lumo::SimpleValue<LongTextDataType, std::string> {
 public:
  using SimpleValue::SimpleValue;
  std::string GetNodeName() const override { return "LongTextDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::LONG_TEXT_TYPE_STRING; }
};

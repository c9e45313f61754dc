#pragma once

#include <string>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"

/// A line of text.
class LUMO_API ShortTextDataType : public lumo::SimpleValue<ShortTextDataType, std::string> {
 public:
  using SimpleValue::SimpleValue;
  std::string GetNodeName() const override { return "ShortTextDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::SHORT_TEXT_TYPE_STRING; }
};

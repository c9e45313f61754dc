#pragma once

#include <string>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"

/// A whole number.
class LUMO_API IntegerDataType : public lumo::SimpleValue<IntegerDataType, int> {
 public:
  using SimpleValue::SimpleValue;
  std::string GetNodeName() const override { return "IntegerDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::INTEGER_TYPE_STRING; }
};

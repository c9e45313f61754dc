#pragma once

#include <string>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"

/// Yes or no.
class LUMO_API LogicalDataType : public lumo::SimpleValue<LogicalDataType, bool> {
 public:
  using SimpleValue::SimpleValue;
  std::string GetNodeName() const override { return "LogicalDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::LOGICAL_TYPE_STRING; }
};

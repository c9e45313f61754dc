#pragma once

#include <string>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"

/// A date and time, kept as the text that the server sends.
class LUMO_API DateTimeDataType : public lumo::SimpleValue<DateTimeDataType, std::string> {
 public:
  using SimpleValue::SimpleValue;
  std::string GetNodeName() const override { return "DateDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::DATE_TIME_TYPE_STRING; }
};

#pragma once

#include <string>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/BinaryDataType.h"
#include "lumo/values/DataValue.h"

/// A picture.
class LUMO_API PictureDataType : public lumo::DataValue<PictureDataType, BinaryDataType> {
 public:
  using DataValue::DataValue;
  std::string GetNodeName() const override { return "PictureDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::PICTURE_TYPE_STRING; }
};

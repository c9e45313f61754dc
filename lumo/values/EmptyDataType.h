#pragma once

#include <string>

#include "lumo/platform/core/Counted.h"
#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValueFactoryNew.h"

/// The value of a cell that holds nothing.
class LUMO_API EmptyDataType : public lumo::Counted<EmptyDataType, IDataValue> {
 public:
  /// Made by library start-up; null before it, and after shut-down.
  static inline TypedDataValueFactory<EmptyDataType>* s_factory = nullptr;
  std::string GetNodeName() const override { return "Empty"; }
  std::string GetTypeString() const override { return AttributeTypes::EMPTY_TYPE_STRING; }
  void CreateXMLNode(XmlNode<char>* /*node*/) const override {}
};

/// Makes a new object; there is nothing to read.
template <>
inline SmartPtr<IDataValue> TypedDataValueFactory<EmptyDataType>::CreateInstance(
    XmlNode<char> const* /*node*/) {
  return EmptyDataType::CreateOne();
}

#pragma once

#include <string>
#include <vector>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"
#include "lumo/values/NameRegistry.h"

/// A list of values, found in cells of tabular data. It is only read: nothing is sent.
class LUMO_API ListDataType : public lumo::DataValue<ListDataType> {
 public:
  /// Type codes by the name of an item's element; filled by library start-up, emptied by shut-down.
  static lumo::NameRegistry& AccessRegistry();
  static void RegisterTypes();

  ListDataType() = default;
  explicit ListDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "ListDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::LIST_TYPE_STRING; }

  /// One entry per item of the list; null for an item of an unknown type.
  std::vector<SmartPtr<IDataValue>>& AccessItems() { return m_items; }
  std::vector<SmartPtr<IDataValue>> const& AccessItems() const { return m_items; }
  void AddItem(SmartPtr<IDataValue> const& item) { m_items.push_back(item); }

  void CreateXMLNode(XmlNode<char>* /*node*/) const override {}

 private:
  std::vector<SmartPtr<IDataValue>> m_items;
};

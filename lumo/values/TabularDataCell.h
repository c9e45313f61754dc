#pragma once

#include "lumo/platform/core/Counted.h"
#include "lumo/values/IDataValue.h"
#include "lumo/values/NameRegistry.h"
#include "lumo/values/TabularColumn.h"

/// A cell of tabular data. It knows its column without owning it and loses it when the column goes.
class LUMO_API TabularDataCell : public lumo::Counted<TabularDataCell> {
 public:
  /// Type codes by the name of a value's element; filled by library start-up, emptied by shut-down.
  static lumo::NameRegistry s_factory;
  /// See `s_factory`.
  static lumo::NameRegistry& AccessRegistry() { return s_factory; }
  static void RegisterTypes();

  TabularDataCell() = default;
  /// A cell with this value, null for an empty one, in that column.
  TabularDataCell(SmartPtr<IDataValue> const& data, TabularColumn const* column)
      : m_data(data), m_column(column) {}

  using Counted::CreateOne;
  /// The same, made to be shared.
  static SmartPtr<TabularDataCell> CreateOne(SmartPtr<IDataValue> const& data,
                                             TabularColumn const* column);
  /// A cell without a value.
  static SmartPtr<TabularDataCell> CreateEmpty(TabularColumn const* column) {
    return CreateOne(SmartPtr<IDataValue>(), column);
  }
  /// The cell in an element of a reply: empty when its value is of an unknown type, null for a null
  /// node.
  static SmartPtr<TabularDataCell> CreateOne(XmlNode<char> const* node,
                                             TabularColumn const* column);

  /// Null for an empty cell.
  SmartPtr<IDataValue> GetData() const { return m_data; }
  void SetData(SmartPtr<IDataValue> const& data) { m_data = data; }
  /// Null when the cell belongs to no column, or its column is gone.
  TabularColumn const* GetColumn() const { return m_column.Get(); }

  /// An empty cell writes nothing, one without a column no name.
  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<IDataValue> m_data;
  lumo::WeakPtr<TabularColumn> m_column;
};

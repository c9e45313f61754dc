#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValue.h"
#include "lumo/values/TabularDataRow.h"

/// A small table inside an attribute: typed columns, rows of cells, and per row the records that it
/// links to. For an import it is sent whole, or, once a row was pushed for a change, as its changes
/// alone:
///
///     auto row = table->PushRowForUpdate(TabularDataType::Update, 17);
///     row->AtCol(column)->SetData(value);
///
/// Cells that a row of a reply lacks are filled in, empty, until there are a million of them in the
/// table: the rows after that stay as short as they came, so that a small reply cannot fill the
/// memory.
class LUMO_API TabularDataType : public lumo::DataValue<TabularDataType>,
                                 public lumo::WeakTarget<TabularDataType> {
 public:
  enum eChangeType : int { InsertBefore = 0, Append = 1, Update = 2, Delete = 3 };
  /// Name of the change's element; empty for a value beyond the four.
  static std::string ChangeType_ToString(eChangeType change);

  TabularDataType() = default;
  explicit TabularDataType(XmlNode<char> const* node);
  /// Shares the columns and copies the rows; of a table with changes only the changed ones.
  TabularDataType& operator=(TabularDataType const& other);
  using DataValue::CreateOne;
  /// Null for a null node and for a table without "columns" or "summaryRow".
  static SmartPtr<TabularDataType> CreateOne(XmlNode<char> const* node);

  std::string GetNodeName() const override { return "TabularDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::TABULAR_TYPE_STRING; }
  std::string GetImportNodeName() const override { return "TabularDataImportValue"; }

  /// In the order of the message.
  std::vector<SmartPtr<TabularColumn>> const& GetColumns() const { return m_columns; }
  /// Appends the column, and an empty cell to every row but the short ones; null is ignored.
  void AddColumn(SmartPtr<TabularColumn> const& column);
  /// Place of the column, counted from 0; -1 for one that is not in the table.
  int GetColumnOffset(TabularColumn const* column) const;

  /// In the order of the message.
  std::vector<SmartPtr<TabularDataRow>> const& GetRows() const { return m_rows; }
  /// Appends a row with an empty cell per column.
  SmartPtr<TabularDataRow> PushRow();
  /// Appends the row, which becomes one of this table: empty cells are added until there is one per
  /// column. The cells that it has keep their data and their columns. Null is ignored.
  void PushRow(SmartPtr<TabularDataRow> const& row);
  /// Appends a row that stands for a change. `identity` says which row of the server's table it
  /// concerns; 0 or less: none.
  SmartPtr<TabularDataRow> PushRowForUpdate(eChangeType change, int identity);
  /// The rows that stand for changes; `GetRows` owns them.
  std::map<eChangeType, std::vector<TabularDataRow*>> const& GetChanges() const {
    return m_changes;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  /// Whether so many cells were filled in that rows were left short.
  bool HasShortRows() const;

  std::vector<SmartPtr<TabularColumn>> m_columns;
  std::map<TabularColumn const*, int> m_columnOffsets;
  std::vector<SmartPtr<TabularDataRow>> m_rows;
  std::map<eChangeType, std::vector<TabularDataRow*>> m_changes;
  std::size_t m_filledIn = 0;
};

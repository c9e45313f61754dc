#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "lumo/types/RecordReference.h"
#include "lumo/values/TabularDataCell.h"

class TabularDataType;

/// A row of tabular data with the records that it links to. It knows its table without owning it. A
/// row may be kept beyond its table, whose columns its cells then lose unless somebody else holds
/// them; it belongs to the table's thread all the same, where the table goes and it finds out.
class LUMO_API TabularDataRow : public lumo::Counted<TabularDataRow> {
 public:
  TabularDataRow() = default;
  /// A row with an empty cell per column of the table, which may be null.
  explicit TabularDataRow(TabularDataType const* table);
  /// Copies data, links and identity; the row stays with its table. Data goes from cell to cell as
  /// far as there are cells; a row without cells and table takes copies of the other's cells.
  TabularDataRow& operator=(TabularDataRow const& other);

  using Counted::CreateOne;
  /// A row with an empty cell per column of the table, which may be null.
  static SmartPtr<TabularDataRow> CreateOne(TabularDataType const* table);
  /// The row in an element of a reply; null for a null node. Cells beyond the table's columns are
  /// dropped, missing ones are filled in empty.
  static SmartPtr<TabularDataRow> CreateOne(XmlNode<char> const* node,
                                            TabularDataType const* table);

  /// One cell per column, in the order of the columns; fewer only where `TabularDataType` says so.
  std::vector<SmartPtr<TabularDataCell>>& GetData() { return m_cells; }
  std::vector<SmartPtr<TabularDataCell>> const& GetData() const { return m_cells; }
  /// The cell at that place, or in that column of the row's table. Throws std::out_of_range when
  /// there is none.
  SmartPtr<TabularDataCell>& At(std::size_t index) { return m_cells[Checked(index)]; }
  SmartPtr<TabularDataCell> const& At(std::size_t index) const { return m_cells[Checked(index)]; }
  /// As `At`, by column.
  SmartPtr<TabularDataCell>& AtCol(TabularColumn const* column) { return At(OffsetOf(column)); }
  SmartPtr<TabularDataCell> const& AtCol(TabularColumn const* column) const {
    return At(OffsetOf(column));
  }
  /// Only read: links are changed through the data import service.
  std::vector<SmartPtr<RecordReference>>& GetLinkedRecords() { return m_linkedRecords; }
  std::vector<SmartPtr<RecordReference>> const& GetLinkedRecords() const { return m_linkedRecords; }
  void AddLinkedRecord(SmartPtr<RecordReference> const& record) {
    m_linkedRecords.push_back(record);
  }
  /// The value by which the row finds its linked records; not sent when empty.
  std::string const& GetLinkingValue() const { return m_linkingValue; }
  void SetLinkingValue(std::string const& value) { m_linkingValue = value; }
  /// 0 or less for a row without an identity.
  int GetIdentity() const { return m_identity; }
  void SetIdentity(int identity) { m_identity = identity; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  friend class TabularDataType;

  /// A row with as many of the table's cells, but no more than the table has columns.
  TabularDataRow(TabularDataType const* table, std::size_t cells);
  /// As `CreateOne`, but without the missing cells.
  static SmartPtr<TabularDataRow> Read(XmlNode<char> const& node, TabularDataType const* table);
  /// Appends the empty cells that are missing; returns their number.
  std::size_t FillUp();
  std::size_t Checked(std::size_t index) const;
  std::size_t OffsetOf(TabularColumn const* column) const;

  std::vector<SmartPtr<TabularDataCell>> m_cells;
  std::vector<SmartPtr<RecordReference>> m_linkedRecords;
  std::string m_linkingValue;
  int m_identity = 0;
  lumo::WeakPtr<TabularDataType> m_table;
};

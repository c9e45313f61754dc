#include "lumo/values/TabularDataRow.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "lumo/values/TabularDataType.h"
#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

TabularDataRow::TabularDataRow(TabularDataType const* table) : m_table(table) { FillUp(); }

TabularDataRow::TabularDataRow(TabularDataType const* table, std::size_t cells) : m_table(table) {
  for (SmartPtr<TabularColumn> const& column : table->GetColumns()) {
    if (m_cells.size() == cells) break;
    m_cells.push_back(TabularDataCell::CreateEmpty(column.get()));
  }
}

SmartPtr<TabularDataRow> TabularDataRow::CreateOne(TabularDataType const* table) {
  return {new TabularDataRow(table)};
}

SmartPtr<TabularDataRow> TabularDataRow::CreateOne(XmlNode<char> const* node,
                                                   TabularDataType const* table) {
  if (node == nullptr) return nullptr;
  SmartPtr<TabularDataRow> row = Read(*node, table);
  row->FillUp();
  return row;
}

SmartPtr<TabularDataRow> TabularDataRow::Read(XmlNode<char> const& node,
                                              TabularDataType const* table) {
  SmartPtr<TabularDataRow> row = CreateOne();
  row->m_table = lumo::WeakPtr<TabularDataType>(table);
  lumo::NodeReader in(&node);
  in.In("LinkedRecords").ForEach("LinkedRecord", [&row](XmlNode<char> const& record) {
    row->AddLinkedRecord(RecordReference::CreateOne(&record));
    lumo::NodeReader(&record).Attribute("linkingValue", row->m_linkingValue);
  });
  in.In("Cells").ForEach("TabularDataCell", [&](XmlNode<char> const& cell) {
    std::size_t const place = row->m_cells.size();
    if (table == nullptr || place == table->GetColumns().size()) return;
    row->m_cells.push_back(TabularDataCell::CreateOne(&cell, table->GetColumns()[place].get()));
  });
  in.Attribute("identity", row->m_identity);
  return row;
}

std::size_t TabularDataRow::FillUp() {
  TabularDataType const* const table = m_table.Get();
  if (table == nullptr) return 0;
  std::size_t const given = m_cells.size();
  m_cells.reserve(table->GetColumns().size());
  for (std::size_t place = given; place < table->GetColumns().size(); ++place) {
    m_cells.push_back(TabularDataCell::CreateEmpty(table->GetColumns()[place].get()));
  }
  return m_cells.size() - given;
}

TabularDataRow& TabularDataRow::operator=(TabularDataRow const& other) {
  if (m_cells.empty() && m_table.Get() == nullptr) {
    for (SmartPtr<TabularDataCell> const& cell : other.m_cells) {
      m_cells.push_back(TabularDataCell::CreateEmpty(cell ? cell->GetColumn() : nullptr));
    }
  }
  std::size_t const count = std::min(m_cells.size(), other.m_cells.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (m_cells[i] && other.m_cells[i]) m_cells[i]->SetData(other.m_cells[i]->GetData());
  }
  m_linkedRecords = other.m_linkedRecords;
  m_linkingValue = other.m_linkingValue;
  m_identity = other.m_identity;
  return *this;
}

std::size_t TabularDataRow::Checked(std::size_t index) const {
  if (index < m_cells.size()) return index;
  throw std::out_of_range("a row of " + std::to_string(m_cells.size()) + " cells has none at " +
                          std::to_string(index));
}

std::size_t TabularDataRow::OffsetOf(TabularColumn const* column) const {
  TabularDataType const* const table = m_table.Get();
  if (table == nullptr) throw std::out_of_range("a row without a table has no columns");
  int const offset = table->GetColumnOffset(column);
  if (offset < 0) throw std::out_of_range("the table of the row does not have this column");
  return static_cast<std::size_t>(offset);
}

void TabularDataRow::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  if (!m_linkingValue.empty()) out.Attribute("zbt:linkingValue", m_linkingValue);
  if (m_identity > 0) out.Attribute("zbt:rowIdentity", m_identity);
  lumo::NodeWriter cells = out.Into("zbt:Cells");
  for (SmartPtr<TabularDataCell> const& cell : m_cells) cells.Child("zbt:Cell", cell);
}

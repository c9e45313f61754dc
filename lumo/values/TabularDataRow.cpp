#include "lumo/values/TabularDataRow.h"

#include <algorithm>

#include "lumo/values/TabularDataType.h"
#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

TabularDataRow::TabularDataRow(TabularDataType const* table) : m_table(table) {
  if (table == nullptr) return;
  for (SmartPtr<TabularColumn> const& column : table->GetColumns()) {
    m_cells.push_back(TabularDataCell::CreateEmpty(column.get()));
  }
}

SmartPtr<TabularDataRow> TabularDataRow::CreateOne(TabularDataType const* table) {
  return {new TabularDataRow(table)};
}

SmartPtr<TabularDataRow> TabularDataRow::CreateOne(XmlNode<char> const* node,
                                                   TabularDataType const* table) {
  if (node == nullptr) return nullptr;
  SmartPtr<TabularDataRow> row = CreateOne(table);
  lumo::NodeReader in(node);
  in.In("LinkedRecords").ForEach("LinkedRecord", [&row](XmlNode<char> const& record) {
    row->AddLinkedRecord(RecordReference::CreateOne(&record));
    lumo::NodeReader(&record).Attribute("linkingValue", row->m_linkingValue);
  });
  auto cell = row->m_cells.begin();
  in.In("Cells").ForEach("TabularDataCell", [&](XmlNode<char> const& element) {
    if (cell == row->m_cells.end()) return;
    *cell = TabularDataCell::CreateOne(&element, (*cell)->GetColumn());
    ++cell;
  });
  in.Attribute("identity", row->m_identity);
  return row;
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

std::size_t TabularDataRow::OffsetOf(TabularColumn const* column) const {
  TabularDataType const* const table = m_table.Get();
  return static_cast<std::size_t>(table == nullptr ? -1 : table->GetColumnOffset(column));
}

void TabularDataRow::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  if (!m_linkingValue.empty()) out.Attribute("zbt:linkingValue", m_linkingValue);
  if (m_identity > 0) out.Attribute("zbt:rowIdentity", m_identity);
  lumo::NodeWriter cells = out.Into("zbt:Cells");
  for (SmartPtr<TabularDataCell> const& cell : m_cells) cells.Child("zbt:Cell", cell);
}

#include "lumo/values/TabularDataType.h"

#include <cstddef>

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<TabularDataType::eChangeType> kChangeWords[] = {
    {TabularDataType::InsertBefore, "InsertBefore"},
    {TabularDataType::Append, "Append"},
    {TabularDataType::Update, "Update"},
    {TabularDataType::Delete, "Delete"},
};

/// Empty cells that rows get beyond those that they came with: as many as any honest table needs.
constexpr std::size_t kMaxFilledIn = 1'000'000;

}  // namespace

std::string TabularDataType::ChangeType_ToString(eChangeType change) {
  return lumo::WordOf(kChangeWords, change, "");
}

SmartPtr<TabularDataType> TabularDataType::CreateOne(XmlNode<char> const* node) {
  bool const isTable = node != nullptr && XMLUtilites::GetNode("columns", node) != nullptr &&
                       XMLUtilites::GetNode("summaryRow", node) != nullptr;
  return isTable ? SmartPtr<TabularDataType>(new TabularDataType(node)) : nullptr;
}

TabularDataType::TabularDataType(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("columns").ForEach("column", [this](XmlNode<char> const& column) {
    AddColumn(TabularColumn::CreateOne(&column));
  });
  in.In("rows").ForEach("row", [this](XmlNode<char> const& row) {
    m_rows.push_back(TabularDataRow::Read(row, this));
    if (!HasShortRows()) m_filledIn += m_rows.back()->FillUp();
  });
}

bool TabularDataType::HasShortRows() const { return m_filledIn >= kMaxFilledIn; }

TabularDataType& TabularDataType::operator=(TabularDataType const& other) {
  if (this == &other) return *this;
  DataValue::operator=(other);
  m_rows.clear();
  m_changes.clear();
  m_columns = other.m_columns;
  m_columnOffsets = other.m_columnOffsets;
  m_filledIn = other.m_filledIn;
  if (other.m_changes.empty()) {
    for (SmartPtr<TabularDataRow> const& row : other.m_rows) {
      std::size_t const cells = HasShortRows() ? row->GetData().size() : m_columns.size();
      m_rows.emplace_back(new TabularDataRow(this, cells));
      *m_rows.back() = *row;
    }
  }
  for (auto const& [change, rows] : other.m_changes) {
    for (TabularDataRow const* row : rows) *PushRowForUpdate(change, row->GetIdentity()) = *row;
  }
  return *this;
}

void TabularDataType::AddColumn(SmartPtr<TabularColumn> const& column) {
  if (!column) return;
  m_columnOffsets[column.get()] = static_cast<int>(m_columns.size());
  m_columns.push_back(column);
  for (SmartPtr<TabularDataRow> const& row : m_rows) {
    if (HasShortRows() && row->GetData().size() + 1 < m_columns.size()) continue;
    row->GetData().push_back(TabularDataCell::CreateEmpty(column.get()));
  }
}

int TabularDataType::GetColumnOffset(TabularColumn const* column) const {
  auto const found = m_columnOffsets.find(column);
  return found == m_columnOffsets.end() ? -1 : found->second;
}

SmartPtr<TabularDataRow> TabularDataType::PushRow() {
  m_rows.push_back(TabularDataRow::CreateOne(this));
  return m_rows.back();
}

void TabularDataType::PushRow(SmartPtr<TabularDataRow> const& row) {
  if (!row) return;
  row->m_table = lumo::WeakPtr<TabularDataType>(this);
  row->FillUp();
  m_rows.push_back(row);
}

SmartPtr<TabularDataRow> TabularDataType::PushRowForUpdate(eChangeType change, int identity) {
  SmartPtr<TabularDataRow> row = PushRow();
  if (identity > 0) row->SetIdentity(identity);
  m_changes[change].push_back(row.get());
  return row;
}

void TabularDataType::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  if (m_changes.empty()) {
    out.Into("zbt:Rows").Children("zbt:Row", m_rows);
    return;
  }
  lumo::NodeWriter changes = out.Into("zbt:Changes");
  for (auto const& [change, rows] : m_changes) {
    std::string const word = ChangeType_ToString(change);
    if (word.empty()) continue;
    for (TabularDataRow const* row : rows) row->CreateXMLNode(changes.Into("zbt:" + word).Node());
  }
}

#include "cli/browse/Data.h"

#include <algorithm>

namespace cli::browse {
namespace {

constexpr std::size_t kMostColumns = 16;

}  // namespace

std::shared_ptr<lumo::Connection> TableData::Link() const {
  auto link = m_opened.pool->Lend();
  link->Scope().cancel = m_cancel;
  return link;
}

void TableData::Read(std::vector<std::string> const& attributes) {
  lumo::ReadOptions options;
  options.cancel = m_cancel;
  options.onProgress = [this](lumo::Progress const& progress) {
    m_done = progress.recordsDone;
    m_total = progress.recordsTotal;
  };
  std::vector<lumo::RecordHead> records;
  std::vector<std::shared_ptr<Column>> columns;
  for (std::size_t i = 0; i < attributes.size(); ++i) columns.push_back(std::make_shared<Column>());
  for (lumo::Record const& record : m_table.All().Read(attributes, options)) {
    records.push_back(record.Head());
    for (std::size_t i = 0; i < columns.size(); ++i) {
      lumo::Value const& value = record.Values()[i];
      if (value.index() != 0) columns[i]->emplace(record.Id().identity, value);
    }
  }
  m_records = std::move(records);
  for (std::size_t i = 0; i < columns.size(); ++i) m_columns[attributes[i]] = columns[i];
}

TableColumns TableData::Columns(std::vector<std::string> const& attributes) {
  std::lock_guard const lock(m_mutex);
  std::vector<std::string> missing;
  for (std::string const& name : attributes) {
    bool const isThere = m_columns.count(name) > 0 ||
                         std::find(missing.begin(), missing.end(), name) != missing.end();
    if (!isThere) missing.push_back(name);
  }
  m_done = m_total = 0;
  if (!missing.empty()) Read(missing);
  TableColumns found;
  found.records = m_records;
  for (std::string const& name : attributes) {
    found.columns.push_back(m_columns.at(name));
    m_order.erase(std::remove(m_order.begin(), m_order.end(), name), m_order.end());
    m_order.push_back(name);
  }
  for (; m_order.size() > kMostColumns; m_order.pop_front()) m_columns.erase(m_order.front());
  return found;
}

void TableData::Forget() {
  std::lock_guard const lock(m_mutex);
  m_columns.clear();
  m_order.clear();
}

}  // namespace cli::browse

#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "lumo/toolkit/Client.h"
#include "lumo/toolkit/OpenedTable.h"

namespace cli::browse {

/// What all records of a table hold in some attributes, by the identity of the record.
struct TableColumns {
  std::vector<lumo::RecordHead> records = {};
  std::vector<std::shared_ptr<std::unordered_map<int, lumo::Value> const>> columns = {};
};

/// A table, and the values that charts have asked for: a slider that moves reads nothing again. Of
/// the attributes those that were used last are kept. Safe to use from several threads.
class TableData {
 public:
  /// `cancel` ends what is under way.
  TableData(lumo::Client const& client, std::string const& database, std::string const& table,
            lumo::CancellationToken cancel)
      : m_table(client.OpenTable(database, table)),
        m_opened(client.Pool(), database, table),
        m_cancel(std::move(cancel)) {}

  lumo::Table const& Table() const { return m_table; }
  lumo::TableInfo const& Info() const { return m_opened.info; }
  std::shared_ptr<lumo::Connection> Link() const;

  /// In the units of the attributes; reads what is not there yet. Throws `lumo::Error`.
  TableColumns Columns(std::vector<std::string> const& attributes);
  /// Forgets the values, so that they are read anew.
  void Forget();
  /// How many records the present read has brought, of how many; 0 for what nobody knows.
  std::pair<std::size_t, std::size_t> Progress() const { return {m_done, m_total}; }

 private:
  using Column = std::unordered_map<int, lumo::Value>;
  void Read(std::vector<std::string> const& attributes);

  lumo::Table m_table;
  lumo::OpenedTable m_opened;
  lumo::CancellationToken m_cancel;
  std::mutex m_mutex;
  std::vector<lumo::RecordHead> m_records;
  std::map<std::string, std::shared_ptr<Column const>> m_columns;
  std::deque<std::string> m_order;  ///< of the columns, the one used last at the end
  std::atomic<std::size_t> m_done{0};
  std::atomic<std::size_t> m_total{0};
};

}  // namespace cli::browse

#include "Store.h"

#include <stdexcept>

namespace sandbox {
namespace {

std::string Text(sqlite3_stmt* row, int column) {
  auto const* const text = reinterpret_cast<char const*>(sqlite3_column_text(row, column));
  return text == nullptr ? std::string() : std::string(text);
}

}  // namespace

Store::Store(std::string const& file) {
  sqlite3* handle = nullptr;
  int const code = sqlite3_open(file.c_str(), &handle);
  m_handle.reset(handle);
  if (code != SQLITE_OK) Fail("cannot open " + file);
  sqlite3_extended_result_codes(handle, 1);
  Run("PRAGMA foreign_keys = ON");
  auto const number = [](sqlite3_stmt* row) { return sqlite3_column_int(row, 0); };
  if (Query<int>("SELECT count(*) FROM sqlite_master", {}, number).at(0) == 0) Seed(*this);
  if (Query<int>("PRAGMA user_version", {}, number).at(0) != kSchemaVersion) {
    throw std::runtime_error(file + " is not a database of this version of lumo-sandbox");
  }
}

std::vector<Database> Store::Databases() {
  return Query<Database>("SELECT id, key, name FROM database ORDER BY id", {},
                         [](sqlite3_stmt* row) {
                           return Database{sqlite3_column_int(row, 0), Text(row, 1), Text(row, 2)};
                         });
}

std::vector<Table> Store::Tables(std::string const& dbKey) {
  return Query<Table>(
      "SELECT t.id, t.guid, t.name, d.key FROM data_table t JOIN database d ON d.id = t.database_id"
      " WHERE d.key = ? ORDER BY t.id",
      {dbKey}, [](sqlite3_stmt* row) {
        return Table{sqlite3_column_int(row, 0), Text(row, 1), Text(row, 2), Text(row, 3)};
      });
}

std::vector<std::string> Store::TableFilters(int tableId) {
  return Query<std::string>("SELECT word FROM table_filter WHERE table_id = ? ORDER BY word",
                            {std::to_string(tableId)},
                            [](sqlite3_stmt* row) { return Text(row, 0); });
}

std::vector<Attribute> Store::Attributes(int tableId) {
  return Query<Attribute>(
      "SELECT id, name, about_id IS NOT NULL FROM attribute WHERE table_id = ? ORDER BY id",
      {std::to_string(tableId)}, [](sqlite3_stmt* row) {
        return Attribute{sqlite3_column_int(row, 0), Text(row, 1), sqlite3_column_int(row, 2) != 0};
      });
}

std::vector<std::string> Store::StandardNames(int tableId) {
  return Query<std::string>(
      "SELECT standard_name FROM attribute WHERE table_id = ? AND standard_name <> '' ORDER BY id",
      {std::to_string(tableId)}, [](sqlite3_stmt* row) { return Text(row, 0); });
}

std::vector<Subset> Store::Subsets(std::string const& dbKey) {
  return Query<Subset>(
      "SELECT s.id, s.name, s.table_id FROM subset s JOIN data_table t ON t.id = s.table_id"
      " JOIN database d ON d.id = t.database_id WHERE d.key = ? ORDER BY s.id",
      {dbKey}, [](sqlite3_stmt* row) {
        return Subset{sqlite3_column_int(row, 0), Text(row, 1), sqlite3_column_int(row, 2)};
      });
}

void Store::Run(std::string const& sql) {
  if (sqlite3_exec(m_handle.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sql);
}

void Store::Insert(std::string const& sql, std::vector<std::string> const& values) {
  Statement const statement = Prepare(sql, values);
  if (sqlite3_step(statement.get()) != SQLITE_DONE) Fail(sql);
}

Store::Statement Store::Prepare(std::string const& sql, std::vector<std::string> const& values) {
  sqlite3_stmt* made = nullptr;
  if (sqlite3_prepare_v2(m_handle.get(), sql.c_str(), -1, &made, nullptr) != SQLITE_OK) Fail(sql);
  Statement statement(made);
  for (std::size_t i = 0; i < values.size(); ++i) {
    int const length = static_cast<int>(values[i].size());
    sqlite3_bind_text(made, static_cast<int>(i) + 1, values[i].data(), length, SQLITE_TRANSIENT);
  }
  return statement;
}

template <class Row, class Read>
std::vector<Row> Store::Query(std::string const& sql, std::vector<std::string> const& values,
                              Read read) {
  Statement const statement = Prepare(sql, values);
  std::vector<Row> rows;
  int code = sqlite3_step(statement.get());
  for (; code == SQLITE_ROW; code = sqlite3_step(statement.get())) {
    rows.push_back(read(statement.get()));
  }
  if (code != SQLITE_DONE) Fail(sql);
  return rows;
}

void Store::Fail(std::string const& what) const {
  throw std::runtime_error(what + ": " + sqlite3_errmsg(m_handle.get()));
}

}  // namespace sandbox

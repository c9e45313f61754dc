#include "sandbox/store/Store.h"

#include <charconv>
#include <iterator>
#include <stdexcept>

#include "sandbox/store/Schema.h"

namespace sandbox {
namespace {

/// Changes with the schema, so that a file of another version is refused and not misread.
constexpr int kSchemaVersion = 3;
constexpr std::size_t kKeptStatements = 500;

std::string ColumnText(sqlite3_stmt* row, int column) {
  auto const* const text = reinterpret_cast<char const*>(sqlite3_column_text(row, column));
  return text == nullptr ? std::string() : std::string(text);
}

}  // namespace

double Row::Real(std::size_t column) const { return NumberOf(Text(column)); }

double NumberOf(std::string const& text) {
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string TextOfNumber(double value) {
  char text[32];
  return {text, std::to_chars(std::begin(text), std::end(text), value).ptr};
}

Transaction::~Transaction() {
  if (m_isOpen) m_store.Undo();
}

void Transaction::Commit() {
  m_store.Run("RELEASE change");
  m_isOpen = false;
}

Store::Store(std::string const& file) {
  sqlite3* handle = nullptr;
  int const code = sqlite3_open(file.c_str(), &handle);
  m_handle.reset(handle);
  if (code != SQLITE_OK) Fail("cannot open " + file);
  sqlite3_extended_result_codes(handle, 1);
  Run("PRAGMA foreign_keys = ON");
  m_isNew = Only("SELECT count(*) FROM sqlite_master").Int(0) == 0;
  if (!m_isNew && Only("PRAGMA user_version").Int(0) != kSchemaVersion) {
    throw std::runtime_error(file + " is not a database of this version of lumo-sandbox");
  }
}

void Store::MakeTables() {
  Run(kSchema);
  Run("PRAGMA user_version = " + std::to_string(kSchemaVersion));
}

std::vector<Row> Store::Rows(std::string const& sql, std::vector<std::string> const& values) {
  Statement const statement = Prepare(sql, values);
  std::vector<Row> rows;
  int code = sqlite3_step(statement.get());
  for (; code == SQLITE_ROW; code = sqlite3_step(statement.get())) {
    std::vector<std::string> columns;
    columns.reserve(static_cast<std::size_t>(sqlite3_column_count(statement.get())));
    for (int i = 0; i < sqlite3_column_count(statement.get()); ++i) {
      columns.push_back(ColumnText(statement.get(), i));
    }
    rows.emplace_back(std::move(columns));
  }
  if (code != SQLITE_DONE) Fail(sql);
  return rows;
}

Row Store::Only(std::string const& sql, std::vector<std::string> const& values) {
  std::vector<Row> const rows = Rows(sql, values);
  if (rows.empty()) throw std::runtime_error("no row for " + sql);
  return rows.front();
}

std::string Store::LastId() const {
  return std::to_string(sqlite3_last_insert_rowid(m_handle.get()));
}

void Store::Run(std::string const& sql) {
  if (sqlite3_exec(m_handle.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sql);
}

void Store::Undo() noexcept {
  sqlite3_exec(m_handle.get(), "ROLLBACK TO change; RELEASE change", nullptr, nullptr, nullptr);
}

void Store::Insert(std::string const& sql, std::vector<std::string> const& values) {
  Statement const statement = Prepare(sql, values);
  if (sqlite3_step(statement.get()) != SQLITE_DONE) Fail(sql);
}

Store::Statement Store::Prepare(std::string const& sql, std::vector<std::string> const& values) {
  if (m_statements.size() == kKeptStatements) m_statements.clear();  // none is in use now
  auto& known = m_statements[sql];
  if (!known) {
    sqlite3_stmt* made = nullptr;
    if (sqlite3_prepare_v2(m_handle.get(), sql.c_str(), -1, &made, nullptr) != SQLITE_OK) Fail(sql);
    known.reset(made);
  }
  Statement statement(known.get());
  for (std::size_t i = 0; i < values.size(); ++i) {
    int const length = static_cast<int>(values[i].size());
    sqlite3_bind_text(known.get(), static_cast<int>(i) + 1, values[i].data(), length,
                      SQLITE_TRANSIENT);
  }
  return statement;
}

void Store::Fail(std::string const& what) const {
  throw std::runtime_error(what + ": " + sqlite3_errmsg(m_handle.get()));
}

}  // namespace sandbox

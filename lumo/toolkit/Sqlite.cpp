#include "lumo/toolkit/Sqlite.h"

#include "lumo/toolkit/Text.h"

namespace lumo {

SqliteFile::SqliteFile(std::filesystem::path const& path, bool isNew) : m_path(path.string()) {
  std::error_code ignored;
  bool const exists = std::filesystem::exists(path, ignored);
  if (isNew && exists) {
    throw Error(ErrorCode::InvalidArgument, "the journal " + Quoted(m_path) + " is there already");
  }
  if (!isNew && !exists) {
    throw Error(ErrorCode::InvalidArgument, "there is no journal " + Quoted(m_path));
  }
  sqlite3* file = nullptr;
  int const flags = SQLITE_OPEN_READWRITE | (isNew ? SQLITE_OPEN_CREATE : 0);
  int const code = sqlite3_open_v2(m_path.c_str(), &file, flags, nullptr);
  m_file.reset(file);
  if (code != SQLITE_OK) Fail("open");
}

void SqliteFile::Fail(std::string const& what) const {
  int const code = sqlite3_errcode(m_file.get());
  std::string why = sqlite3_errmsg(m_file.get());
  if (code == SQLITE_BUSY || code == SQLITE_LOCKED) why = "another run has it";
  if (code == SQLITE_NOTADB) why = "it is not a journal";
  throw Error(ErrorCode::InvalidArgument,
              "cannot " + what + " the journal " + Quoted(m_path) + ": " + why);
}

void SqliteFile::Run(char const* sql) {
  if (sqlite3_exec(m_file.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail("write");
}

SqliteFile::Query::Query(SqliteFile& file, std::string const& sql) : m_file(file) {
  sqlite3_stmt* statement = nullptr;
  int const code = sqlite3_prepare_v2(file.m_file.get(), sql.c_str(), -1, &statement, nullptr);
  m_statement.reset(statement);
  if (code != SQLITE_OK) file.Fail("read");
}

void SqliteFile::Query::Check(int code) {
  if (code != SQLITE_OK) m_file.Fail("use");
}

SqliteFile::Query& SqliteFile::Query::operator<<(std::int64_t number) {
  Check(sqlite3_bind_int64(m_statement.get(), ++m_arguments, number));
  return *this;
}

SqliteFile::Query& SqliteFile::Query::operator<<(std::string const& text) {
  Check(sqlite3_bind_text64(m_statement.get(), ++m_arguments, text.data(), text.size(),
                            SQLITE_TRANSIENT,  // NOLINT: SQLite's own cast
                            SQLITE_UTF8));
  return *this;
}

SqliteFile::Query& SqliteFile::Query::Bytes(std::string const& bytes) {
  Check(sqlite3_bind_blob64(m_statement.get(), ++m_arguments, bytes.data(), bytes.size(),
                            SQLITE_TRANSIENT));  // NOLINT: SQLite's own cast
  return *this;
}

bool SqliteFile::Query::Next() {
  int const code = sqlite3_step(m_statement.get());
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) m_file.Fail("use");
  return false;
}

void SqliteFile::Query::Run() {
  Next();
  Reset();
}

void SqliteFile::Query::Reset() {
  Check(sqlite3_reset(m_statement.get()));
  m_arguments = 0;
}

std::int64_t SqliteFile::Query::Number(int column) const {
  return sqlite3_column_int64(m_statement.get(), column);
}

std::string SqliteFile::Query::Text(int column) const {
  void const* const bytes = sqlite3_column_blob(m_statement.get(), column);
  auto const size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column));
  return bytes == nullptr ? std::string() : std::string(static_cast<char const*>(bytes), size);
}

SqliteFile::Change::~Change() {
  if (!m_isOpen) return;
  try {
    m_file.Run("ROLLBACK");
  } catch (Error const&) {  // the next reader undoes it
  }
}

void SqliteFile::Change::Commit() {
  m_file.Run("COMMIT");
  m_isOpen = false;
}

}  // namespace lumo

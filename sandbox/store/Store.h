#pragma once

#include <sqlite3.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace sandbox {

/// Decimal text and number, whatever the locale; a text that is no number gives 0.
double NumberOf(std::string const& text);
std::string TextOfNumber(double value);

/// An identity as statements and replies have it.
inline std::string Id(int id) { return std::to_string(id); }

/// One row of a result; columns count from 0. NULL reads as an empty text and as 0.
class Row {
 public:
  explicit Row(std::vector<std::string> columns) : m_columns(std::move(columns)) {}
  std::string const& Text(std::size_t column) const { return m_columns.at(column); }
  int Int(std::size_t column) const { return std::atoi(Text(column).c_str()); }
  double Real(std::size_t column) const;
  bool IsSet(std::size_t column) const { return !Text(column).empty() && Text(column) != "0"; }

 private:
  std::vector<std::string> m_columns;
};

/// The server's data in SQLite. Not thread-safe: the server calls it one request at a time.
class Store {
 public:
  /// Opens the file, or a private database in memory for ":memory:". Throws std::runtime_error,
  /// also when the file holds something else or data of another version.
  explicit Store(std::string const& file);
  /// Whether there was nothing in the file; `MakeTables` is to be called then.
  bool IsNew() const { return m_isNew; }
  /// Makes the tables, empty, and marks the file as one of this version.
  void MakeTables();

  std::vector<Row> Rows(std::string const& sql, std::vector<std::string> const& values = {});
  /// The first row; throws `std::runtime_error` when there is none.
  Row Only(std::string const& sql, std::vector<std::string> const& values = {});
  /// Identity of the row that was inserted last.
  std::string LastId() const;

  /// Address of the server, for the URLs in replies.
  std::string const& Url() const { return m_url; }
  void SetUrl(std::string const& url) { m_url = url; }

  /// Runs statements that return nothing.
  void Run(std::string const& sql);
  /// Goes back to where the innermost `Transaction` began.
  void Undo() noexcept;
  /// Runs one statement with the texts in place of its question marks.
  void Insert(std::string const& sql, std::vector<std::string> const& values);

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close(handle); }
  };
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  struct Reset {
    void operator()(sqlite3_stmt* statement) const { sqlite3_reset(statement); }
  };
  /// A statement in use; it goes back to the others when it is done.
  using Statement = std::unique_ptr<sqlite3_stmt, Reset>;

  Statement Prepare(std::string const& sql, std::vector<std::string> const& values);
  [[noreturn]] void Fail(std::string const& what) const;

  std::unique_ptr<sqlite3, Close> m_handle;
  /// Statements by their text; compiling one takes longer than running it.
  std::unordered_map<std::string, std::unique_ptr<sqlite3_stmt, Finalize>> m_statements;
  std::string m_url;
  bool m_isNew = false;
};

/// Undoes everything since its making unless `Commit` was called.
class Transaction {
 public:
  explicit Transaction(Store& store) : m_store(store) { m_store.Run("SAVEPOINT change"); }
  ~Transaction();
  Transaction(Transaction const&) = delete;
  Transaction& operator=(Transaction const&) = delete;
  void Commit();

 private:
  Store& m_store;
  bool m_isOpen = true;
};

}  // namespace sandbox

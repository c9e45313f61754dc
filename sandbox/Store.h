#pragma once

#include <sqlite3.h>

#include <memory>
#include <string>
#include <vector>

namespace sandbox {

struct Database {
  int id = 0;
  std::string key;
  std::string name;
};

struct Table {
  int id = 0;
  std::string guid;
  std::string name;
  std::string dbKey;
};

struct Attribute {
  int id = 0;
  std::string name;
  bool isMeta = false;
};

struct Subset {
  int id = 0;
  std::string name;
  int tableId = 0;
};

/// The server's data in SQLite. Not thread-safe: the server calls it one request at a time.
class Store {
 public:
  /// Opens the file, or a private database in memory for ":memory:"; fills an empty one. Throws
  /// std::runtime_error, also when the file holds something else or data of another version.
  explicit Store(std::string const& file);

  std::vector<Database> Databases();
  std::vector<Table> Tables(std::string const& dbKey);
  std::vector<std::string> TableFilters(int tableId);
  std::vector<Attribute> Attributes(int tableId);
  /// Standard names that the table's attributes answer to.
  std::vector<std::string> StandardNames(int tableId);
  std::vector<Subset> Subsets(std::string const& dbKey);

  /// Runs statements that return nothing.
  void Run(std::string const& sql);
  /// Runs one statement with the texts in place of its question marks.
  void Insert(std::string const& sql, std::vector<std::string> const& values);

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close(handle); }
  };
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  using Statement = std::unique_ptr<sqlite3_stmt, Finalize>;

  Statement Prepare(std::string const& sql, std::vector<std::string> const& values);
  template <class Row, class Read>
  std::vector<Row> Query(std::string const& sql, std::vector<std::string> const& values, Read read);
  [[noreturn]] void Fail(std::string const& what) const;

  std::unique_ptr<sqlite3, Close> m_handle;
};

/// Changes with the schema, so that a file of another version is refused and not misread.
constexpr int kSchemaVersion = 1;

/// Makes the tables and fills them with what the sandbox ships.
void Seed(Store& store);

}  // namespace sandbox

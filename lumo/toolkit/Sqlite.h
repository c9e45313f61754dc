#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "lumo/toolkit/Error.h"

namespace lumo {

/// An SQLite file. All functions throw `Error` (InvalidArgument) with SQLite's words. Not
/// installed.
class SqliteFile {
 public:
  SqliteFile(std::filesystem::path const& path, bool isNew);
  void Run(char const* sql);
  [[noreturn]] void Fail(std::string const& what) const;

  /// A statement with its arguments; the rows of its result one by one.
  class Query {
   public:
    Query(SqliteFile& file, std::string const& sql);
    Query& operator<<(std::int64_t number);
    Query& operator<<(std::string const& text);
    Query& Bytes(std::string const& bytes);
    /// The next row; false at the end.
    bool Next();
    /// Runs a statement without a result, which can then be given new arguments.
    void Run();
    /// Makes the statement ready for new arguments.
    void Reset();
    std::int64_t Number(int column) const;
    std::string Text(int column) const;

   private:
    struct Finalize {
      void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    };
    void Check(int code);

    SqliteFile& m_file;
    std::unique_ptr<sqlite3_stmt, Finalize> m_statement;
    int m_arguments = 0;
  };

  /// All or nothing; undone unless it is committed.
  class Change {
   public:
    explicit Change(SqliteFile& file) : m_file(file) { file.Run("BEGIN IMMEDIATE"); }
    ~Change();
    Change(Change const&) = delete;
    Change& operator=(Change const&) = delete;
    void Commit();

   private:
    SqliteFile& m_file;
    bool m_isOpen = true;
  };

 private:
  struct Close {
    void operator()(sqlite3* file) const { sqlite3_close(file); }
  };

  std::string m_path;
  std::unique_ptr<sqlite3, Close> m_file;
};

}  // namespace lumo

#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/Connection.h"
#include "cli/Output.h"

namespace cli {

/// What every command gets.
struct Context {
  ServerOptions server;
  OutputOptions output;
  bool isQuiet = false;  ///< no progress and no notes
  int jobs = 4;
  int chunk = 100;  ///< records in a call

  /// A new connection; the first asks for the password where one is needed.
  std::unique_ptr<Connection> Connect();
  /// One connection for each job.
  std::vector<std::unique_ptr<Connection>> ConnectAll();
  /// A line on standard error for a person.
  void Note(std::string const& text) const;

 private:
  std::string m_password;
  bool m_hasPassword = false;
};

/// Which records of a table.
struct Selection {
  std::string database;
  std::string table;
  std::vector<std::string> records;  ///< names, "#identity" or GUIDs
  std::string folder;
  std::string subset;
  std::string text;                     ///< text search
  std::vector<std::string> conditions;  ///< see Criteria.h
};

void ListDatabases(Context& context);
void ListTables(Context& context, std::string const& database);

struct TreeOptions {
  Selection from;
  int depth = 1'000'000;
};
void PrintTree(Context& context, TreeOptions const& options);

void ListAttributes(Context& context, Selection const& table);

struct UnitsOptions {
  std::string database;
  std::string from;      ///< lists what this unit can be converted into
  bool systems = false;  ///< lists unit systems and currencies
};
void ListUnits(Context& context, UnitsOptions const& options);

struct SearchOptions {
  Selection what;
  std::string name;
};
void Search(Context& context, SearchOptions const& options);

struct GetOptions {
  Selection what;
  std::vector<std::string> attributes;
  std::string unitSystem;
  std::string currency;
  bool withoutFiles = false;  ///< addresses instead of files and pictures
};
void Get(Context& context, GetOptions const& options);

void ListLinks(Context& context, Selection const& records);

struct ImportOptions {
  std::string database;
  std::string table;
  std::string file;  ///< "-" for standard input
  bool isDryRun = false;
};
void Import(Context& context, ImportOptions const& options);

struct ExportOptions {
  Selection what;
  std::string exporter;
  std::vector<std::string> parameters;  ///< "NAME=VALUE" or "NAME=VALUE UNIT"
  std::string unitSystem;
  std::string currency;
};
/// Without an exporter lists those that there are.
void Export(Context& context, ExportOptions const& options);

void Probe(Context& context);

}  // namespace cli

#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

#include "cli/Context.h"
#include "lumo/toolkit/Selection.h"

namespace cli {

/// The commands and their options. Each command adds its own beside its code.
class CommandLine {
 public:
  CommandLine();
  /// Runs a command line; gives the code with which the program ends.
  int Run(int count, char** texts);

  /// `examples` are lines of the form "  $ lumo ...", and what else stands below the options.
  CLI::App& Add(char const* name, char const* what, std::string const& examples,
                std::function<void(Context&)> run);
  /// For what options of a command set for all.
  Context& Shared() { return m_context; }

 private:
  void AddServerOptions();
  /// Prints the help of a command, of the whole for an empty name.
  void PrintHelp(std::string const& command);
  [[noreturn]] void RefuseCommand(std::string const& name) const;
  int Explain(CLI::ParseError const& error);
  /// What is wrong with the line, without the words of the parser.
  std::string PlainText(CLI::ParseError const& error) const;

  CLI::App m_app;
  Context m_context;
  std::function<void(Context&)> m_run;
};

/// A table of a database.
struct TableChoice {
  std::string database;
  std::string table;
};

/// Which records of a table.
struct RecordChoice : TableChoice {
  std::vector<std::string> records;  ///< names, "id:69", or GUIDs
  std::string name;                  ///< namesakes too
  std::string folder;
  std::string subset;
  std::string text;                     ///< text search
  std::vector<std::string> conditions;  ///< see lumo::Condition
  bool matchesAll = false;              ///< of a range the whole is to meet them
  std::vector<lumo::RecordId> ids;      ///< just these, when there are some

  bool IsWholeTable() const;
  lumo::Selection In(lumo::Table const& table) const;
};

/// What options say of the reading of values.
struct UnitChoice {
  std::string unitSystem;
  std::string currency;

  /// `isForReading` rounds what is converted as people want it, not programs.
  void Fill(lumo::ReadOptions& options, bool isForReading) const;
};

/// An empty text is no choice, and mostly the mistake of a script.
CLI::Validator NotEmpty();
/// A range that help texts do not repeat.
CLI::Validator Between(int least, int most);
/// One of those words, of which each stands for a value.
template <class Choice>
void AddWords(CLI::App& command, std::string const& name, Choice& choice,
              std::vector<std::pair<std::string, Choice>> const& words, std::string const& what) {
  std::string names;
  for (auto const& [word, value] : words) {
    bool const isLast = word == words.back().first;
    names += (names.empty() ? "" : isLast ? " or " : ", ") + word;
  }
  auto const choose = [&choice, name, words, names](std::string const& text) {
    for (auto const& [word, value] : words) {
      if (word == text) {
        choice = value;
        return;
      }
    }
    throw CLI::ValidationError(name.substr(name.find("--")) + " takes " + names);
  };
  command.add_option_function<std::string>(name, choose, what + ": " + names)->type_name("WORD");
}

void AddDatabase(CLI::App& command, std::string& database);
void AddTable(CLI::App& command, TableChoice& table);
/// RECORD ..., and what `AddConditions` adds.
void AddRecords(CLI::App& command, RecordChoice& what);
/// --text, --where, --match, --folder and --subset.
void AddConditions(CLI::App& command, RecordChoice& what);
void AddUnits(CLI::App& command, UnitChoice& units);
/// --format, --output, --no-headings and --delimiter; `more` are formats beside the usual ones.
void AddOutput(CLI::App& command, OutputOptions& output,
               std::vector<std::pair<std::string, Format>> const& more = {});
/// What conditions look like, for the end of a help text.
std::string const& ConditionHelp();

void AddBrowsing(CommandLine& line);
void AddUnitLists(CommandLine& line);
void AddSearch(CommandLine& line);
void AddGet(CommandLine& line);
void AddCompare(CommandLine& line);
void AddPartitions(CommandLine& line);
void AddLinks(CommandLine& line);
void AddImport(CommandLine& line);
void AddTemplate(CommandLine& line);
void AddExport(CommandLine& line);
void AddDoctor(CommandLine& line);
/// `lumo browse`.
void AddPage(CommandLine& line);

}  // namespace cli

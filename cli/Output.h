#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdio>
#include <string>
#include <vector>

namespace cli {

using Json = nlohmann::ordered_json;  ///< members stay in the order in which they were added

enum class Format { Text, Csv, JsonArray, NdJson, Plot };

/// Where data go: standard output or a file, and how lists look there.
struct OutputOptions {
  Format format = Format::Text;
  std::string file;     ///< empty for standard output
  bool isBare = false;  ///< without headings
};

/// Writes bytes to standard output or a file; what was written stays when the command is stopped.
/// Throws `Failure` when writing fails.
class Sink {
 public:
  explicit Sink(std::string const& file);
  ~Sink();
  Sink(Sink const&) = delete;
  Sink& operator=(Sink const&) = delete;

  void Write(std::string const& text);
  void Flush();
  /// A terminal whose user has not turned colours off with NO_COLOR.
  bool HasColor() const;

 private:
  std::FILE* m_file;
  std::string m_name;
};

/// One line of CSV as RFC 4180 has it, ending in a line feed.
std::string CsvLine(std::vector<std::string> const& cells);

/// Writes a list of rows in one of the formats. Rows of text format are held back until `Finish`,
/// or until there are some hundred of them, to find how wide the columns are.
class TableWriter {
 public:
  TableWriter(OutputOptions const& options, Sink& sink, std::vector<std::string> columns);

  /// One cell per column; numbers and the like in JSON as they are.
  void Add(std::vector<Json> const& cells);
  /// An object of its own making, for the JSON formats only.
  void AddObject(Json const& object);
  void Finish();

 private:
  void FlushText();

  OutputOptions m_options;
  Sink& m_sink;
  std::vector<std::string> m_columns;
  std::vector<std::vector<std::string>> m_held;
  std::vector<std::size_t> m_widths;
  bool m_isBegun = false;
};

/// Text of a cell: a text as it is, anything else as JSON writes it, null as nothing.
std::string CellText(Json const& cell);

}  // namespace cli

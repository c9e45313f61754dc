#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

#include "cli/Failure.h"
#include "cli/Text.h"

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
/// Throws `Failure` when writing fails, and on Ctrl-C when nobody reads on.
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
  int m_file;  ///< descriptor
  std::string m_name;
  std::string m_buffer;
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
  /// A line of its own making, for text format only.
  void AddLine(std::string const& line);
  /// Rows so far.
  std::size_t Count() const { return m_count; }
  void Finish();

 private:
  void FlushText();

  OutputOptions m_options;
  Sink& m_sink;
  std::vector<std::string> m_columns;
  std::vector<std::vector<std::string>> m_held;
  std::vector<std::size_t> m_widths;
  std::size_t m_count = 0;
  bool m_isBegun = false;
};

/// Does work that fills a list, and finishes the list, also when the work ends in the middle: then
/// the failure says how many rows there are.
template <class Work>
void Fill(TableWriter& out, Work work) {
  try {
    work();
  } catch (Failure const& failure) {
    if (out.Count() == 0 || *failure.what() == '\0') throw;
    out.Finish();
    throw failure.After(Count(out.Count(), "row"));
  }
  out.Finish();
}

/// Text of a cell: a text as it is, anything else as JSON writes it, null as nothing.
std::string CellText(Json const& cell);

}  // namespace cli

#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

#include "cli/Failure.h"
#include "cli/Json.h"
#include "cli/Text.h"

namespace cli {

enum class Format { Text, List, Csv, JsonArray, NdJson, Plot, Xlsx };
/// How CSV shows a range: as text, "2690..2730", in two columns, or by its middle.
enum class Ranges { Text, Split, Mean };

/// Where data go: standard output or a file, and how lists look there.
struct OutputOptions {
  Format format = Format::Text;
  std::string file;     ///< empty for standard output
  bool isBare = false;  ///< without headings
  char delimiter = ',';
  Ranges ranges = Ranges::Text;
  bool isLong = false;  ///< a row for each point or row of the one attribute

  bool IsJson() const { return format == Format::JsonArray || format == Format::NdJson; }
  /// By people, not by programs.
  bool IsForReading() const {
    return !isLong && (format == Format::Text || format == Format::List || format == Format::Plot);
  }
};

/// Where the data go, when that is a terminal.
struct Terminal {
  std::size_t width = 0;  ///< 0: not a terminal
  bool hasColor = false;  ///< not with NO_COLOR or TERM=dumb

  static Terminal Of(int stream);
};

/// Writes bytes to standard output or a file. A file is written beside and takes the place of an
/// older one when `Finish` is called: without that the older one stays. Throws `Failure` when
/// writing fails, and `lumo::Error` on Ctrl-C when nobody reads on.
class Sink {
 public:
  explicit Sink(std::string const& file);
  ~Sink();
  Sink(Sink const&) = delete;
  Sink& operator=(Sink const&) = delete;

  void Write(std::string const& text);
  void Flush();
  void Finish();
  Terminal const& Screen() const { return m_terminal; }

 private:
  std::string m_name;    ///< of the file in the end
  std::string m_beside;  ///< of the file that is written; empty when it is the same
  int m_file;            ///< descriptor
  Terminal m_terminal;
  std::string m_buffer;
};

/// One line of CSV as RFC 4180 has it, ending in a line feed.
std::string CsvLine(std::vector<std::string> const& cells, char delimiter = ',');

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
  /// Ends the list; the sink is left open.
  void End();

 private:
  void FlushText();
  void FitScreen();

  OutputOptions m_options;
  Sink& m_sink;
  std::vector<std::string> m_columns;
  std::vector<std::vector<std::string>> m_held;
  std::vector<std::size_t> m_widths;
  std::size_t m_count = 0;
  bool m_isBegun = false;
};

/// Puts a list out: `fill` adds its rows. When that ends in the middle what there is on standard
/// output is ended well, and the failure says how many rows there are.
template <class Fill>
void PutOut(OutputOptions const& options, std::vector<std::string> columns, Fill fill) {
  Sink sink(options.file);
  TableWriter out(options, sink, std::move(columns));
  try {
    fill(out);
  } catch (lumo::Error const& error) {
    if (out.Count() == 0) throw;
    out.End();
    throw After(error, Count(out.Count(), "row"));
  }
  out.End();
  sink.Finish();
}

/// Text of a cell: a text as it is, anything else as JSON writes it, null as nothing.
std::string CellText(Json const& cell);

}  // namespace cli

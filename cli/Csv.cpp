#include "cli/Csv.h"

#include <csv.h>

#include <exception>
#include <map>
#include <utility>

#include "cli/Failure.h"

namespace cli {
namespace {

struct Reading {
  std::function<void(std::vector<std::string> const&)> const& row;
  std::vector<std::string> cells;
  std::exception_ptr fault;  // none may cross the parser

  void AddCell(char const* text, std::size_t length) { cells.emplace_back(text, length); }
  void EndRow() {
    try {
      if (!fault) row(cells);
    } catch (...) {
      fault = std::current_exception();
    }
    cells.clear();
  }
};

}  // namespace

void ReadCsv(std::string const& text, char delimiter,
             std::function<void(std::vector<std::string> const& cells)> const& row) {
  csv_parser parser;
  csv_init(&parser, CSV_STRICT | CSV_STRICT_FINI);
  csv_set_delim(&parser, static_cast<unsigned char>(delimiter));
  csv_set_space_func(&parser, [](unsigned char) { return 0; });  // blanks belong to the cell
  Reading reading = {row, {}, nullptr};
  auto const addCell = [](void* cell, std::size_t length, void* to) {
    static_cast<Reading*>(to)->AddCell(static_cast<char const*>(cell), length);
  };
  auto const endRow = [](int, void* to) { static_cast<Reading*>(to)->EndRow(); };
  bool const isWhole =
      csv_parse(&parser, text.data(), text.size(), addCell, endRow, &reading) == text.size() &&
      csv_fini(&parser, addCell, endRow, &reading) == 0;
  csv_free(&parser);
  if (reading.fault) std::rethrow_exception(reading.fault);
  if (!isWhole) Refuse("the CSV has a misplaced quotation mark");
}

char DelimiterOf(std::string const& text) {
  std::map<char, std::size_t> counts;
  bool isQuoted = false;
  for (char const c : text) {
    if (c == '"') isQuoted = !isQuoted;
    if (isQuoted) continue;
    if (c == '\n' && !counts.empty()) break;
    if (c == ',' || c == ';' || c == '\t') ++counts[c];
  }
  char best = ',';
  for (auto const& [delimiter, count] : counts) {
    if (count > counts[best]) best = delimiter;
  }
  return best;
}

}  // namespace cli

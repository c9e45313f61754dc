#pragma once

#include <string>
#include <vector>

#include "lumo/toolkit/Client.h"
#include "lumo/toolkit/Import.h"

namespace cli {

/// A sheet of texts; the first row has the headings.
using SheetRows = std::vector<std::vector<std::string>>;

struct InputOptions {
  std::string file;          ///< "-" for standard input
  char delimiter = 0;        ///< 0: found by itself
  bool clearsNulls = false;  ///< null in JSON takes a value away
};

/// What was read, so that rows can be given back with their faults.
struct Input {
  SheetRows sheet;       ///< empty for JSON
  char delimiter = ',';  ///< of a CSV file
};

/// Reads CSV, JSON, NDJSON or xlsx into an import: the kind is told by the content. Texts are
/// UTF-8, or UTF-16 with a byte order mark. Throws `lumo::Error` for a file that cannot be read at
/// all.
Input ReadInput(InputOptions const& options, lumo::Table const& table, lumo::Import& import);

/// Bytes as UTF-8 without a byte order mark. Throws `lumo::Error`.
std::string Utf8Of(std::string const& bytes);

}  // namespace cli

#pragma once

#include <functional>
#include <string>
#include <vector>

namespace cli {

/// Reads CSV as RFC 4180 has it, in UTF-8, with that delimiter. Calls `row` with the cells of each
/// line, empty lines left out. Throws `lumo::Error` when a quote is misplaced.
void ReadCsv(std::string const& text, char delimiter,
             std::function<void(std::vector<std::string> const& cells)> const& row);

/// The delimiter of a text: of comma, semicolon and tab the one that its first line has most.
char DelimiterOf(std::string const& text);

}  // namespace cli

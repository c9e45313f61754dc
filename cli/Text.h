#pragma once

#include <string>
#include <string_view>

namespace cli {

/// The text on one line, without characters that would steer a terminal.
std::string OneLine(std::string_view text);
/// Columns that UTF-8 text takes on a terminal, a character counting as one.
std::size_t Width(std::string_view text);
/// With blanks behind it, or before it, up to that width.
std::string Padded(std::string text, std::size_t width);
std::string Right(std::string text, std::size_t width);
/// Not wider than that: the end of a text that is gives way to "…".
std::string Shortened(std::string text, std::size_t width);
/// "Density [kg/m^3]", or the name alone for an empty unit.
std::string WithUnit(std::string const& name, std::string const& unit);
/// "1 record", "2 records".
std::string Count(std::size_t number, std::string const& what);

}  // namespace cli

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// The text on one line, without characters that would steer a terminal.
std::string OneLine(std::string_view text);
/// Columns that UTF-8 text takes on a terminal, a character counting as one.
std::size_t Width(std::string_view text);
std::string Trimmed(std::string_view text);
/// ASCII letters only.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// The shortest text that reads as the same number, whatever the locale.
std::string NumberText(double value);
/// At most that many significant digits, for reading.
std::string NumberText(double value, int digits);
/// Whether the text is UTF-8 without characters that XML cannot carry.
bool CanBeSent(std::string const& text);

/// Reads the whole text as a number; false when it is none. "1,5", "1e3x" and "inf" are none.
bool ReadNumber(std::string_view text, double& value);
/// The number that the text begins with, and what follows it; false when there is none.
bool ReadNumber(std::string_view text, double& value, std::string_view& rest);
bool ReadInteger(std::string_view text, int& value);

/// The parts with ", " between them.
std::string Joined(std::vector<std::string> const& parts);
/// "Density [kg/m^3]", or the name alone for an empty unit.
std::string WithUnit(std::string const& name, std::string const& unit);
/// "1 record", "2 records".
std::string Count(std::size_t number, std::string const& what);

/// "; did you mean "x"?" for the word that is most like the text, or all of a few words when none
/// is.
std::string Suggestion(std::string_view text, std::vector<std::string> const& words);

}  // namespace cli

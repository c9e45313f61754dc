#pragma once

#include <string>
#include <vector>

namespace sandbox {

/// What a new database gets: the tables without records, a few records of every kind for tests, or
/// everything.
enum class Content { Empty, Minimal, Full };

std::string Trimmed(std::string const& text);
/// Parts between the separators, trimmed; nothing for an empty text.
std::vector<std::string> Split(std::string const& text, char separator);
/// The lines of a data file in their "|"-separated columns, comments and empty lines left out.
/// Lines that belong to the minimal content too begin with "*", which is taken off.
std::vector<std::vector<std::string>> Lines(char const* data, Content content = Content::Full);

}  // namespace sandbox

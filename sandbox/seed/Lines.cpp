#include "sandbox/seed/Lines.h"

#include <sstream>

namespace sandbox {

std::string Trimmed(std::string const& text) {
  std::size_t const first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string> Split(std::string const& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) parts.push_back(Trimmed(part));
  return parts;
}

std::vector<std::vector<std::string>> Lines(char const* data, Content content) {
  std::vector<std::vector<std::string>> lines;
  if (content == Content::Empty) return lines;
  std::istringstream in(data);
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    bool const isMinimal = line[0] == '*';
    if (content == Content::Minimal && !isMinimal) continue;
    lines.push_back(Split(isMinimal ? line.substr(1) : line, '|'));
  }
  return lines;
}

}  // namespace sandbox

#include "cli/Text.h"

#include <algorithm>

#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

bool Continues(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto const c = static_cast<unsigned char>(text[i]);
    bool const isC1 = c == 0xC2U && i + 1 < text.size() &&
                      static_cast<unsigned char>(text[i + 1]) < 0xA0U;  // U+0080 to U+009F
    if (isC1) ++i;
    line += isC1 || c < 0x20U || c == 0x7FU ? ' ' : text[i];
  }
  return std::string(lumo::Trimmed(line));
}

std::size_t Width(std::string_view text) {
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), Continues));
}

std::string Padded(std::string text, std::size_t width) {
  std::size_t const now = Width(text);
  return now < width ? text.append(width - now, ' ') : text;
}

std::string Right(std::string text, std::size_t width) {
  std::size_t const now = Width(text);
  return now < width ? text.insert(0, width - now, ' ') : text;
}

std::string Shortened(std::string text, std::size_t width) {
  if (Width(text) <= width) return text;
  std::size_t bytes = 0;
  for (std::size_t count = 0; count + 1 < width; ++count) {
    do ++bytes;
    while (bytes < text.size() && Continues(text[bytes]));
  }
  return text.substr(0, bytes) + "…";
}

std::string WithUnit(std::string const& name, std::string const& unit) {
  return unit.empty() ? name : name + " [" + unit + "]";
}

std::string Count(std::size_t number, std::string const& what) {
  return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

}  // namespace cli

#include "cli/Text.h"

#include <boost/locale/encoding_utf.hpp>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <iterator>
#include <numeric>

namespace cli {
namespace {

constexpr std::size_t kFewWords = 8;

char Lower(char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); }

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool Continues(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

/// Number of letters to change, insert or drop to get from one text to the other.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (char const letter : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t i = 0; i < b.size(); ++i) {
      std::size_t const changed = diagonal + (Lower(letter) == Lower(b[i]) ? 0 : 1);
      diagonal = row[i + 1];
      row[i + 1] = std::min({changed, row[i] + 1, row[i + 1] + 1});
    }
  }
  return row.back();
}

template <class Number, class... Format>
std::string ToText(Number value, Format... format) {
  char text[64];
  return {text, std::to_chars(std::begin(text), std::end(text), value, format...).ptr};
}

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
  return Trimmed(line);
}

std::size_t Width(std::string_view text) {
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), Continues));
}

std::string Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return std::string(text);
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

bool CanBeSent(std::string const& text) {
  auto const isControl = [](char c) {
    return static_cast<unsigned char>(c) < 0x20U && c != '\t' && c != '\n' && c != '\r';
  };
  return std::none_of(text.begin(), text.end(), isControl) &&
         boost::locale::conv::utf_to_utf<char>(text) == text;  // which drops what is no UTF-8
}

std::string NumberText(double value) { return ToText(value); }

std::string NumberText(double value, int digits) {
  return ToText(value, std::chars_format::general, digits);
}

bool ReadNumber(std::string_view text, double& value, std::string_view& rest) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  rest = text.substr(static_cast<std::size_t>(end - text.data()));
  return error == std::errc() && std::isfinite(value);
}

bool ReadNumber(std::string_view text, double& value) {
  std::string_view rest;
  return ReadNumber(text, value, rest) && rest.empty();
}

bool ReadInteger(std::string_view text, int& value) {
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

std::string Joined(std::vector<std::string> const& parts) {
  std::string text;
  for (std::string const& part : parts) text += (text.empty() ? "" : ", ") + part;
  return text;
}

std::string WithUnit(std::string const& name, std::string const& unit) {
  return unit.empty() ? name : name + " [" + unit + "]";
}

std::string Count(std::size_t number, std::string const& what) {
  return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

std::string Suggestion(std::string_view text, std::vector<std::string> const& words) {
  std::string best;
  std::size_t least = text.size() / 3 + 2;
  for (std::string const& word : words) {
    std::size_t const distance = Distance(text, word);
    if (distance >= least) continue;
    least = distance;
    best = word;
  }
  if (!best.empty()) return "; did you mean \"" + best + "\"?";
  if (words.empty() || words.size() > kFewWords) return "";
  return "; there is " + Joined(words);
}

}  // namespace cli

#include "lumo/xml/ConvertTo.h"

#include <clocale>
#include <cstdlib>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace lumo {
namespace {

/// `strtod` in the "C" locale with the exceptions of `std::stod`.
double SlowReal(std::string const& text) {
  static locale_t const kPlainLocale = newlocale(LC_ALL_MASK, "C", nullptr);
  char* end = nullptr;
  int const savedErrno = std::exchange(errno, 0);
  double const value = strtod_l(text.c_str(), &end, kPlainLocale);
  int const error = std::exchange(errno, savedErrno);
  if (end == text.c_str()) throw std::invalid_argument("stod");
  if (error == ERANGE) throw std::out_of_range("stod");
  return value;
}

bool IsOneOf(std::string_view text, std::string_view const (&words)[5]) {
  return std::find(std::begin(words), std::end(words), text) != std::end(words);
}

}  // namespace

int IntegerFromText(std::string_view text) {
  int value = 0;
  char const* const end = text.data() + text.size();
  auto const [stop, error] = std::from_chars(text.data(), end, value);
  if (error == std::errc() && stop == end) return value;
  return std::stoi(std::string(text));
}

double RealFromText(std::string_view text) {
  double value = 0;
  char const* const end = text.data() + text.size();
  auto const [stop, error] = std::from_chars(text.data(), end, value);
  // Only strtod knows which tiny numbers are out of range.
  if (error == std::errc() && stop == end && (std::isnormal(value) || value == 0)) return value;
  return SlowReal(std::string(text));
}

bool BooleanFromText(std::string_view text) {
  if (text == "false") return false;  // as servers write them
  if (text == "true") return true;
  std::string word(text);
  for (char& c : word) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  if (IsOneOf(word, {"true", "t", "yes", "y", "1"})) return true;
  if (IsOneOf(word, {"false", "f", "no", "n", "0"})) return false;
  throw std::runtime_error("boolean value not parseable");
}

NumberText::NumberText(int value)
    : m_size(static_cast<std::size_t>(
          std::to_chars(std::begin(m_text), std::end(m_text), value).ptr - m_text)) {}

NumberText::NumberText(double value)
    : m_size(static_cast<std::size_t>(std::to_chars(std::begin(m_text), std::end(m_text), value,
                                                    std::chars_format::scientific, 17)
                                          .ptr -
                                      m_text)) {}

}  // namespace lumo

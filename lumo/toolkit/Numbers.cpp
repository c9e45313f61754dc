#include "lumo/toolkit/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

#include "lumo/toolkit/Digits.h"

namespace lumo {
namespace {

// A double holds 15 decimal digits; arithmetic, and text with as many digits, leave their traces
// behind the 13th. A figure that has no more than 8 once the traces are cut off is one that
// somebody has typed: a figure that came about by a conversion looks so once in 100,000 times.
constexpr int kHeldDigits = 15;
constexpr int kCleanDigits = 13;
constexpr int kTypedDigits = 8;

// Where numbers are written with an exponent.
constexpr double kLargePlain = 1e16;
constexpr double kSmallPlain = 1e-5;

template <class... Format>
std::string Written(double number, Format... format) {
  char text[400];  // the largest double in full takes 310
  return {text, std::to_chars(std::begin(text), std::end(text), number, format...).ptr};
}

/// Significant digits of the shortest text.
int ExactDigitsOf(double number) {
  std::string const text = Written(number, std::chars_format::scientific);
  auto const isDigit = [](char c) { return c >= '0' && c <= '9'; };
  return static_cast<int>(std::count_if(
      text.begin(),
      text.begin() + static_cast<std::ptrdiff_t>(std::min(text.find('e'), text.size())), isDigit));
}

}  // namespace

double Rounded(double number, int digits) {
  std::string const text = Written(number, std::chars_format::scientific, digits - 1);
  double rounded = number;
  std::from_chars(text.data(), text.data() + text.size(), rounded);
  return rounded;
}

namespace {

double WithoutTraces(double number) {
  if (std::fabs(number) < kLargePlain && number == std::floor(number)) return number;
  int const digits = ExactDigitsOf(number);
  if (digits <= kCleanDigits) return number;
  double const clean = Rounded(number, kCleanDigits);
  if (ExactDigitsOf(clean) <= kTypedDigits) return clean;
  return digits <= kHeldDigits ? number : Rounded(number, kHeldDigits);
}

}  // namespace

int DigitsOf(double number) { return ExactDigitsOf(WithoutTraces(number)); }

std::string ExactTextOf(double number) {
  double const size = std::fabs(number);
  bool const isPlain = number == 0 || (size >= kSmallPlain && size < kLargePlain);
  return Written(number, isPlain ? std::chars_format::fixed : std::chars_format::general);
}

std::string TextOf(double number) {
  return ExactTextOf(std::isfinite(number) ? WithoutTraces(number) : number);
}

std::string TextOf(double number, int digits) {
  return Written(number, std::chars_format::general, digits);
}

bool ReadNumber(std::string_view text, double& number, std::string_view& rest) {
  bool const isSigned = !text.empty() && text.front() == '+';
  if (isSigned) text.remove_prefix(1);
  if (isSigned && !text.empty() && text.front() == '-') return false;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  rest = text.substr(static_cast<std::size_t>(end - text.data()));
  return error == std::errc() && std::isfinite(number);
}

bool ReadNumber(std::string_view text, double& number) {
  std::string_view rest;
  return ReadNumber(text, number, rest) && rest.empty();
}

bool ReadInteger(std::string_view text, int& number) {
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

}  // namespace lumo

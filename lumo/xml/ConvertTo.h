#pragma once

#include <string>
#include <string_view>
#include <type_traits>

#include "lumo/platform/core/Export.h"

namespace lumo {

/// Text to value. Numbers behave like `std::stoi` and `std::stod` in the "C" locale, whatever the
/// locale of the process: leading white space is skipped, what follows the number is ignored, and
/// std::invalid_argument or std::out_of_range is thrown. Booleans throw std::runtime_error.
LUMO_API int IntegerFromText(std::string_view text);
/// As `IntegerFromText`.
LUMO_API double RealFromText(std::string_view text);
/// As `IntegerFromText`; takes "true", "yes", "1" and the like in whatever case.
LUMO_API bool BooleanFromText(std::string_view text);

/// Text of a number in place, without a string: "%d" for integers, "%.17e" for reals.
class LUMO_API NumberText {
 public:
  /// The text of that number.
  explicit NumberText(int value);
  explicit NumberText(double value);
  /// The text, which lives as long as this.
  operator std::string_view() const {  // NOLINT(google-explicit-constructor): it is a text
    return {m_text, m_size};
  }

 private:
  char m_text[32] = {};  // the longest real, "-1.23456789012345678e-308", takes 25
  std::size_t m_size = 0;
};

/// "true" or "false", the only spellings that are written.
constexpr std::string_view BooleanText(bool value) { return value ? "true" : "false"; }

}  // namespace lumo

/// `ConvertTo<To>(text)` converts a text into a bool, an int or a double; `lumo::IntegerFromText`
/// and its neighbours have the rules and the errors.
template <class To, class From = std::string>
To ConvertTo(From text) {
  static_assert(std::is_same_v<To, bool> || std::is_same_v<To, int> || std::is_same_v<To, double>);
  if constexpr (std::is_same_v<To, bool>) {
    return lumo::BooleanFromText(text);
  } else if constexpr (std::is_same_v<To, int>) {
    return lumo::IntegerFromText(text);
  } else {
    return lumo::RealFromText(text);
  }
}

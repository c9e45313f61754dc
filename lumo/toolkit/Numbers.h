#pragma once

#include <string>
#include <string_view>

#include "lumo/platform/core/Export.h"

/// Numbers as text for people and files, whatever the locale of the process.
namespace lumo {

/// The number as somebody would have typed it: the shortest text that reads as the same number,
/// without what arithmetic left behind. 249.99999999999997 is "250", and
/// 0.15932135772036976 is "0.15932135772037". Figures that were typed with up to 13 digits come
/// out as they went in; those with up to 8 also after they were converted to other units, written
/// by this function, read again and converted back.
LUMO_API std::string TextOf(double number);
/// At most that many significant digits, for reading.
LUMO_API std::string TextOf(double number, int digits);
/// The shortest text that reads as the very same number: 249.99999999999997 stays.
LUMO_API std::string ExactTextOf(double number);

/// Reads the whole text as a number; false when it is not one. "1,5", "1e3x" and "inf" are not.
LUMO_API bool ReadNumber(std::string_view text, double& number);
/// The number that the text begins with, and what follows it; false when there is none.
LUMO_API bool ReadNumber(std::string_view text, double& number, std::string_view& rest);
/// The same for an integer.
LUMO_API bool ReadInteger(std::string_view text, int& number);

}  // namespace lumo

#pragma once

#include <string>
#include <string_view>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Units.h"

/// Values as bytes, to be kept and compared. Not installed.
namespace lumo {

/// The value, whole and exact, in a form of this library's own.
LUMO_API std::string BytesOf(Value const& value);
/// Throws `Error` (NotUnderstood) for bytes that `BytesOf` did not make.
LUMO_API Value ValueFromBytes(std::string_view bytes);

/// The value as the server would give it back: figures in the units of the attribute, its columns
/// and parameters, words in their order, line ends as XML leaves them, without what reading adds.
/// Throws `Error` (InvalidArgument) when a unit cannot be converted.
LUMO_API Value AsKept(Value value, Attribute const& attribute, Units const& units);
/// Whether two values of an attribute say the same, up to what conversions of units leave behind.
/// Nothing, an empty text, list or table are the same.
LUMO_API bool MeansTheSame(Value const& a, Value const& b, Attribute const& attribute,
                           Units const& units);

/// For people: "2690..2730 kg/m^3", "3 rows". Long texts are cut short.
LUMO_API std::string TextOf(Value const& value);

}  // namespace lumo

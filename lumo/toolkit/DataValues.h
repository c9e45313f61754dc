#pragma once

#include <string>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Units.h"
#include "lumo/values/IDataValue.h"

/// The exact library's values as plain ones, and back. Not installed.
namespace lumo {

/// Of an attribute, which says how its curves are to be interpolated and in which units the columns
/// of its grids stand; null when it is not known. `std::monostate` for null and for an empty cell.
/// Throws `Error` (NotUnderstood) when the bytes of a file cannot be read.
LUMO_API Value FromDataValue(IDataValue const* value, Attribute const* attribute);

/// The value in the form in which an import sends it. Parameters and axes are converted by `units`
/// into the units in which the server takes them; of all other figures the unit is sent along.
/// Null for `std::monostate`. Throws `Error` (InvalidArgument), which names the attribute, when the
/// value does not fit it.
LUMO_API SmartPtr<IDataValue> ToDataValue(Value const& value, Attribute const& attribute,
                                          std::string const& dbKey, Units const& units);

}  // namespace lumo

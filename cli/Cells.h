#pragma once

#include <string>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Value.h"

namespace cli {

/// A cell of CSV: plain text for plain values ("2690..2730", "yes", "Excellent; Acceptable"), the
/// JSON of all others. A number whose unit is not the one of the column has it behind it, an
/// estimated one "~" before it.
std::string CsvCell(lumo::Value const& value, std::string const& columnUnit);
/// Reads such a cell of an attribute; `std::monostate` for an empty one. Throws `lumo::Error`.
lumo::Value FromCsvCell(std::string const& cell, lumo::Attribute const& attribute,
                        std::string const& columnUnit);

/// A cell for reading: figures with six digits, a few words for what is more than a text.
std::string ReadableCell(lumo::Value const& value, std::string const& columnUnit);

/// "150 degC", or a word.
std::string TextOf(lumo::Parameter const& parameter);
/// "Temperature = 150 degC, Condition = T6".
std::string TextOf(std::vector<lumo::Parameter> const& parameters);

}  // namespace cli

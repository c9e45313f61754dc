#pragma once

#include <string>

#include "cli/Names.h"
#include "cli/Output.h"

namespace cli {

/// A value in full, as the JSON formats show it and `import` takes it:
///
///     text, date           "EN AW-6061"          number with unit   {"value": 107, "unit": "HV"}
///     integer, logical     14, true              range              {"low": 2690, "high": 2730,
///     "unit": "kg/m^3"} discrete             ["Excellent"]         link               {"url":
///     "...", "description": "..."} file, picture        {"contentType": "...", "data": "Base64"}
///     with "url" instead of "data"
///                          where the server names an address; a file has "fileName" and
///                          "description"
///     points               {"points": [{"value": 94, "parameters": {"Temperature": 150}}], "unit":
///     "HV"} table                {"columns": ["Element"], "rows": [["Al"]]} curve {"unit": "MPa",
///     "xAxis": "Temperature", "series":
///                           [{"parameters": {"Condition": "T6"}, "points": [{"x": 24, "y":
///                           276}]}]}
///     gridded curve        {"unit": "MPa", "xAxis": "Temperature", "values":
///                           [{"value": 150, "parameters": {"Temperature": 20}}]}
///
/// An estimated figure has "estimated": true. Null for a null value and one that has no such form.
Json JsonOf(IDataValue const* value);
/// Whole numbers without a decimal point; null for what is no number.
Json JsonOf(double number);

/// Throws `UsageFailure` for what is no JSON, or nested beyond reason.
Json ParseJson(std::string const& text);

/// The value that such JSON describes, for an attribute of that table. Throws `UsageFailure` that
/// says what does not fit.
SmartPtr<IDataValue> ValueOf(Json const& json, TableOf& table, AttributeDetail const& attribute);

/// A cell of CSV: plain text for plain values ("2690..2730", "yes", "Excellent; Acceptable"), the
/// JSON of all others. A number whose unit is not the one of the column has it behind it, an
/// estimated one "~" before it.
std::string CsvCell(Json const& json, std::string const& columnUnit);
/// Reads such a cell of an attribute of that type; null for an empty one. Throws `UsageFailure`.
Json FromCsvCell(std::string const& cell, AttributeDetail const& attribute,
                 std::string const& columnUnit);

/// A cell for reading: figures with six digits, a few words for what is more than a text.
std::string ReadableCell(Json const& json, std::string const& columnUnit);

}  // namespace cli

#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Value.h"

namespace cli {

using Json = nlohmann::ordered_json;  ///< members stay in the order in which they were added

/// A value in full, as the JSON formats show it and `import` takes it; docs/formats.md has the
/// forms. Null for a value that is missing.
Json JsonOf(lumo::Value const& value);
/// As somebody would have typed it, whole numbers without a decimal point; null for what is not a
/// number.
Json JsonOf(double number);

/// Throws `lumo::Error` (InvalidArgument) for what is not JSON, or nested beyond reason.
Json ParseJson(std::string const& text);

/// The value that such JSON describes, for that attribute. Throws `lumo::Error` (InvalidArgument)
/// that says what does not fit.
lumo::Value ValueOf(Json const& json, lumo::Attribute const& attribute);

}  // namespace cli

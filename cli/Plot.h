#pragma once

#include <string>

#include "cli/Output.h"

namespace cli {

/// Draws the curves of a value, in the JSON form that Values.h describes, as lines of text: axes
/// with figures, one sign per curve and a line that says what they stand for.
std::string Plot(Json const& value);

}  // namespace cli

#pragma once

#include <string>

#include "lumo/toolkit/Error.h"

namespace cli {

/// What to do about a fault on the way to a server, in one or two sentences with the options of
/// this command; empty for hints of another kind.
std::string NextStep(lumo::Hint const& hint);

}  // namespace cli

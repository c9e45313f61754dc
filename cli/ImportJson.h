#pragma once

#include <string>

#include "lumo/toolkit/Client.h"
#include "lumo/toolkit/Import.h"

namespace cli {

/// Adds records in JSON: an array of objects, one object, or one object to a line. What is wrong
/// with a record becomes a fault of its row. Throws `lumo::Error` for what is not JSON as a whole.
void AddJson(std::string const& text, bool clearsNulls, lumo::Table const& table,
             lumo::Import& import);

}  // namespace cli

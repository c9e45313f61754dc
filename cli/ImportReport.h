#pragma once

#include <string>

#include "cli/Context.h"
#include "cli/ImportInput.h"
#include "lumo/toolkit/Import.h"

namespace cli {

/// A line for each value that changes and for each fault, in the format that is wanted.
void PutOutRows(OutputOptions const& options, lumo::ImportReport const& report);

/// The faults on standard error, the first few of many.
void TellFaults(Context const& context, lumo::ImportReport const& report);

/// The rows with faults, with a column that says why, in a file beside the input from which they
/// can be imported once they are mended; "-" has none. Gives its name, or an empty text.
std::string WriteFaults(std::string const& file, Input const& input,
                        lumo::ImportReport const& report);

/// "3 created, 1 changed, 2 as they were", or "3 to create, 1 with faults; nothing was written".
std::string Summary(lumo::ImportReport const& report);

}  // namespace cli

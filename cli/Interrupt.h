#pragma once

#include "lumo/toolkit/Options.h"

namespace cli {

/// Lets Ctrl-C end the command in good order: calls under way are given up, what was done is kept.
/// A second Ctrl-C ends the process at once.
void CatchInterrupts();
/// Cancelled by Ctrl-C.
lumo::CancellationToken const& Interrupts();

}  // namespace cli

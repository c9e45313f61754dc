#pragma once

namespace cli {

/// Lets Ctrl-C end the command in good order: calls under way are given up, what was done is kept.
/// A second Ctrl-C ends the process at once.
void CatchInterrupts();
bool IsInterrupted();
/// Throws `Failure` once Ctrl-C was pressed.
void StopWhenInterrupted();

}  // namespace cli

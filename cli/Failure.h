#pragma once

#include <stdexcept>
#include <string>

#include "lumo/toolkit/Error.h"

namespace cli {

/// How the command ends; scripts rely on the numbers.
enum class ExitCode : int {
  Done = 0,
  ServerFault = 1,
  Usage = 2,
  LogOnRefused = 3,
  Transport = 4,
  PartlyDone = 5,
  NotUnderstood = 6,
  Interrupted = 130,
};

ExitCode ExitCodeOf(lumo::Error const& error);
/// What to do next, in the words of this command: "; see --user". Empty where there is no hint.
std::string HintText(lumo::Hint const& hint);
/// What is said to the user: the error and what to do next.
std::string TextOf(lumo::Error const& error);

/// What the user asked for makes no sense.
[[noreturn]] void Refuse(std::string const& text, lumo::Hint hint = {});
/// Throws `lumo::Error` (Cancelled) once Ctrl-C was pressed.
void StopWhenInterrupted();

/// Ends the command with that code, and with one line unless the text is empty.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, std::string const& text) : std::runtime_error(text), m_code(code) {}
  ExitCode Code() const { return m_code; }

 private:
  ExitCode m_code;
};

/// The error as the end of work of which so much was done, such as "3 rows".
Failure After(lumo::Error const& error, std::string const& done);

}  // namespace cli

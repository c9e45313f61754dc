#pragma once

#include <stdexcept>
#include <string>

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

/// Ends the command with one line for the user.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, std::string const& text) : std::runtime_error(text), m_code(code) {}
  ExitCode Code() const { return m_code; }
  /// The same failure after so much was done, such as "3 records".
  Failure After(std::string const& done) const {
    return {m_code == ExitCode::Interrupted ? m_code : ExitCode::PartlyDone,
            std::string(what()) + " (after " + done + ")"};
  }

 private:
  ExitCode m_code;
};

/// What the user asked for does not exist or makes no sense.
class UsageFailure : public Failure {
 public:
  explicit UsageFailure(std::string const& text) : Failure(ExitCode::Usage, text) {}
};

}  // namespace cli

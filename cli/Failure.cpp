#include "cli/Failure.h"

#include <string_view>
#include <utility>
#include <vector>

#include "cli/Interrupt.h"
#include "cli/NextStep.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

using lumo::ErrorCode;
using lumo::HintCode;

std::string AllQuoted(std::vector<std::string> const& names, std::string const& joint) {
  std::string text;
  for (std::string const& name : names) {
    if (!text.empty()) text += &name == &names.back() ? joint : ", ";
    text += lumo::Quoted(name);
  }
  return text;
}

}  // namespace

ExitCode ExitCodeOf(lumo::Error const& error) {
  if (error.RecordsDone() > 0 && error.Code() != ErrorCode::Cancelled) return ExitCode::PartlyDone;
  switch (error.Code()) {
    case ErrorCode::InvalidArgument:
    case ErrorCode::NotFound:
    case ErrorCode::Ambiguous: return ExitCode::Usage;
    case ErrorCode::NameResolution:
    case ErrorCode::Connection:
    case ErrorCode::Tls:
    case ErrorCode::Timeout:
    case ErrorCode::Proxy: return ExitCode::Transport;
    case ErrorCode::Unauthenticated:
    case ErrorCode::PermissionDenied: return ExitCode::LogOnRefused;
    case ErrorCode::NotUnderstood: return ExitCode::NotUnderstood;
    case ErrorCode::OutcomeUnknown: return ExitCode::PartlyDone;
    case ErrorCode::Cancelled: return ExitCode::Interrupted;
    default: return ExitCode::ServerFault;
  }
}

std::string HintText(lumo::Hint const& hint) {
  std::vector<std::string> const& all = hint.arguments;
  switch (hint.code) {
    case HintCode::DidYouMean:
      return all.empty() ? "" : "; did you mean " + AllQuoted(all, " or ") + "?";
    case HintCode::OneOf: return all.empty() ? "" : "; there is " + lumo::Joined(all);
    case HintCode::GivePassword: return "; set LUMO_PASSWORD or name a file with --password-file";
    case HintCode::GiveServer: return ": give --url or --server, set LUMO_URL, or try --sandbox";
    case HintCode::LookBeforeRepeating: return "; see whether it has happened before you repeat it";
    case HintCode::NameEach: return "; name each by itself: " + AllQuoted(all, " and ");
    default: break;
  }
  std::string const step = NextStep(hint);
  return step.empty() ? "" : ". " + step;
}

std::string TextOf(lumo::Error const& error) {
  if (error.Code() == ErrorCode::Cancelled) return "interrupted";
  std::string text = error.what();
  std::string const hint = HintText(error.Hint());
  // Some texts end in the names that there are.
  bool const isSaid = error.Hint().code == HintCode::OneOf &&
                      (error.Code() == ErrorCode::Ambiguous ||
                       text.find(lumo::Joined(error.Hint().arguments)) != std::string::npos);
  return isSaid ? text : text + hint;
}

void Refuse(std::string const& text, lumo::Hint hint) {
  throw lumo::Error(ErrorCode::InvalidArgument, text, std::move(hint));
}

void StopWhenInterrupted() {
  if (Interrupts().IsCancelled()) throw lumo::Error(ErrorCode::Cancelled, "interrupted");
}

Failure After(lumo::Error const& error, std::string const& done) {
  ExitCode const code =
      error.Code() == ErrorCode::Cancelled ? ExitCode::Interrupted : ExitCode::PartlyDone;
  bool const isSaid = error.RecordsDone() > 0;  // the toolkit says it
  return {code, TextOf(error) + (isSaid ? "" : " (after " + done + ")")};
}

}  // namespace cli

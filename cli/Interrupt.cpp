#include "cli/Interrupt.h"

#include <signal.h>

#include <atomic>

#include "cli/Failure.h"

namespace cli {
namespace {

std::atomic<bool> interrupted{false};  // lock-free, which a handler may write

}  // namespace

void CatchInterrupts() {
  struct sigaction action {};
  action.sa_handler = [](int) { interrupted = true; };
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(SIGINT, &action, nullptr);
  signal(SIGPIPE, SIG_IGN);  // a reader that has seen enough shows as a failed write
}

bool IsInterrupted() { return interrupted; }

void StopWhenInterrupted() {
  if (interrupted) throw Failure(ExitCode::Interrupted, "interrupted");
}

}  // namespace cli

#include "cli/Interrupt.h"

#include <signal.h>

namespace cli {
namespace {

lumo::CancellationToken const interrupts;

}  // namespace

void CatchInterrupts() {
  struct sigaction action {};
  action.sa_handler = [](int) { interrupts.Cancel(); };
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  sigaction(SIGINT, &action, nullptr);
  signal(SIGPIPE, SIG_IGN);  // a reader that has seen enough shows as a failed write
}

lumo::CancellationToken const& Interrupts() { return interrupts; }

}  // namespace cli

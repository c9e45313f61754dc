#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

#include "cli/Interrupt.h"
#include "cli/Options.h"

namespace {

/// Gives a standard stream that is closed to the null device, for reading only, lest data go to
/// whatever is opened in its place.
void FillStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDONLY) < 0) std::abort();
  }
}

}  // namespace

int main(int count, char** texts) {
  FillStandardStreams();
  cli::CatchInterrupts();
  return cli::CommandLine().Run(count, texts);
}

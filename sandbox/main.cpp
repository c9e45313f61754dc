#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "sandbox/Options.h"

namespace {

/// The descriptor that the system gave; throws std::system_error when it gave none.
int Opened(int descriptor, char const* what) {
  if (descriptor < 0) throw std::system_error(errno, std::generic_category(), what);
  return descriptor;
}

/// Gives a standard stream that the caller closed to the null device, lest the next file, socket or
/// database that is opened takes its number.
void FillStandardStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) < 0) Opened(open("/dev/null", O_RDWR), "/dev/null");
  }
}

/// The stop signals as a descriptor. To be called before any thread starts, which inherits the
/// mask.
int StopSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  signal(SIGPIPE, SIG_IGN);
  return Opened(signalfd(-1, &signals, SFD_CLOEXEC), "signalfd");
}

int Timer(int seconds) {
  int const timer = Opened(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC), "timerfd");
  itimerspec when{};
  when.it_value.tv_sec = seconds;
  timerfd_settime(timer, 0, &when, nullptr);  // 0 seconds never fire
  return timer;
}

/// Whether standard input has come to its end; what was written there is ignored.
bool InputEnded() {
  char ignored[256];
  return read(STDIN_FILENO, ignored, sizeof ignored) <= 0;
}

void WaitForStop(int signals, sandbox::Options const& options) {
  pollfd reasons[] = {{signals, POLLIN, 0},
                      {Timer(options.ttlSeconds), POLLIN, 0},
                      {options.stopOnEof ? STDIN_FILENO : -1, POLLIN, 0}};
  while (poll(reasons, std::size(reasons), -1) >= 0) {
    if (reasons[0].revents != 0 || reasons[1].revents != 0) return;
    if (reasons[2].revents != 0 && InputEnded()) return;
  }
}

}  // namespace

int main(int count, char** texts) try {
  sandbox::Options options = sandbox::ReadOptions(count, texts);
  FillStandardStreams();
  std::ofstream logFile;
  if (!options.logFile.empty()) {
    logFile.open(options.logFile, std::ios::app);
    if (!logFile) throw std::runtime_error("cannot write to " + options.logFile);
  }
  if (options.log) options.server.log = logFile.is_open() ? &logFile : &std::cerr;
  int const signals = StopSignals();
  sandbox::Store store = sandbox::OpenStore(options.database, options.content);
  if (options.records > 0) sandbox::AddGeneratedRecords(store, options.records);
  sandbox::Server server(store, options.server);
  int const port = server.Start(options.port);
  std::cout << R"({"url":"http://127.0.0.1:)" << port << R"(","port":)" << port << R"(,"pid":)"
            << getpid() << "}" << std::endl;
  if (!std::cout) throw std::runtime_error("cannot write the address to standard output");
  WaitForStop(signals, options);
  server.Stop();
  return 0;
} catch (std::exception const& error) {
  std::cerr << "lumo-sandbox: " << error.what() << '\n';
  return 1;
}

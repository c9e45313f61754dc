#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"

namespace {

constexpr char kUsage[] =
    R"(lumo-sandbox: a service layer on this machine, for trials and tests

usage: lumo-sandbox [options]
  --port N         listen on 127.0.0.1:N; 0, the default, takes any free port
  --db FILE        keep the data in this SQLite file; default is memory
  --seed CONTENT   what new data hold: empty (tables without records), minimal (a few records of
                   every kind) or full, the default
  --records N      add N made-up materials, for trials with many records
  --log-on KIND    the log-on that requests must bring: none, the default, basic or digest
  --user NAME      the one user who may log on; default is lumo
  --password-file FILE
                   the password is the first line of this file; otherwise it is the value of the
                   environment variable LUMO_SANDBOX_PASSWORD
  --namespace BASE the vendor namespace base that it speaks, such as http://www.example.com/lumo/;
                   default is the one it was built for
  --log[=FILE]     report every request on standard error or at the end of this file
  --ttl SECONDS    stop after this time; 0, the default, runs until stopped
  --stop-on-eof    stop when standard input is closed
  --version        print the version
  --help           print this

Prints one line of JSON with its address. Stops on SIGTERM and SIGINT.
)";

struct Options {
  bool help = false;
  bool version = false;
  int port = 0;
  int ttlSeconds = 0;
  int records = 0;
  bool stopOnEof = false;
  bool log = false;
  std::string logFile;  ///< empty: standard error
  std::string database = ":memory:";
  sandbox::Content content = sandbox::Content::Full;
  std::string passwordFile;
  sandbox::ServerOptions server;
};

class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

int Number(std::string_view option, std::string_view text, int most) {
  int value = -1;
  auto const [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || stop != text.data() + text.size() || value < 0 || value > most) {
    throw UsageError(std::string(option) + " takes a number from 0 to " + std::to_string(most));
  }
  return value;
}

sandbox::Content ContentOf(std::string_view word) {
  if (word == "empty") return sandbox::Content::Empty;
  if (word == "minimal") return sandbox::Content::Minimal;
  if (word == "full") return sandbox::Content::Full;
  throw UsageError("--seed takes empty, minimal or full");
}

sandbox::LogOn LogOnOf(std::string_view word) {
  if (word == "none") return sandbox::LogOn::None;
  if (word == "basic") return sandbox::LogOn::Basic;
  if (word == "digest") return sandbox::LogOn::Digest;
  throw UsageError("--log-on takes none, basic or digest");
}

std::string NamespaceBase(std::string_view text) {
  if (text.empty() || text.find_first_of(" \t\r\n\"<>") != std::string_view::npos) {
    throw UsageError("--namespace takes a URI such as http://www.example.com/lumo/");
  }
  return std::string(text);
}

/// The password is never an option's value: everybody on the machine can read those.
std::string Password(std::string const& file) {
  std::string password;
  if (!file.empty()) {
    std::ifstream in(file);
    if (!std::getline(in, password)) throw UsageError("cannot read a password from " + file);
    if (!password.empty() && password.back() == '\r') password.pop_back();
  } else if (char const* const value = std::getenv("LUMO_SANDBOX_PASSWORD")) {
    password = value;
  }
  if (password.empty()) {
    throw UsageError(
        "the log-on needs a password: set LUMO_SANDBOX_PASSWORD or name a --password-file");
  }
  return password;
}

Options ReadOptions(int count, char** texts) {
  Options options;
  for (int i = 1; i < count; ++i) {
    std::string_view const option = texts[i];
    auto const value = [&]() -> std::string_view {
      if (++i == count) throw UsageError(std::string(option) + " takes a value");
      return texts[i];
    };
    if (option == "--help") {
      options.help = true;
    } else if (option == "--version") {
      options.version = true;
    } else if (option == "--port") {
      options.port = Number(option, value(), 65535);
    } else if (option == "--ttl") {
      options.ttlSeconds = Number(option, value(), 1'000'000);
    } else if (option == "--db") {
      options.database = value();
      if (options.database.empty()) throw UsageError("--db takes the name of a file");
    } else if (option == "--seed") {
      options.content = ContentOf(value());
    } else if (option == "--records") {
      options.records = Number(option, value(), 1'000'000);
    } else if (option == "--log-on") {
      options.server.logOn = LogOnOf(value());
    } else if (option == "--user") {
      options.server.user = value();
      if (options.server.user.empty() || options.server.user.find(':') != std::string::npos) {
        throw UsageError("--user takes a name without a colon");
      }
    } else if (option == "--namespace") {
      options.server.namespaceBase = NamespaceBase(value());
    } else if (option == "--password-file") {
      options.passwordFile = value();
      if (options.passwordFile.empty()) throw UsageError("--password-file takes a file's name");
    } else if (option == "--log") {
      options.log = true;
    } else if (option.substr(0, 6) == "--log=") {
      options.log = true;
      options.logFile = option.substr(6);
      if (options.logFile.empty()) throw UsageError("--log= takes the name of a file");
    } else if (option == "--stop-on-eof") {
      options.stopOnEof = true;
    } else {
      throw UsageError("unknown option " + std::string(option));
    }
  }
  return options;
}

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

void WaitForStop(int signals, Options const& options) {
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
  Options options = ReadOptions(count, texts);
  if (options.help || options.version) {
    std::cout << (options.help ? kUsage : "lumo-sandbox " SANDBOX_VERSION "\n");
    return 0;
  }
  if (options.server.logOn != sandbox::LogOn::None) {
    options.server.password = Password(options.passwordFile);
  } else if (!options.passwordFile.empty()) {
    throw UsageError("--password-file needs --log-on basic or digest");
  }
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
} catch (UsageError const& error) {
  std::cerr << "lumo-sandbox: " << error.what() << "\n\n" << kUsage;
  return 2;
} catch (std::exception const& error) {
  std::cerr << "lumo-sandbox: " << error.what() << '\n';
  return 1;
}

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "cli/Interrupt.h"
#include "cli/Output.h"
#include "cli/Spinner.h"

namespace cli {
namespace {

constexpr std::size_t kBuffered = 65536;
constexpr int kPollMs = 100;
constexpr std::size_t kUsualWidth = 80;

bool IsSet(char const* variable) {
  char const* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

/// Such as /dev/stdout, to which others may write before and after.
bool IsStandardOutput(std::string const& file) {
  struct stat one {};
  struct stat other {};
  return stat(file.c_str(), &one) == 0 && fstat(STDOUT_FILENO, &other) == 0 &&
         one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// The file itself behind links; empty for what is no regular file, and is written as it is.
std::string Target(std::string const& file) {
  std::error_code error;
  auto const status = std::filesystem::status(file, error);
  if (!std::filesystem::exists(status)) return file;
  if (!std::filesystem::is_regular_file(status)) return "";
  return std::filesystem::canonical(file, error).string();
}

/// Makes a file beside `target` and gives its descriptor: the first of .part, .part2 and so on that
/// does not exist, as such a file may be somebody's.
int OpenBeside(std::string const& target, std::string& name) {
  constexpr int kMostNames = 1000;
  int file = -1;
  for (int i = 1; i < kMostNames && file < 0 && (i == 1 || errno == EEXIST); ++i) {
    name = target + ".part" + (i == 1 ? "" : std::to_string(i));
    file = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  }
  return file;
}

}  // namespace

Terminal Terminal::Of(int stream) {
  if (isatty(stream) != 1) return {};
  winsize size{};
  bool const isKnown = ioctl(stream, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  char const* const kind = std::getenv("TERM");
  bool const isDumb = kind != nullptr && std::strcmp(kind, "dumb") == 0;
  return {isKnown ? size.ws_col : kUsualWidth, !isDumb && !IsSet("NO_COLOR")};
}

Sink::Sink(std::string const& file) : m_name(file), m_file(STDOUT_FILENO) {
  if (file.empty() || IsStandardOutput(file)) {
    m_name = "standard output";
    m_terminal = Terminal::Of(m_file);
    return;
  }
  std::string const target = Target(file);
  if (target.empty()) {
    m_file = open(file.c_str(), O_WRONLY | O_CLOEXEC);
  } else {
    m_name = target;
    m_file = OpenBeside(target, m_beside);
  }
  if (m_file < 0) {
    m_beside.clear();
    Refuse("cannot write " + file + ": " + std::strerror(errno));
  }
  struct stat older {};
  if (!m_beside.empty() && stat(m_name.c_str(), &older) == 0) (void)fchmod(m_file, older.st_mode);
}

Sink::~Sink() {
  try {
    Flush();
  } catch (std::exception const&) {
    // Another failure is on its way, or nobody would read this one.
  }
  if (m_file != STDOUT_FILENO) close(m_file);
  if (!m_beside.empty()) unlink(m_beside.c_str());
}

void Sink::Write(std::string const& text) {
  m_buffer += text;
  if (m_buffer.size() >= kBuffered) Flush();
}

void Sink::Flush() {
  if (!m_buffer.empty()) Spinner::Stop();
  std::size_t done = 0;
  while (done < m_buffer.size()) {
    // A pipe that is ready takes this much at once, so that writing never waits for its reader.
    std::size_t const count = std::min<std::size_t>(m_buffer.size() - done, PIPE_BUF);
    bool const isInterrupted = Interrupts().IsCancelled();
    pollfd room{m_file, POLLOUT, 0};
    if (poll(&room, 1, isInterrupted ? 0 : kPollMs) <= 0) {
      if (!isInterrupted) continue;
      m_buffer.clear();
      StopWhenInterrupted();
    }
    ssize_t const written = write(m_file, m_buffer.data() + done, count);
    if (written < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (written < 0) {
      m_buffer.clear();
      // A reader that has seen enough is nothing to talk about.
      throw Failure(ExitCode::PartlyDone,
                    errno == EPIPE ? "" : "cannot write " + m_name + ": " + std::strerror(errno));
    }
    done += static_cast<std::size_t>(written);
  }
  m_buffer.clear();
}

void Sink::Finish() {
  Flush();
  if (m_beside.empty()) return;
  if (rename(m_beside.c_str(), m_name.c_str()) != 0) {
    throw Failure(ExitCode::PartlyDone, "cannot write " + m_name + ": " + std::strerror(errno));
  }
  m_beside.clear();
}

}  // namespace cli

#include "cli/Progress.h"

#include <unistd.h>

#include <iostream>
#include <utility>

#include "cli/Spinner.h"

namespace cli {
namespace {

constexpr std::size_t kBarWidth = 30;
constexpr std::chrono::milliseconds kFirst{500};
constexpr std::chrono::milliseconds kEvery{100};

}  // namespace

Progress::Progress(std::string what, bool isQuiet)
    : m_what(std::move(what)), m_isOn(!isQuiet && isatty(STDERR_FILENO) == 1) {}

void Progress::Show(lumo::Progress const& at) {
  auto const now = Clock::now();
  if (!m_isOn || now - m_start < kFirst || now - m_drawn < kEvery) return;
  m_drawn = now;
  Spinner::Stop();
  Draw(at);
}

void Progress::Draw(lumo::Progress const& at) {
  double const seconds = std::chrono::duration<double>(m_drawn - m_start).count();
  std::string line = "\r\033[K";
  if (at.recordsTotal > 0) {
    std::size_t const filled = kBarWidth * at.recordsDone / at.recordsTotal;
    line += "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
            std::to_string(100 * at.recordsDone / at.recordsTotal) + " %  ";
  }
  auto const rate = static_cast<std::size_t>(static_cast<double>(at.recordsDone) / seconds);
  line += std::to_string(at.recordsDone) +
          (at.recordsTotal > 0 ? " of " + std::to_string(at.recordsTotal) : "") + " " + m_what +
          ", " + std::to_string(rate) + "/s";
  std::cerr << line << std::flush;
  m_isShown = true;
}

void Progress::Clear() {
  if (m_isShown) std::cerr << "\r\033[K" << std::flush;
  m_isShown = false;
}

}  // namespace cli

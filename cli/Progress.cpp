#include "cli/Progress.h"

#include <unistd.h>

#include <iostream>
#include <utility>

namespace cli {
namespace {

constexpr std::size_t kBarWidth = 30;
constexpr std::chrono::milliseconds kFirst{500};
constexpr std::chrono::milliseconds kEvery{100};

}  // namespace

Progress::Progress(std::string what, std::size_t total, bool isQuiet)
    : m_what(std::move(what)), m_total(total), m_isOn(!isQuiet && isatty(STDERR_FILENO) == 1) {}

void Progress::Add(std::size_t count) {
  m_done += count;
  auto const now = Clock::now();
  if (!m_isOn || now - m_start < kFirst || now - m_drawn < kEvery) return;
  m_drawn = now;
  Draw();
}

void Progress::Draw() {
  double const seconds = std::chrono::duration<double>(m_drawn - m_start).count();
  std::string line = "\r\033[K";
  if (m_total > 0) {
    std::size_t const filled = kBarWidth * m_done / m_total;
    line += "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
            std::to_string(100 * m_done / m_total) + " %  ";
  }
  line += std::to_string(m_done) + (m_total > 0 ? " of " + std::to_string(m_total) : "") + " " +
          m_what + ", " +
          std::to_string(static_cast<std::size_t>(static_cast<double>(m_done) / seconds)) + "/s";
  std::cerr << line << std::flush;
  m_isShown = true;
}

void Progress::Clear() {
  if (m_isShown) std::cerr << "\r\033[K" << std::flush;
  m_isShown = false;
}

}  // namespace cli

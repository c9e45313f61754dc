#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace cli {

/// A line on standard error that tells how far long work has come; nothing where that is no
/// terminal. Shows after half a second, and goes when the work ends.
class Progress {
 public:
  /// `total` is 0 when nobody knows it.
  Progress(std::string what, std::size_t total, bool isQuiet);
  ~Progress() { Clear(); }
  Progress(Progress const&) = delete;
  Progress& operator=(Progress const&) = delete;

  void Add(std::size_t count);
  std::size_t Done() const { return m_done; }
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;
  void Draw();

  std::string m_what;
  std::size_t m_total;
  std::size_t m_done = 0;
  bool m_isOn;
  bool m_isShown = false;
  Clock::time_point m_start = Clock::now();
  Clock::time_point m_drawn = m_start;
};

}  // namespace cli

#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "lumo/toolkit/Options.h"

namespace cli {

/// A line on standard error that tells how far long work has come; nothing where that is no
/// terminal. Shows after half a second, and goes when the work ends.
class Progress {
 public:
  Progress(std::string what, bool isQuiet);
  ~Progress() { Clear(); }
  Progress(Progress const&) = delete;
  Progress& operator=(Progress const&) = delete;

  void Show(lumo::Progress const& at);
  void Clear();

 private:
  using Clock = std::chrono::steady_clock;
  void Draw(lumo::Progress const& at);

  std::string m_what;
  bool m_isOn;
  bool m_isShown = false;
  Clock::time_point m_start = Clock::now();
  Clock::time_point m_drawn = m_start;
};

}  // namespace cli

#include "lumo/platform/core/Time.h"

#include <chrono>

using Clock = std::chrono::steady_clock;

std::uint64_t Time::GetPerformanceTime() {
  return static_cast<std::uint64_t>(Clock::now().time_since_epoch().count());
}

float Time::PerformanceTimeToSeconds(std::uint64_t ticks) {
  return std::chrono::duration<float>(Clock::duration(static_cast<Clock::rep>(ticks))).count();
}

#pragma once

#include <cstdint>

#include "lumo/platform/core/Export.h"

/// Monotonic clock by which calls are timed.
class LUMO_API Time {
 public:
  /// Starts and stops the clock; every session does both once. The clock needs no preparation, so
  /// neither does anything.
  static void StaticInit() {}
  static void StaticShutdown() {}
  /// Ticks since an arbitrary moment.
  static std::uint64_t GetPerformanceTime();
  /// Length of `ticks` in seconds.
  static float PerformanceTimeToSeconds(std::uint64_t ticks);
};

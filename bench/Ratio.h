#pragma once

#include <benchmark/benchmark.h>

#include <ctime>

/// CPU time of the whole process so far, in seconds.
inline double CpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// One round: both works in turn, each `turns` times, so that whatever disturbs the machine
/// disturbs both. Reports how many times the CPU time of `limit` the work of `ours` takes.
template <class Limit, class Ours>
void MeasureRound(benchmark::State& state, int turns, Limit&& limit, Ours&& ours) {
  double limitSeconds = 0;
  double ourSeconds = 0;
  for (auto iteration : state) {
    (void)iteration;
    for (int turn = 0; turn < turns; ++turn) {
      double const start = CpuSeconds();
      limit();
      double const middle = CpuSeconds();
      ours();
      limitSeconds += middle - start;
      ourSeconds += CpuSeconds() - middle;
    }
  }
  double const count = static_cast<double>(state.iterations()) * turns;
  state.counters["limit_us"] = limitSeconds / count * 1e6;
  state.counters["ours_us"] = ourSeconds / count * 1e6;
  state.counters["ratio"] = ourSeconds / limitSeconds;
}

#pragma once

#include <benchmark/benchmark.h>

#include <ctime>

#include "bench/Heap.h"

/// CPU time of the whole process so far, in seconds.
inline double CpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// CPU time that the work takes.
template <class Work>
double SecondsOf(Work& work) {
  BeforeWork();
  double const start = CpuSeconds();
  work();
  return CpuSeconds() - start;
}

/// One round: both works in turn, each `turns` times, so that whatever disturbs the machine
/// disturbs both. Reports how many times the CPU time of `limit` the work of `ours` takes;
/// `prepare` comes before each `ours` and does not count.
template <class Limit, class Prepare, class Ours>
void MeasureRound(benchmark::State& state, int turns, Limit&& limit, Prepare&& prepare,
                  Ours&& ours) {
  double limitSeconds = 0;
  double ourSeconds = 0;
  for (auto iteration : state) {
    (void)iteration;
    for (int turn = 0; turn < turns; ++turn) {
      limitSeconds += SecondsOf(limit);
      prepare();
      ourSeconds += SecondsOf(ours);
    }
  }
  double const count = static_cast<double>(state.iterations()) * turns;
  state.counters["limit_us"] = limitSeconds / count * 1e6;
  state.counters["ours_us"] = ourSeconds / count * 1e6;
  state.counters["ratio"] = ourSeconds / limitSeconds;
}

template <class Limit, class Ours>
void MeasureRound(benchmark::State& state, int turns, Limit&& limit, Ours&& ours) {
  MeasureRound(
      state, turns, limit, [] {}, ours);
}

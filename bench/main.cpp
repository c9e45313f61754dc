#include <benchmark/benchmark.h>
#include <malloc.h>
#include <sched.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "lumo/LumoServiceLayer.h"

namespace {

/// Keeps freed memory in the process, as a program that calls often comes to do by itself; without
/// it every large reply is paid for in page faults.
void KeepHeapWarm() {
  mallopt(M_TRIM_THRESHOLD, -1);  // never
  mallopt(M_MMAP_THRESHOLD, INT_MAX);
}

/// Client and server take turns on one CPU, so that process CPU time is the time of a call.
void StayOnOneCpu() {
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
  if (sched_setaffinity(0, sizeof one, &one) != 0) std::cerr << "cannot stay on one CPU\n";
}

}  // namespace

int main(int argc, char** argv) {
  char const* const heap = std::getenv("LUMO_BENCH_HEAP");
  bool const isDefaultHeap = heap != nullptr && std::strcmp(heap, "default") == 0;
  if (!isDefaultHeap) KeepHeapWarm();
  StayOnOneCpu();
  benchmark::AddCustomContext("heap", isDefaultHeap ? "default (glibc)" : "warm (no trimming)");
  benchmark::AddCustomContext("time", "process CPU time, client and server on one CPU");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  kpxtkLumoServiceLayer::Initialize();
  benchmark::RunSpecifiedBenchmarks();
  kpxtkLumoServiceLayer::Shutdown();
  return 0;
}

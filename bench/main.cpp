#include <benchmark/benchmark.h>
#include <sched.h>

#include <iostream>

#include "bench/Heap.h"
#include "lumo/LumoServiceLayer.h"

namespace {

/// Client and server take turns on one CPU, so that process CPU time is the time of a call.
void StayOnOneCpu() {
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
  if (sched_setaffinity(0, sizeof one, &one) != 0) std::cerr << "cannot stay on one CPU\n";
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::AddCustomContext("heap", PrepareHeap());
  StayOnOneCpu();
  benchmark::AddCustomContext("time", "process CPU time, client and server on one CPU");
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  kpxtkLumoServiceLayer::Initialize();
  benchmark::RunSpecifiedBenchmarks();
  kpxtkLumoServiceLayer::Shutdown();
  return 0;
}

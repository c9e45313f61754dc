#include "bench/Heap.h"

#include <malloc.h>

#include <climits>
#include <cstdlib>
#include <string_view>

namespace {

bool isCold = false;

}  // namespace

char const* PrepareHeap() {
  char const* const wanted = std::getenv("LUMO_BENCH_HEAP");
  std::string_view const heap = wanted == nullptr ? "warm" : wanted;
  if (heap == "default") return "default (glibc)";
  mallopt(M_TRIM_THRESHOLD, -1);  // never
  mallopt(M_MMAP_THRESHOLD, INT_MAX);
  isCold = heap == "cold";
  return isCold ? "cold (empty before each work)" : "warm (no trimming)";
}

void BeforeWork() {
  if (isCold) malloc_trim(0);
}

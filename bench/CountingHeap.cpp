#include "bench/CountingHeap.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

std::size_t inUse = 0;
std::size_t peak = 0;

}  // namespace

std::size_t Peak() { return peak; }

std::size_t ResetPeak() {
  peak = inUse;
  return inUse;
}

void* operator new(std::size_t size) {
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  inUse += malloc_usable_size(memory);
  peak = std::max(peak, inUse);
  return memory;
}
void operator delete(void* memory) noexcept {
  if (memory != nullptr) inUse -= malloc_usable_size(memory);
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept { operator delete(memory); }

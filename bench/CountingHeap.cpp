#include "bench/CountingHeap.h"

#include <malloc.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

// glibc's own, under the names that stay when the others are replaced.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* old, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);
}

namespace {

std::size_t inUse = 0;
std::size_t peak = 0;

void* Count(void* memory) {
  inUse += malloc_usable_size(memory);
  peak = std::max(peak, inUse);
  return memory;
}

}  // namespace

std::size_t InUse() { return inUse; }

std::size_t Peak() { return peak; }

std::size_t ResetPeak() {
  peak = inUse;
  return inUse;
}

extern "C" {

void* malloc(std::size_t size) { return Count(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) { return Count(__libc_calloc(count, size)); }
void* realloc(void* old, std::size_t size) {
  inUse -= malloc_usable_size(old);
  return Count(__libc_realloc(old, size));
}
void* memalign(std::size_t alignment, std::size_t size) {
  return Count(__libc_memalign(alignment, size));
}
void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  *memory = memalign(alignment, size);
  return *memory == nullptr ? ENOMEM : 0;
}
void free(void* memory) {
  inUse -= malloc_usable_size(memory);
  __libc_free(memory);
}
}

#include "lumo/platform/core/ObjectMemory.h"

#include <new>
#include <utility>

#include "lumo/platform/core/FetchAhead.h"
#include "lumo/platform/core/Slab.h"

#ifndef __has_feature
#define __has_feature(feature) 0
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || \
    __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define LUMO_HAS_SLABS 0
#else
#define LUMO_HAS_SLABS 1
#endif

namespace {

// Found without a call. Libraries that a program loads late have room for such small ones, too.
[[gnu::tls_model("initial-exec")]] thread_local lumo::Slab* current = nullptr;
[[gnu::tls_model("initial-exec")]] thread_local bool isThreadEnding = false;

/// Leaves the thread's slab when the thread ends.
struct Leaver {
  ~Leaver() {
    isThreadEnding = true;
    if (current != nullptr) std::exchange(current, nullptr)->Leave();
  }
};

void* TakeFromNewSlab(std::size_t size) {
  static thread_local Leaver const leaver;
  lumo::Slab* const slab = lumo::Slab::Make();
  void* const memory = slab->Take(size);
  if (isThreadEnding) {
    slab->Leave();  // nobody would do it later
  } else if (lumo::Slab* const full = std::exchange(current, slab); full != nullptr) {
    full->Leave();
  }
  return memory;
}

constexpr bool IsInSlab(std::size_t size) { return LUMO_HAS_SLABS && size <= lumo::Slab::kLargest; }

}  // namespace

void* lumo::TakeObjectMemory(std::size_t size) {
  if (!IsInSlab(size)) return ::operator new(size);
  void* const memory = current == nullptr ? nullptr : current->Take(size);
  return memory == nullptr ? TakeFromNewSlab(size) : memory;
}

void lumo::ReturnObjectMemory(void* memory, std::size_t size) noexcept {
  if (!IsInSlab(size)) {
    ::operator delete(memory);
  } else {
    FetchAhead(memory);  // objects go in the order in which they came, mostly
    Slab::Of(memory)->Return();
  }
}

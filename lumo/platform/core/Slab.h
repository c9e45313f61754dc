#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace lumo {

/// A piece of memory from which one thread takes objects in turn, and to which any thread returns
/// them. What was returned is not taken again: the slab goes as a whole, so that the next objects
/// lie side by side, too.
class Slab {
 public:
  static constexpr std::size_t kSize = 4096;
  static constexpr std::size_t kLargest = 512;  ///< object that is worth a place

  /// A slab of the calling thread.
  static Slab* Make() {
    void* memory = nullptr;
    if (posix_memalign(&memory, kSize, kUsable) != 0) throw std::bad_alloc();
    FetchNextSlab(static_cast<char const*>(memory) + kSize);
    return new (memory) Slab();
  }
  /// The slab in which the object lies.
  static Slab* Of(void* object) {
    auto const offset = reinterpret_cast<std::uintptr_t>(object) % kSize;
    return reinterpret_cast<Slab*>(static_cast<char*>(object) - offset);
  }

  /// Null when there is not enough room left.
  void* Take(std::size_t size) {
    // An object's size is a multiple of its alignment.
    std::size_t const alignment = size % 16 == 0 ? 16 : 8;
    std::size_t const begin = (m_used + alignment - 1) & ~(alignment - 1);
    if (begin + size > kUsable) return nullptr;
    m_used = begin + size;
    ++m_taken;
    return reinterpret_cast<char*>(this) + begin;
  }
  void Return() { Drop(1); }
  /// The thread takes no more from it.
  void Leave() { Drop(kOwned - m_taken); }

 private:
  // What the heap puts before its next block still fits between two slabs.
  static constexpr std::size_t kUsable = kSize - 2 * sizeof(void*);
  static constexpr int kOwned = 1 << 20;  // more than there are objects in it

  Slab() = default;
  ~Slab() = default;

  /// Asks for the memory of the slab that is made next, which lies behind this one, mostly: of its
  /// first objects, and of where the heap notes down what it has left. Nothing is written.
  static void FetchNextSlab(char const* next) {
    constexpr std::size_t kLine = 64;
    constexpr std::size_t kFirst = 512;  // the processor sees by itself how it goes on
    for (std::size_t at = 0; at <= kFirst; at += kLine) __builtin_prefetch(next + at - kLine, 1);
    __builtin_prefetch(next + kSize - kLine, 1);
  }
  void Drop(int count) {
    if (m_users.fetch_sub(count, std::memory_order_acq_rel) == count) std::free(this);
  }

  std::atomic<int> m_users{kOwned};  // less what was returned, until the thread leaves
  int m_taken = 0;
  std::size_t m_used = sizeof(Slab);
};

}  // namespace lumo

#pragma once

#include <atomic>
#include <cstdint>

#include "lumo/platform/core/SmartPtr.h"

namespace lumo {

/// A shared part of an object that is always there but mostly empty: it is made when somebody asks
/// for it first, and until then takes no memory. Several threads may ask at once. Assigning shares
/// the part; one that was set to null stays null.
template <class T>
class LazyPart {
 public:
  LazyPart() = default;
  LazyPart(LazyPart const&) = delete;
  ~LazyPart() { Release(m_part.load()); }
  LazyPart& operator=(LazyPart const& other) { return *this = other.Get(); }
  /// Shares this part from now on; null stays null.
  LazyPart& operator=(SmartPtr<T> const& part) {
    Release(m_part.exchange(part ? Keep(part) : Null()));
    return *this;
  }

  /// The part, which is made when it is asked for first.
  SmartPtr<T> Get() const {
    T* part = m_part.load(std::memory_order_acquire);
    if (part == nullptr) part = Make();
    return part == Null() ? nullptr : part;
  }

 private:
  T* Make() const {
    T* const made = Keep(T::CreateOne());
    T* other = nullptr;
    if (m_part.compare_exchange_strong(other, made)) return made;
    Release(made);
    return other;
  }
  static T* Keep(SmartPtr<T> const& part) {
    part->AddReference();
    return part.get();
  }
  static void Release(T* part) {
    if (part != nullptr && part != Null()) part->ReleaseReference();
  }
  /// Stands for a part that was set to null; never followed. The same in every library, unlike the
  /// address of an object of this header.
  static T* Null() {
    return reinterpret_cast<T*>(std::uintptr_t{1});  // NOLINT(performance-no-int-to-ptr): no object
  }

  mutable std::atomic<T*> m_part{nullptr};  ///< null: not made yet
};

}  // namespace lumo

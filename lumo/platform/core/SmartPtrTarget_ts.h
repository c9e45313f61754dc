#pragma once

#include <atomic>
#include <cstddef>
#include <new>

#include "lumo/platform/core/Export.h"
#include "lumo/platform/core/NoCopy.h"
#include "lumo/platform/core/ObjectMemory.h"

/// Base of everything that `SmartPtr` holds. The count starts at 0, is atomic, and is never
/// copied: assignment copies the fields of the derived class only.
class LUMO_API SmartPtrTarget_ts : public NoCopy {
 public:
  using HoldsNothingRead = SmartPtrTarget_ts;  ///< see `lumo::FromXml`
  SmartPtrTarget_ts() = default;
  virtual ~SmartPtrTarget_ts() = default;
  SmartPtrTarget_ts(SmartPtrTarget_ts const&) = delete;
  SmartPtrTarget_ts& operator=(SmartPtrTarget_ts const& /*other*/) { return *this; }

  /// Replies make objects by the million, for which the heap is slow; the other forms, which these
  /// would hide, are as ever.
  static void* operator new(std::size_t size) { return lumo::TakeObjectMemory(size); }
  static void operator delete(void* memory, std::size_t size) noexcept {
    if (memory != nullptr) lumo::ReturnObjectMemory(memory, size);
  }
  static void* operator new(std::size_t /*size*/, void* place) noexcept { return place; }
  static void operator delete(void* /*memory*/, void* /*place*/) noexcept {}
  static void* operator new(std::size_t size, std::align_val_t alignment) {
    return ::operator new(size, alignment);
  }
  static void operator delete(void* memory, std::align_val_t alignment) noexcept {
    ::operator delete(memory, alignment);
  }
  static void* operator new(std::size_t size, std::nothrow_t const& /*tag*/) noexcept {
    try {
      return lumo::TakeObjectMemory(size);
    } catch (std::bad_alloc const&) {
      return nullptr;
    }
  }

  /// For `SmartPtr` alone, as its counterpart.
  void AddReference() const { m_references.fetch_add(1); }
  /// Deletes the object when the last reference goes. Who holds the only reference need not count:
  /// nobody else can add one.
  void ReleaseReference() const {
    if (m_references.load(std::memory_order_acquire) == 1 || m_references.fetch_sub(1) == 1) {
      delete this;
    }
  }

 private:
  mutable std::atomic<int> m_references{0};
};

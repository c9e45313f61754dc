#pragma once

#include <atomic>

#include "lumo/platform/core/Export.h"
#include "lumo/platform/core/NoCopy.h"

/// Base of everything that `SmartPtr` holds. The count starts at 0, is atomic, and is never
/// copied: assignment copies the fields of the derived class only.
class LUMO_API SmartPtrTarget_ts : public NoCopy {
 public:
  using HoldsNothingRead = SmartPtrTarget_ts;  ///< see `lumo::FromXml`
  SmartPtrTarget_ts() = default;
  virtual ~SmartPtrTarget_ts() = default;
  SmartPtrTarget_ts(SmartPtrTarget_ts const&) = delete;
  SmartPtrTarget_ts& operator=(SmartPtrTarget_ts const& /*other*/) { return *this; }

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

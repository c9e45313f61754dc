#pragma once

#include "lumo/platform/core/SmartPtr.h"
#include "lumo/platform/core/SmartPtrTarget_ts.h"

namespace lumo {

/// Base of a class whose objects others point at without owning them, through `WeakPtr`. As the
/// object itself, its links are not locked.
template <class T>
class WeakTarget {
 public:
  /// What pointers share with the object, and keep beyond its end.
  struct Link : SmartPtrTarget_ts {
    /// Of an object, whose end sets `target` to null.
    explicit Link(WeakTarget const* object) : target(object) {}
    WeakTarget const* target;  ///< null once the object is gone
  };

  WeakTarget() = default;
  WeakTarget(WeakTarget const&) = delete;
  WeakTarget& operator=(WeakTarget const& /*other*/) { return *this; }  // a link is never copied
  /// What pointers to this object share with it.
  SmartPtr<Link> GetLink() const { return m_link; }

 protected:
  ~WeakTarget() { m_link->target = nullptr; }

 private:
  SmartPtr<Link> m_link{new Link(this)};  // no T yet: whoever follows the link makes it one
};

/// Points at an object that it does not own; null once the object is gone.
template <class T>
class WeakPtr {
 public:
  WeakPtr() = default;
  /// Of an object, or of none.
  explicit WeakPtr(T const* target) {
    if (target != nullptr) m_link = target->GetLink();
  }
  /// The object; null for none, and once it is gone.
  T const* Get() const { return m_link ? static_cast<T const*>(m_link->target) : nullptr; }

 private:
  SmartPtr<typename WeakTarget<T>::Link> m_link;
};

}  // namespace lumo

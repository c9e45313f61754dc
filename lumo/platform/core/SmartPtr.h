#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

/// Shared pointer to a `SmartPtrTarget_ts`. A plain pointer may be wrapped again at any time: the
/// count lives in the object. A const `SmartPtr` still gives a non-const target.
template <class T>
class SmartPtr {
 public:
  SmartPtr() = default;
  /// The only way from a pointer, so that NULL and 0 are as good as nullptr.
  SmartPtr(T* target)  // NOLINT(google-explicit-constructor): calls pass plain pointers
      : m_target(target) {
    if (m_target != nullptr) m_target->AddReference();
  }
  SmartPtr(SmartPtr const& other) : SmartPtr(other.m_target) {}
  SmartPtr(SmartPtr&& other) noexcept : m_target(std::exchange(other.m_target, nullptr)) {}
  /// The target of a pointer to a derived class.
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  SmartPtr(SmartPtr<U> const& other)  // NOLINT(google-explicit-constructor): derived to base
      : SmartPtr(static_cast<T*>(other.get())) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  SmartPtr(SmartPtr<U>&& other) noexcept  // NOLINT(google-explicit-constructor): derived to base
      : m_target(std::exchange(other.m_target, nullptr)) {}
  ~SmartPtr() {
    if (m_target != nullptr) m_target->ReleaseReference();
  }

  SmartPtr& operator=(SmartPtr const& other) {
    SmartPtr(other).Swap(*this);
    return *this;
  }
  SmartPtr& operator=(SmartPtr&& other) noexcept {
    SmartPtr(std::move(other)).Swap(*this);
    return *this;
  }

  /// Null when there is none.
  T* get() const { return m_target; }
  /// As `get`.
  T* Get() const { return m_target; }
  /// The target, which must be there.
  T* operator->() const { return m_target; }
  /// Likewise.
  T& operator*() const { return *m_target; }
  /// Whether there is a target.
  explicit operator bool() const { return m_target != nullptr; }
  /// Lets go of the target.
  void Reset() { SmartPtr().Swap(*this); }
  /// Exchanges the targets; no count changes.
  void Swap(SmartPtr& other) noexcept { std::swap(m_target, other.m_target); }

 private:
  template <class U>
  friend class SmartPtr;

  T* m_target = nullptr;
};

template <class T, class U>
bool operator==(SmartPtr<T> const& left, SmartPtr<U> const& right) {
  return left.get() == right.get();
}
template <class T, class U>
bool operator!=(SmartPtr<T> const& left, SmartPtr<U> const& right) {
  return left.get() != right.get();
}
template <class T, class U>
bool operator==(SmartPtr<T> const& left, U const* right) {
  return left.get() == right;
}
template <class T, class U>
bool operator!=(SmartPtr<T> const& left, U const* right) {
  return left.get() != right;
}
template <class T, class U>
bool operator==(U const* left, SmartPtr<T> const& right) {
  return left == right.get();
}
template <class T, class U>
bool operator!=(U const* left, SmartPtr<T> const& right) {
  return left != right.get();
}
template <class T>
bool operator==(SmartPtr<T> const& left, std::nullptr_t) {
  return left.get() == nullptr;
}
template <class T>
bool operator!=(SmartPtr<T> const& left, std::nullptr_t) {
  return left.get() != nullptr;
}
template <class T>
bool operator==(std::nullptr_t, SmartPtr<T> const& right) {
  return right.get() == nullptr;
}
template <class T>
bool operator!=(std::nullptr_t, SmartPtr<T> const& right) {
  return right.get() != nullptr;
}

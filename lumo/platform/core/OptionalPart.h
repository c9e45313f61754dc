#pragma once

#include <memory>

namespace lumo {

/// A part of an object that most objects lack: a `T` at its default until it is made, and until
/// then no larger than a pointer. It is copied with its object.
template <class T>
class OptionalPart {
 public:
  OptionalPart() = default;
  /// Copies the part, not the pointer to it.
  OptionalPart(OptionalPart const& other) { *this = other; }
  OptionalPart(OptionalPart&&) noexcept = default;
  ~OptionalPart() = default;
  OptionalPart& operator=(OptionalPart const& other) {
    m_part = other.m_part == nullptr ? nullptr : std::make_unique<T>(*other.m_part);
    return *this;
  }
  OptionalPart& operator=(OptionalPart&&) noexcept = default;
  /// A part at its default takes no memory again.
  OptionalPart& operator=(T const& part) {
    if (part == T()) {
      m_part.reset();
    } else {
      Make() = part;
    }
    return *this;
  }

  /// The part; one with its defaults when there is none.
  T const& Get() const {
    static T const kDefault{};
    return m_part == nullptr ? kDefault : *m_part;
  }
  /// The part, which is made when there is none yet.
  T& Make() {
    if (m_part == nullptr) m_part = std::make_unique<T>();
    return *m_part;
  }

 private:
  std::unique_ptr<T> m_part;
};

}  // namespace lumo

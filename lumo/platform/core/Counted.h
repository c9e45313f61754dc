#pragma once

#include "lumo/platform/core/SmartPtr.h"
#include "lumo/platform/core/SmartPtrTarget_ts.h"

namespace lumo {

/// Adds `CreateOne()` to a reference-counted class: `class A : public lumo::Counted<A>`.
template <class T, class Base = SmartPtrTarget_ts>
class Counted : public Base {
 public:
  using Base::Base;
  Counted() = default;
  /// A new object with every field at its default.
  static SmartPtr<T> CreateOne() { return SmartPtr<T>(new T()); }
};

}  // namespace lumo

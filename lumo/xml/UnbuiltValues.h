#pragma once

#include <cstddef>

#include "lumo/platform/core/Export.h"

namespace lumo {

/// Counts, while it lives, the values that a reply held and nobody could build on this thread,
/// because library start-up had not run. What reads values has no way to tell its caller; the
/// pipeline, which hands out the outcome, asks here.
class LUMO_API UnbuiltValues {
 public:
  UnbuiltValues();
  /// How many there were on this thread since this was made.
  std::size_t Count() const;
  /// Says that a value could not be built.
  static void Note();

 private:
  std::size_t m_before;
};

}  // namespace lumo

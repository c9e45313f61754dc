#pragma once

#include <cstddef>

namespace lumo {

/// Asks for the memory that comes a little behind what is at hand, where memory is gone through in
/// order: large replies and their objects lie outside the processor's caches. Nothing is read, so
/// that there need not be such memory.
inline void FetchAhead(void const* at) {
  constexpr std::size_t kAhead = 1024;  // 512 to 4096 are about as good
  __builtin_prefetch(static_cast<char const*>(at) + kAhead);
}

}  // namespace lumo

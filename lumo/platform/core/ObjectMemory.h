#pragma once

#include <cstddef>

#include "lumo/platform/core/Export.h"

namespace lumo {

/// Memory for an object that is made alone, aligned as its size asks for; throws std::bad_alloc.
/// Small objects that a thread makes one after the other lie side by side in slabs of 4 KiB, and
/// a slab goes when the last object in it does. Builds with the address or the thread sanitizer
/// take every object from the heap.
LUMO_API void* TakeObjectMemory(std::size_t size);

/// Gives back what `TakeObjectMemory` gave for that size, on any thread.
LUMO_API void ReturnObjectMemory(void* memory, std::size_t size) noexcept;

}  // namespace lumo

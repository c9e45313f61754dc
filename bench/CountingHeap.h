#pragma once

#include <cstddef>

/// Replaces malloc and its kin in the whole program, which must have one thread, and counts.

/// Bytes in use now.
std::size_t InUse();
/// Largest number of bytes in use since `ResetPeak`.
std::size_t Peak();
/// Starts anew from the bytes in use, which are returned.
std::size_t ResetPeak();

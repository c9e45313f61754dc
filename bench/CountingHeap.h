#pragma once

#include <cstddef>

/// Replaces operator new and delete of the whole program, which must have one thread, and counts.

/// Largest number of bytes in use since `ResetPeak`.
std::size_t Peak();
/// Starts anew from the bytes in use, which are returned.
std::size_t ResetPeak();

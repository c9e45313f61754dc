#pragma once

/// How the heap behaves while works are measured, by the environment variable LUMO_BENCH_HEAP.
///
///     warm      freed memory stays in the process, as a program that calls often comes to do
///     default   glibc's heap as it is, which pays for every large reply in page faults
///     cold      as warm, but all that is free goes back to the system before each work, as in a
///               program that makes its first call
char const* PrepareHeap();

/// To be called before each work that is measured.
void BeforeWork();

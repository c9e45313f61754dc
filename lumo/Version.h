#pragma once

/// Version of the library, "major.minor.patch"; the build reads it from here.
#define LUMO_VERSION "1.0.0"
/// Number of the binary interface: the SONAME of the shared library.
#define LUMO_ABI 1

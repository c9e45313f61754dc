#pragma once

#include <string>

#include "lumo/toolkit/Value.h"

namespace lumo {

/// A record as lists show it.
struct RecordHead {
  RecordId id = {};
  std::string name = {};  ///< that the tree shows
  std::string fullName = {};
  /// Names of the folders above it with "/" between them, "Metals and alloys/Ferrous"; "/" and "\"
  /// in a name are written "\/" and "\\".
  std::string folder = {};
};

}  // namespace lumo

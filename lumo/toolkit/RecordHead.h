#pragma once

#include <string>

#include "lumo/toolkit/Value.h"

namespace lumo {

/// A record as lists show it.
struct RecordHead {
  RecordId id = {};           ///< by what the server knows it by
  std::string name = {};      ///< that the tree shows
  std::string fullName = {};  ///< in words, where the tree shows a short name
  /// Names of the folders above it with "/" between them, "Metals and alloys/Ferrous"; "/" and "\"
  /// in a name are written "\/" and "\\".
  std::string folder = {};
};

}  // namespace lumo

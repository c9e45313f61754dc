#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// How a series of a graph is drawn.
class LUMO_API GraphDecoration {
 public:
  enum eOptions : int { Lines = 0, Markers = 1, LinesAndMarkers = 2, Unknown = 3 };
  /// Every value but 0 and 2 gives "Markers".
  static std::string ToString(eOptions options);
  /// `Unknown` for an unknown word.
  static eOptions FromString(std::string const& text);
};

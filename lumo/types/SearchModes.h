#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// Which records a search sees.
class LUMO_API SearchModes {
 public:
  enum eSearchMode : int { Normal = 0, ReadOnly = 1, NotSet = 2 };
  /// Empty for a value without a word.
  static std::string ToString(eSearchMode mode);
};

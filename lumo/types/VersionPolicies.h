#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// Which versions of a record are wanted.
class LUMO_API VersionPolicies {
 public:
  enum eVersionPolicy : int { LatestRead = 0, Latest = 1, AllReleased = 2, All = 3 };
  /// "Unknown" for a value without a word.
  static std::string VersionPolicy_ToString(eVersionPolicy policy);
};

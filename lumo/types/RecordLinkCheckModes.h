#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// Which links the server checks when links are modified.
class LUMO_API RecordLinkCheckModes {
 public:
  enum eRecordLinkCheckMode : int { CheckOnlyForwardLinks = 0, CheckForwardAndReverseLinks = 1 };
  /// Every value but 1 gives "CheckOnlyForwardLinks".
  static std::string RecordLinkCheckMode_ToString(eRecordLinkCheckMode const& mode);
  /// `CheckOnlyForwardLinks` for an unknown word.
  static eRecordLinkCheckMode RecordLinkCheckMode_FromString(std::string const& text);
};

#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// What the server does when part of an import fails.
class LUMO_API ImportErrorModes {
 public:
  enum eImportErrorMode : int { FaultAndRollbackOnAnyError = 0, LogAndContinueWherePossible = 1 };
  /// Every value but 0 gives "LogAndContinueWherePossible".
  static std::string ImportErrorMode_ToString(eImportErrorMode mode);
  /// `LogAndContinueWherePossible` for an unknown word.
  static eImportErrorMode ImportErrorMode_FromString(std::string const& text);
};

#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// What an import does with a record. The server reads these words in lower case and writes them
/// capitalised, so that the two directions do not match: no written word reads back.
class LUMO_API ImportRecordModes {
 public:
  enum eImportRecordMode : int { Update = 0, Create = 1, Copy = 2, Unknown = 3 };
  /// "update", "create" or "copy"; empty for any other value.
  static std::string ImportRecordMode_ToString(eImportRecordMode const& mode);
  /// Value of "Update", "Create" or "Copy"; `Unknown` for anything else.
  static eImportRecordMode ImportRecordMode_FromString(std::string const& text);
};

#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// How the records of a link group are linked.
class LUMO_API RecordLinkGroupTypes {
 public:
  enum eRecordLinkGroupType : int { Unknown = 0, Static = 1, Dynamic = 2, CrossDatabase = 3 };
  /// "Unknown" for a value without a word.
  static std::string RecordLinkGroupType_ToString(eRecordLinkGroupType const& type);
  /// `Unknown` for an unknown word.
  static eRecordLinkGroupType RecordLinkGroupType_FromString(std::string const& text);
};

#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// Which versions of an exporter are listed.
class LUMO_API ExporterListingModes {
 public:
  enum eExporterListingMode : int { NotSet = 0, IncludeAll = 1, LatestVersionPerName = 2 };
  /// Empty for a value without a word.
  static std::string ExporterListingMode_ToString(eExporterListingMode mode);
};

#pragma once

#include "lumo/platform/core/Export.h"

/// Values of the settings that travel in the SOAP header.
class LUMO_API HeaderVals {
 public:
  enum eOptionalBool : int { False = 0, True = 1, NotSet = 2 };
};

#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// Receives the library's log lines. Implemented by the caller, who keeps it alive as long as the
/// session that was given it; called on the thread that makes the call.
class LUMO_API ILogger {
 public:
  virtual ~ILogger() = default;
  /// `level` is 1 for errors and 3 for the timing of a call.
  virtual void Log(int level, const std::string& message) = 0;
};

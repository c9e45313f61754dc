#pragma once

#include "lumo/platform/core/Export.h"

/// Start-up and shut-down of the library's tables. Neither is locked: call them from one thread
/// while no call runs. Each may be called again, in any order.
namespace kpxtkLumoServiceLayer {

/// Fills the tables by which replies are read. Needed once before the first call.
LUMO_API void Initialize();
/// Empties them; look-ups then find nothing.
LUMO_API void Shutdown();

}  // namespace kpxtkLumoServiceLayer

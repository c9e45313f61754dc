#pragma once

#include "sandbox/store/Store.h"

namespace sandbox {

/// Makes units, unit systems and currencies.
void AddUnits(Store& store);
/// Makes the databases with their tables, attributes and parameters, without records.
void AddDatabases(Store& store);

}  // namespace sandbox

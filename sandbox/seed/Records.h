#pragma once

#include "sandbox/seed/Lines.h"
#include "sandbox/store/Store.h"

namespace sandbox {

/// Fills the tables with records, values, versions and links.
void AddRecords(Store& store, Content content);

}  // namespace sandbox

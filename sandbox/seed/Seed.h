#pragma once

#include <string>

#include "sandbox/seed/Lines.h"
#include "sandbox/store/Store.h"

namespace sandbox {

/// Opens the file, or a private database in memory for ":memory:", and fills a new one with that
/// content. Throws std::runtime_error, also when the file holds something else or data of another
/// version.
Store OpenStore(std::string const& file, Content content = Content::Minimal);

/// Adds a folder of so many made-up materials, for trials with many records.
void AddGeneratedRecords(Store& store, int count);

}  // namespace sandbox

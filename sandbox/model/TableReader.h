#pragma once

#include "sandbox/model/Values.h"

namespace sandbox {

/// Reads tabular data, a whole table or changes, in the form of an import into the stored table.
void ReadTabular(Store& store, Attribute const& attribute, pugi::xml_node from,
                 pugi::xml_node table, StoredValue& value);

}  // namespace sandbox

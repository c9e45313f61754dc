#pragma once

#include <string>

#include "sandbox/model/Values.h"

namespace sandbox {

/// The value that the text of a data file means for the attribute.
StoredValue BuildValue(Store& store, Attribute const& attribute, std::string const& dbKey,
                       std::string const& text);

}  // namespace sandbox

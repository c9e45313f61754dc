#pragma once

#include <pugixml.hpp>

#include "sandbox/store/Store.h"

namespace sandbox {

/// Appends an element for each currency.
void WriteCurrencies(Store& store, pugi::xml_node parent);

}  // namespace sandbox

#pragma once

#include <pugixml.hpp>

#include "Checker.h"
#include "Store.h"

namespace sandbox {

/// Answers one operation: reads and checks the request's element, fills the response's. Throws
/// `Fault` when the request makes no sense.
using Handler = void (*)(Store& store, Checker& request, pugi::xml_node response);

void GetDatabases(Store& store, Checker& request, pugi::xml_node response);
void GetTables(Store& store, Checker& request, pugi::xml_node response);
void GetSubsets(Store& store, Checker& request, pugi::xml_node response);

}  // namespace sandbox

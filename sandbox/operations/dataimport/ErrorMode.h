#pragma once

#include <pugixml.hpp>

namespace sandbox {

/// Whether a fault undoes everything; otherwise what fails is left out.
bool IsStrict(pugi::xml_node node);

}  // namespace sandbox

#pragma once

#include <string>

#include "lumo/xml/Xml.h"

namespace lumo {

/// What stands between an element's tags, printed without indentation; empty for null.
std::string PrintContent(XmlNode<char> const* element);

}  // namespace lumo

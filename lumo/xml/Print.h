#pragma once

#include <string>

#include "lumo/xml/Xml.h"

namespace lumo {

/// Prints what the bytes hold as `XMLUtilites::Print` prints their tree, but without a tree, and
/// straight away. False, and no change, when they are not plain, see `PlainXml`.
bool PrintPlain(std::string const& bytes, std::string& text);

/// What stands between an element's tags, printed without indentation; empty for null.
std::string PrintContent(XmlNode<char> const* element);

}  // namespace lumo

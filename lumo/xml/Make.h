#pragma once

#include <string_view>

#include "lumo/xml/Xml.h"

namespace lumo {

/// Copy of the text in the document's memory.
char const* CopyText(std::string_view text, XmlDocument<char>& document);

/// New node or attribute, not attached, with copies of name and text in the document's memory.
XmlNode<char>* MakeNode(std::string_view name, std::string_view text, XmlDocument<char>& document);
XmlAttribute<char>* MakeAttribute(std::string_view name, std::string_view text,
                                  XmlDocument<char>& document);

}  // namespace lumo

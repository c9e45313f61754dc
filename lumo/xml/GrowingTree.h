#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lumo/platform/core/Export.h"
#include "lumo/xml/Xml.h"

namespace lumo {

/// Reads a reply while it is parsed: calls `read(element)` with the first element of that local
/// name in the body of the envelope. The element grows: `NodeReader` has its children parsed as it
/// asks for them, keeps those that it steps over, and drops an entry of a list once it is read, so
/// that of a long list one entry at a time is in memory. A class that looks at nodes itself must
/// not be given a growing element, but may be given its children.
///
/// False when the reply must be parsed whole instead: it has no such element or is not plain, see
/// `PlainXml`, or `read` has thrown a standard exception. What `read` did is then to be forgotten.
LUMO_API bool ReadWhileParsed(std::string const& reply, std::string_view name,
                              std::function<void(XmlNode<char> const*)> const& read);

/// Ends the reading of a growing tree that the node is part of; the reply is then parsed whole.
/// For nodes that go to somebody who may look at all of a document, terminating zeros included.
LUMO_API void RequireWholeTree(XmlNode<char> const& node);

/// What a growing element has for a value, instead of its first text.
LUMO_API extern char const kGrowing[1];

/// Whether the element grows: `first_node` need not tell all its children.
inline bool IsGrowing(XmlNode<char> const& element) { return element.value() == kGrowing; }

/// First child of that local name of a growing element; null when there is none. The child is whole
/// unless it `mayGrow` itself.
LUMO_API XmlNode<char>* FindGrowing(XmlNode<char> const& element, std::string_view name,
                                    bool mayGrow);

/// The next child of that local name behind the children at hand; null when there is none left. The
/// one that was returned before is gone.
LUMO_API XmlNode<char>* NextGrowing(XmlNode<char> const& element, std::string_view name);

/// First child of an element, whole with all its siblings; null when it has none.
LUMO_API XmlNode<char>* CompleteGrowing(XmlNode<char> const& element);
/// The same for any element, growing or not.
inline XmlNode<char>* FirstChild(XmlNode<char> const& element) {
  return IsGrowing(element) ? CompleteGrowing(element) : element.first_node();
}

}  // namespace lumo

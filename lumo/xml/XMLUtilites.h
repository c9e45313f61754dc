#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/platform/core/Export.h"
#include "lumo/xml/Xml.h"

/// Looks names up in a tree, makes nodes, parses and prints documents. Names are given with their
/// prefix when something is made and without it when something is looked for: only what follows
/// the first ":" is compared, so that replies are read whatever prefix the server uses.
class LUMO_API XMLUtilites {
 public:
  /// Name without its prefix ("a:b:c" gives "b:c"); empty for null.
  static std::string GetName(XmlBase<char> const* item);
  /// First child with that local name; null when there is none or no parent.
  static XmlNode<char>* GetNode(std::string const& name, XmlNode<char> const* parent);
  static XmlNode<char>* GetNode(std::string const& name, XmlDocument<char> const* document);
  /// Appends every child with that local name to `out`, in document order.
  static void GetNodes(std::string const& name, XmlNode<char> const* parent,
                       std::vector<XmlNode<char> const*>& out);
  /// First attribute with that local name; null when there is none or no node.
  static XmlAttribute<char>* GetAttr(std::string const& name, XmlNode<char> const* node);
  /// All text of an element, its data and CDATA joined; empty for null.
  static std::string GetText(XmlNode<char> const* node);

  /// New node or attribute, not attached, with copies of name and value in the document's memory.
  /// Integers are written "%d", reals "%.17e". Null for a null document.
  static XmlNode<char>* CreateNode(std::string const& name, std::string const& value,
                                   XmlDocument<char>* document);
  static XmlNode<char>* CreateNode(std::string const& name, int value, XmlDocument<char>* document);
  static XmlNode<char>* CreateNode(std::string const& name, double value,
                                   XmlDocument<char>* document);
  /// A new attribute, not attached, as `CreateNode` makes nodes.
  static XmlAttribute<char>* CreateAttr(std::string const& name, std::string const& value,
                                        XmlDocument<char>* document);
  static XmlAttribute<char>* CreateAttr(std::string const& name, int value,
                                        XmlDocument<char>* document);
  static XmlAttribute<char>* CreateAttr(std::string const& name, double value,
                                        XmlDocument<char>* document);

  /// Appends the XML declaration and an empty SOAP 1.1 envelope with its namespaces; returns the
  /// envelope, null for a null document. The namespace of the headers is the vendor's of the build
  /// where none is given.
  static XmlNode<char>* CreateSOAPHeader(XmlDocument<char>* document,
                                         std::string const& baseTypesNamespace);
  static XmlNode<char>* CreateSOAPHeader(XmlDocument<char>* document,
                                         std::string const& baseTypesNamespace,
                                         std::string const& headerNamespace);

  /// Parses a copy of the bytes; they need no terminating zero, and a UTF-8 byte order mark is
  /// skipped. On malformed input, on more than 512 nested elements and on a zero byte it calls
  /// `XmlErrorHandler`, leaves the document empty and returns false. Throws nothing.
  static bool Parse(char const* begin, char const* end, XmlDocument<char>& document);
  /// The document as text without indentation, byte for byte as RapidXML prints it.
  static std::string Print(XmlDocument<char> const& document);
};

/// Receives what is wrong with a text that does not parse: the parser's message and the place in
/// the parser's own copy of the text, which lives only during the call. Keeps the message for
/// `LastXmlError`.
LUMO_API void XmlErrorHandler(char const* message, void* where);

namespace lumo {

/// Message of the last text that did not parse on this thread; empty when there was none. Valid
/// until the next such text.
LUMO_API std::string_view LastXmlError();
/// As `XMLUtilites::Parse`, but throws `std::bad_alloc` when memory runs out: the empty document
/// would pass for one that does not parse.
LUMO_API bool ParseXml(char const* begin, char const* end, XmlDocument<char>& document);

/// How many elements may lie inside each other in a text that is read.
constexpr int kMaxDepth = 512;

/// Name of a node or attribute without its prefix, in place.
inline std::string_view LocalName(XmlBase<char> const& item) {
  std::string_view const name(item.name(), item.name_size());
  return name.substr(name.find(':') + 1);  // npos + 1 is 0: no prefix
}

/// Whether two texts of that size are the same. Names are too short for a call of `memcmp`.
inline bool IsSameText(char const* one, char const* other, std::size_t size) {
  auto const isSame = [one, other](auto word, std::size_t at) {
    auto wordOfOther = word;
    std::memcpy(&word, one + at, sizeof word);
    std::memcpy(&wordOfOther, other + at, sizeof word);
    return word == wordOfOther;
  };
  if (size >= 8) {
    for (std::size_t at = 0; at < size - 8; at += 8) {
      if (!isSame(std::uint64_t(), at)) return false;
    }
    return isSame(std::uint64_t(), size - 8);
  }
  if (size >= 4) return isSame(std::uint32_t(), 0) && isSame(std::uint32_t(), size - 4);
  for (std::size_t at = 0; at < size; ++at) {
    if (one[at] != other[at]) return false;
  }
  return true;
}

/// Whether that is the name without its prefix; `local` has no ":". Most names that differ do so in
/// length: they have no ":" where the prefix would end, so that nothing is compared for them.
inline bool HasLocalName(std::string_view name, std::string_view local) {
  if (name.size() == local.size()) return IsSameText(name.data(), local.data(), local.size());
  if (name.size() < local.size()) return false;
  std::size_t const colon = name.size() - local.size() - 1;
  if (name[colon] != ':') return false;
  if (!IsSameText(name.data() + colon + 1, local.data(), local.size())) return false;
  for (std::size_t i = 0; i < colon; ++i) {  // a prefix is too short for a search
    if (name[i] == ':') return false;
  }
  return true;
}

/// The same for the name of an element or an attribute.
inline bool HasLocalName(XmlBase<char> const& item, std::string_view local) {
  return HasLocalName(std::string_view(item.name(), item.name_size()), local);
}

/// The next sibling; null for the last one.
inline XmlNode<char>* NextOf(XmlNode<char> const& node) { return node.next_sibling(); }
inline XmlAttribute<char>* NextOf(XmlAttribute<char> const& attribute) {
  return attribute.next_attribute();
}

/// The first with that local name among `item`, which may be null, and those behind it.
template <class Item>
Item* FirstNamed(Item* item, std::string_view local) {
  while (item != nullptr && !HasLocalName(*item, local)) item = NextOf(*item);
  return item;
}

/// The value of a node or attribute in place: pointer plus length, not terminated.
inline std::string_view RawValue(XmlBase<char> const& item) {
  return {item.value(), item.value_size()};
}

}  // namespace lumo

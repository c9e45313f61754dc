#include "lumo/xml/Make.h"

namespace lumo {
namespace {

template <class Item>
Item* Fill(Item* item, std::string_view name, std::string_view text, XmlDocument<char>& document) {
  item->name(CopyText(name, document), name.size());
  item->value(CopyText(text, document), text.size());
  return item;
}

}  // namespace

// RapidXML measures a text of length 0 itself, so that an empty one must not reach it.
char const* CopyText(std::string_view text, XmlDocument<char>& document) {
  return text.empty() ? "" : document.allocate_string(text.data(), text.size());
}

XmlNode<char>* MakeNode(std::string_view name, std::string_view text, XmlDocument<char>& document) {
  return Fill(document.allocate_node(rapidxml::node_element), name, text, document);
}

XmlAttribute<char>* MakeAttribute(std::string_view name, std::string_view text,
                                  XmlDocument<char>& document) {
  return Fill(document.allocate_attribute(), name, text, document);
}

}  // namespace lumo

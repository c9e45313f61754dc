#include "lumo/xml/NodeReader.h"

namespace lumo {

XmlNode<char> const* NodeReader::Search(std::string_view name) {
  XmlNode<char> const* child = m_next;
  if (m_passedOver) child = m_node->first_node();
  while (child != nullptr && !HasLocalName(*child, name)) child = child->next_sibling();
  if (child != nullptr && !m_passedOver) {
    m_passedOver = child != m_next;
    m_next = child->next_sibling();
  }
  return child;
}

XmlAttribute<char> const* NodeReader::FindAttribute(std::string_view name) const {
  if (m_node == nullptr) return nullptr;
  XmlAttribute<char> const* attribute = m_node->first_attribute();
  while (attribute != nullptr && !HasLocalName(*attribute, name)) {
    attribute = attribute->next_attribute();
  }
  return attribute;
}

bool NodeReader::TypeContains(std::string_view word) const {
  XmlAttribute<char> const* const type = FindAttribute("type");
  return type != nullptr && ValueOf(*type).find(word) != std::string_view::npos;
}

}  // namespace lumo

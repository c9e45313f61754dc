#include "lumo/xml/NodeReader.h"

namespace lumo {

XmlNode<char> const* NodeReader::Search(std::string_view name, bool mayGrow) {
  if (m_node != nullptr && IsGrowing(*m_node)) return FindGrowing(*m_node, name, mayGrow);
  XmlNode<char> const* const child =
      FirstNamed<XmlNode<char> const>(m_passedOver ? m_node->first_node() : m_next, name);
  if (child != nullptr && !m_passedOver) {
    m_passedOver = child != m_next;
    m_next = child->next_sibling();
  }
  return child;
}

bool NodeReader::WasRead(std::string_view name) const {
  if (m_node == nullptr || IsGrowing(*m_node)) return false;
  if (m_passedOver) return false;  // when searching nothing gets lost
  for (auto* child = m_node->first_node(); child != m_next; child = child->next_sibling()) {
    if (child == nullptr) return false;
    if (HasLocalName(*child, name)) return true;
  }
  return false;
}

bool NodeReader::TypeContains(std::string_view word) const {
  XmlAttribute<char> const* const type = FindAttribute("type");
  return type != nullptr && RawValue(*type).find(word) != std::string_view::npos;
}

}  // namespace lumo

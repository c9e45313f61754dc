#include "lumo/xml/NodeWriter.h"

#include "lumo/xml/Make.h"

namespace lumo {

XmlNode<char>* NodeWriter::Append(std::string_view name, std::string_view text) {
  if (m_document == nullptr) return nullptr;
  XmlNode<char>* const child = MakeNode(name, text, *m_document);
  m_node->append_node(child);
  return child;
}

void NodeWriter::SetText(std::string_view text) {
  if (m_document != nullptr) m_node->value(CopyText(text, *m_document), text.size());
}

void NodeWriter::AppendAttribute(std::string_view name, std::string_view text) {
  if (m_document != nullptr) m_node->append_attribute(MakeAttribute(name, text, *m_document));
}

}  // namespace lumo

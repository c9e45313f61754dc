#include "lumo/types/NamedAttribute.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

NamedAttribute::NamedAttribute(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("attribute", m_attribute);
  in.Child("name", m_name);
  in.Child("isMeta", m_isMeta);
  in.Child("about", m_about);
}

void NamedAttribute::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.ChildOrEmpty("zbt:attribute", m_attribute);
  out.Child("zbt:name", m_name);
}

#include "lumo/services/browse/AttributeMetaAttributes.h"

#include "lumo/xml/NodeReader.h"

namespace {

/// Some servers put the reference itself where others put the attribute with its name.
SmartPtr<NamedAttribute> Named(XmlNode<char> const* node) {
  SmartPtr<NamedAttribute> attribute = NamedAttribute::CreateOne(node);
  if (attribute && !attribute->GetAttribute()) {
    attribute->SetAttribute(AttributeReference::CreateOne(node));
  }
  return attribute;
}

}  // namespace

AttributeMetaAttributes::AttributeMetaAttributes(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  m_parentAttribute = Named(XMLUtilites::GetNode("ParentAttribute", node));
  in.In("MetaAttributes").ForEach("MetaAttribute", [this](XmlNode<char> const& attribute) {
    AddMetaAttribute(Named(&attribute));
  });
}

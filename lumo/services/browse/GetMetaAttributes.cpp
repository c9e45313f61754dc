#include "lumo/services/browse/GetMetaAttributes.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetMetaAttributesRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("zbt:attributeReferences").Children("zbt:attribute", m_attributeReferences);
}

GetMetaAttributesResponse::GetMetaAttributesResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Children("Attribute", m_attributes);
}

#include "lumo/services/browse/GetMetaAttributes.h"

#include "lumo/xml/NodeReader.h"

GetMetaAttributesResponse::GetMetaAttributesResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Children("Attribute", m_attributes);
}

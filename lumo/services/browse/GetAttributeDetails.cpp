#include "lumo/services/browse/GetAttributeDetails.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetAttributeDetailsRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("zbt:attributeReferences").Children("zbt:attribute", m_attributeReferences);
}

GetAttributeDetailsResponse::GetAttributeDetailsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("attributeDetails").Children("attributeDetail", m_attributeDetails);
}

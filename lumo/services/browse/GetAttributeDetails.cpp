#include "lumo/services/browse/GetAttributeDetails.h"

#include "lumo/xml/NodeReader.h"

GetAttributeDetailsResponse::GetAttributeDetailsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("attributeDetails").Children("attributeDetail", m_attributeDetails);
}

#include "lumo/services/browse/GetAttributeParameters.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetAttributeParametersRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("zbt:attributeReferences").Children("zbt:attribute", m_attributeReferences);
}

GetAttributeParametersResponse::GetAttributeParametersResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("parameterDetails").Children("parameterDetail", m_parameterDetails);
}

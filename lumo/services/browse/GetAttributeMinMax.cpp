#include "lumo/services/browse/GetAttributeMinMax.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetAttributeMinMaxRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("zbt:attributeReferences").Children("zbt:attribute", m_attributeReferences);
  out.Child("brow:unitConversionContext", m_unitConversionContext);
}

GetAttributeMinMaxResponse::GetAttributeMinMaxResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("minMaxes").Children("minMax", m_minMaxes);
}

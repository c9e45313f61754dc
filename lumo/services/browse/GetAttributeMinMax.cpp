#include "lumo/services/browse/GetAttributeMinMax.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetAttributeMinMaxRequest::CreateXMLNode(XmlNode<char>* node) const {
  AttributesRequest::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  out.Child("brow:unitConversionContext", m_unitConversionContext);
}

GetAttributeMinMaxResponse::GetAttributeMinMaxResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("minMaxes").Children("minMax", m_minMaxes);
}

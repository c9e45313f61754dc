#include "lumo/services/dataimport/AttributeAddress.h"

#include "lumo/xml/NodeReader.h"

AttributeAddress::AttributeAddress(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Child("URL", m_url);
}

RecordWithAttributeAddresses::RecordWithAttributeAddresses(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("recordReference", m_recordReference);
  in.In("attributes").Children("attribute", m_attributeAddresses);
}

#include "lumo/types/AttributeIdentifier.h"

#include "lumo/xml/NodeReader.h"

AttributeIdentifier::AttributeIdentifier(XmlNode<char> const* node) {
  lumo::NodeReader in(node);  // these names begin with capitals on the wire
  in.Child("AttributeName", m_attributeName);
  in.Child("AttributeIdentity", m_attributeID);
  in.Child("StandardAttributeName", m_standardAttributeName);
}

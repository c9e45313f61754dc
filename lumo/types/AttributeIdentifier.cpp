#include "lumo/types/AttributeIdentifier.h"

AttributeIdentifier::AttributeIdentifier(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  ReadName(in);
  ReadRest(in);
}

// These names begin with capitals on the wire.
bool AttributeIdentifier::ReadName(lumo::NodeReader& in) {
  return in.Child("AttributeName", m_attributeName);
}

void AttributeIdentifier::ReadRest(lumo::NodeReader& in) {
  in.Child("AttributeIdentity", m_attributeID);
  in.Child("StandardAttributeName", m_standardAttributeName);
}

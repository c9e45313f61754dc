#include "lumo/types/LumoEntityReference.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

LumoEntityReference::LumoEntityReference(XmlNode<char> const* node) {
  lumo::NodeReader(node).Child("dbKey", m_dbKey);
}

void LumoEntityReference::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter(node).Child("zbt:dbKey", m_dbKey);
}

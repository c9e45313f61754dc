#include "lumo/services/browse/GetRootNode.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetRootNode::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("brow:table", m_table);
}

GetRootNodeResponse::GetRootNodeResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("rootNode", m_rootNode);
}

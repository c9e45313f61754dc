#include "lumo/services/browse/GetChildNodes.h"

#include "lumo/xml/NodeWriter.h"

void GetChildNodes::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("brow:parent", m_parent);
  out.Child("brow:recordFilter", m_recordFilter);
  out.Child("brow:recurse", m_recurse);
  out.Child("brow:recurseMaxDepth", m_recurseMaxDepth);
  out.Child("brow:populateGUIDs", m_populateGUIDs);
}

#include "lumo/types/SubsetReference.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

SubsetReference::SubsetReference(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Child("subsetIdentity", m_subsetIdentity);
  lumo::NodeReader name = in.In("name");
  name.Child("table", m_partialTableReference);
  name.Child("subsetName", m_name);
}

void SubsetReference::CreateXMLNode(XmlNode<char>* node) const {
  LumoEntityReference::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  if (m_subsetIdentity != 0) {  // an identity makes the name superfluous
    out.Child("zbt:subsetIdentity", m_subsetIdentity);
    return;
  }
  lumo::NodeWriter name = out.Into("zbt:name");
  name.Child("zbt:table", m_partialTableReference);
  name.Child("zbt:subsetName", m_name);
}

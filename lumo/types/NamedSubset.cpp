#include "lumo/types/NamedSubset.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

NamedSubset::NamedSubset(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("name", m_name);
  in.Child("subset", m_subset);
}

void NamedSubset::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  if (m_subset) out.Child("zbt:dbKey", m_subset->GetDBKey());
  lumo::NodeWriter name = out.Into("zbt:name");
  lumo::NodeWriter table = name.Into("zbt:table");
  if (m_subset && m_subset->GetPartialTableReference()) {
    m_subset->GetPartialTableReference()->CreateXMLNode(table.Node());
  }
  name.Child("zbt:subsetName", m_name);
}

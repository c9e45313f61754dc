#include "lumo/types/RecordFilter.h"

#include "lumo/xml/NodeWriter.h"

void RecordFilter::CreateXMLNode(XmlNode<char>* node) const {
  if (m_profileKey.empty() == m_subsetReferences.empty()) return;
  lumo::NodeWriter out(node);
  if (!m_profileKey.empty()) out.Into("zbt:Profile").Child("zbt:Key", m_profileKey);
  out.List("zbt:subsetReferences", "zbt:subset", m_subsetReferences);
}

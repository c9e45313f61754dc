#include "lumo/services/search/RecordSearchCriterion.h"

#include "lumo/xml/NodeWriter.h"

void RecordSearchCriterion::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("sear:searchAttribute", m_searchAttribute);
  if (m_searchValue) out.Into("sear:searchValue").Named("sear:", m_searchValue);
}

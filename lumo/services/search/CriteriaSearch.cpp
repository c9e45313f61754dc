#include "lumo/services/search/CriteriaSearch.h"

#include "lumo/xml/NodeWriter.h"

void CriteriaSearch::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("sear:dbKey", GetDBKey());
  out.Children("sear:recordSearchCriterion", m_criteria);
  WriteRestrictions(out);
}

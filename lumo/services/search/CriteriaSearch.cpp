#include "lumo/services/search/CriteriaSearch.h"

#include "lumo/xml/NodeWriter.h"

void CriteriaSearch::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("sear:dbKey", m_dbKey);
  out.Children("sear:recordSearchCriterion", m_searchCriterion);
  out.Child("sear:searchFilter", m_searchFilter, TableFilters::ToString);
  if (m_searchMode != SearchModes::NotSet) {
    out.Child("sear:searchMode", m_searchMode, SearchModes::ToString);
  }
  out.Child("sear:populateGUIDs", m_populateGUIDs);
  out.Child("sear:recordFilter", m_recordFilter);
}

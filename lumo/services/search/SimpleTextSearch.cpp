#include "lumo/services/search/SimpleTextSearch.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void SimpleTextSearch::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("sear:dbKey", m_dbKey);
  out.Child("sear:searchValue", m_searchValue);
  out.Child("sear:searchFilter", m_searchFilter, TableFilters::ToString);
  if (m_searchMode != SearchModes::NotSet) {
    out.Child("sear:searchMode", m_searchMode, SearchModes::ToString);
  }
  out.Child("sear:populateGUIDs", m_populateGUIDs);
  out.Child("sear:recordFilter", m_recordFilter);
  out.List("sear:restrictToTables", "sear:table", m_restrictToTables);
}

SimpleTextSearchResponse::SimpleTextSearchResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Children("resultRecords", m_searchResults);
}

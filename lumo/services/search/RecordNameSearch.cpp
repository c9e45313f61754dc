#include "lumo/services/search/RecordNameSearch.h"

#include "lumo/xml/NodeWriter.h"

void RecordNameSearchRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("sear:table", m_table);
  out.Child("sear:recordName", m_recordName);
  out.Child("sear:recordFilter", m_filter);
  lumo::NodeWriter options = out.Into("sear:options");  // flags are numbers here
  options.Attribute("sear:populateGUIDs", int{m_populateGUIDs});
  options.Attribute("sear:searchFullNames", int{m_searchFullNames});
  options.Attribute("sear:searchShortNames", int{m_searchShortNames});
  options.Attribute("sear:caseSensitive", int{m_caseSensitiveNames});
}

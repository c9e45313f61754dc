#include "lumo/services/search/SimpleTextSearch.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void SimpleTextSearch::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("sear:dbKey", GetDBKey());
  out.Child("sear:searchValue", m_searchValue);
  WriteRestrictions(out);
  out.List("sear:restrictToTables", "sear:table", m_restrictToTables);
}

SimpleTextSearchResponse::SimpleTextSearchResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Children("resultRecords", m_searchResults);
}

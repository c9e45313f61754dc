#include "lumo/services/browse/GetLinkedRecords.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetLinkedRecordsRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.List("zbt:recordLinkGroups", "zbt:recordLinkGroup", m_recordLinkGroups);
  out.List("zbt:recordReferences", "zbt:record", m_recordReferences);
  out.Child("brow:populateGUIDs", int{m_populateGUIDs});  // as a number, unlike elsewhere
  out.Child("brow:recordFilter", m_recordFilter);
}

GetLinkedRecordsResponse::GetLinkedRecordsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("sourceRecords").Children("sourceRecord", m_sourceRecords);
}

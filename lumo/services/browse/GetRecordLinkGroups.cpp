#include "lumo/services/browse/GetRecordLinkGroups.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetRecordLinkGroups::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.List("zbt:recordLinkGroups", "zbt:recordLinkGroup", m_recordLinkGroups);
  if (m_dbKey.empty()) return;
  lumo::NodeWriter database = out.Into("brow:database");
  database.Child("brow:dbKey", m_dbKey);
  database.Child("brow:standardNamesOnly", m_standardNamesOnly);
}

GetRecordLinkGroupsResponse::GetRecordLinkGroupsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("recordLinkGroupDetails").Children("recordLinkGroup", m_recordLinkGroupDetails);
}

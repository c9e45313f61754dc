#include "lumo/services/browse/GetTreeRecords.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetTreeRecordsRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("zbt:recordReferences").Children("zbt:record", m_recordReferences);
}

GetTreeRecordsResponse::GetTreeRecordsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("treeRecords").Children("treeRecord", m_treeRecords);
}

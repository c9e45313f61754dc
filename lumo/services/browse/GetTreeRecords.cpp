#include "lumo/services/browse/GetTreeRecords.h"

#include "lumo/xml/NodeWriter.h"

void GetTreeRecordsRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("zbt:recordReferences").Children("zbt:record", m_recordReferences);
}

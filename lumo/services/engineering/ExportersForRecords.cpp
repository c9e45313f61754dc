#include "lumo/services/engineering/ExportersForRecords.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void ExportersForRecordsRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("eng:packageAndModelRequired", m_packageAndModelRequired);
  out.Child("eng:specificAttributeExportersOnly", m_specificAttributeExportersOnly);
  WriteTool(out);
  WriteSelection(out);
  WriteRecords(out);
}

ExportersForRecordsResponse::ExportersForRecordsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("records").Children("record", m_records);
}

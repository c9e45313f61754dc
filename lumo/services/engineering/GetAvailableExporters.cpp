#include "lumo/services/engineering/GetAvailableExporters.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetAvailableExportersRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  WriteTool(out);
  out.ChildIfSet("eng:dbKey", m_dbKey);
  if (m_table) {
    lumo::NodeWriter table = out.Into("eng:table");
    if (m_matchDatabase) table.Attribute("eng:matchDatabase", m_matchDatabase);
    m_table->CreateXMLNode(table.Node());
  }
  WriteSelection(out);
}

GetAvailableExportersResponse::GetAvailableExportersResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Children("exporter", m_exporters);
}

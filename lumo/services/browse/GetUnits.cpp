#include "lumo/services/browse/GetUnits.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetUnits::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("brow:dbKey", m_dbKey);
}

GetUnitsResponse::GetUnitsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("Databases").Children("Database", m_databases);
}

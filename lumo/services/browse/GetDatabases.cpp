#include "lumo/services/browse/GetDatabases.h"

#include "lumo/xml/NodeReader.h"

GetDatabasesResponse::GetDatabasesResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("databaseDetails").Children("database", m_databases);
}

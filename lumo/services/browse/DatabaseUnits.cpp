#include "lumo/services/browse/DatabaseUnits.h"

#include "lumo/xml/NodeReader.h"

DatabaseUnits::DatabaseUnits(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("dbKey", m_dbKey);
  in.In("Units").Children("Unit", m_units);
}

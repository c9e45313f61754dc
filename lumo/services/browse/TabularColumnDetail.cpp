#include "lumo/services/browse/TabularColumnDetail.h"

#include "lumo/xml/NodeReader.h"

TabularColumnDetail::TabularColumnDetail(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  m_kind = XMLUtilites::GetName(node);
  in.Child("Name", m_name);
  in.Child("RevisionInfo", m_revisionInfo);
  in.Child("columnType", m_columnType);
  in.Child("DatabaseUnit", m_databaseUnit);
  in.In("DiscreteValues").Children("DiscreteValue", m_discreteValues);
  in.Child("type", m_type);
}

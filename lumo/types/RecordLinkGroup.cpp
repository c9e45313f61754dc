#include "lumo/types/RecordLinkGroup.h"

#include "lumo/xml/NodeReader.h"

RecordLinkGroup::RecordLinkGroup(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("name", m_name);
  in.In("linkedRecords").Children("record", m_linkedRecords);
  in.In("tableFilters").Children("tableFilter", m_tableFilters, TableFilters::FromString);
  in.In("standardNames").Children("standardName", m_standardNames);
}

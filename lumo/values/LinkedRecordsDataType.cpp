#include "lumo/values/LinkedRecordsDataType.h"

#include "lumo/xml/NodeReader.h"

LinkedRecordsDataType::LinkedRecordsDataType(XmlNode<char> const* node) {
  LoadCommonAttributes(node);
  lumo::NodeReader(node).Children("recordLinkGroup", m_recordLinkGroups);
}

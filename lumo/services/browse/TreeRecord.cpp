#include "lumo/services/browse/TreeRecord.h"

#include "lumo/xml/NodeReader.h"

TreeRecord::TreeRecord(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.StepOver({"shortName", "fullName", "recordReference"});
  in.In("children").Children("treeRecord", m_children);
  in.Child("parentRecordHistoryIdentity", m_parentRecordHistoryIdentity);
  in.Attribute("color", m_color);
  in.Attribute("type", m_type);
}

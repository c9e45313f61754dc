#include "lumo/types/RecordLinkGroupReference.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

RecordLinkGroupReference::RecordLinkGroupReference(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  lumo::NodeReader identity = in.In("recordLinkGroupIdentity");
  identity.Text(m_recordLinkGroupIdentity);
  identity.Attribute("recordLinkGroupType", m_recordLinkGroupType,
                     RecordLinkGroupTypes::RecordLinkGroupType_FromString);
  lumo::NodeReader name = in.In("name");
  name.Child("table", m_partialTableReference);
  lumo::NodeReader groupName = name.In("recordLinkGroupName");
  groupName.Text(m_name);
  groupName.Attribute("isStandard", m_standard);
}

void RecordLinkGroupReference::CreateXMLNode(XmlNode<char>* node) const {
  LumoEntityReference::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  if (m_recordLinkGroupIdentity != 0) {  // an identity makes the name superfluous
    lumo::NodeWriter identity = out.Child("zbt:recordLinkGroupIdentity", m_recordLinkGroupIdentity);
    identity.Attribute("zbt:recordLinkGroupType", GetRecordLinkGroupType());
    return;
  }
  lumo::NodeWriter name = out.Into("zbt:name");
  if (!m_standard) name.Child("zbt:table", m_partialTableReference);
  lumo::NodeWriter groupName = name.Child("zbt:recordLinkGroupName", m_name);
  groupName.Attribute("zbt:isStandard", m_standard);
}

#include "lumo/types/RecordReference.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

RecordReference::RecordReference(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.In("identity").Child("recordHistoryIdentity", m_identity);
  in.Child("recordGUID", m_recordGUID);
  in.Child("recordHistoryGUID", m_historyGUID);
}

void RecordReference::CreateXMLNode(XmlNode<char>* node) const {
  LumoEntityReference::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  if (m_identity != 0) out.Into("zbt:identity").Child("zbt:recordHistoryIdentity", m_identity);
  out.ChildIfSet("zbt:recordGUID", m_recordGUID);
  out.ChildIfSet("zbt:recordHistoryGUID", m_historyGUID);
}

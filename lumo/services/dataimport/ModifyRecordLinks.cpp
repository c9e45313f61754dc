#include "lumo/services/dataimport/ModifyRecordLinks.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void ModifyRecordLinksRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.ChildOrEmpty("dat:recordLinkGroup", m_recordLinkGroup);
  out.Child("dat:importErrorMode", GetImportErrorMode());
  out.Child("dat:recordLinkCheckMode", GetRecordLinkCheckMode());
  out.ChildOrEmpty("dat:recordLinkModifications", m_modifications);
}

ModifyRecordLinksResponse::ModifyRecordLinksResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  m_recordLinkChanges = RecordLinkChanges::CreateOne(node);
}

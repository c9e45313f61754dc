#include "lumo/services/browse/GetRecordVersions.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetRecordVersionsRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("brow:versions", m_versionPolicy, VersionPolicies::VersionPolicy_ToString);
  out.Into("zbt:recordReferences").Children("zbt:record", m_recordReferences);
}

GetRecordVersionsResponse::GetRecordVersionsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("recordVersionStates").Children("recordVersionState", m_recordVersionStates);
}

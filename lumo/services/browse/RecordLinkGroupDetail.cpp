#include "lumo/services/browse/RecordLinkGroupDetail.h"

#include "lumo/xml/NodeReader.h"

RecordLinkGroupDetail::RecordLinkGroupDetail(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("linkGroupType", m_linkGroupType);
  in.Child("recordLinkGroup", m_recordLinkGroup);
  in.Child("reverseRecordLinkGroup", m_reverseRecordLinkGroup);
  in.Child("reverseName", m_reverseName);
  in.Child("from", m_fromTable);
  in.Child("to", m_toTable);
  in.Child("name", m_name);
  in.In("standardNames").Children("standardName", m_standardNames);
}

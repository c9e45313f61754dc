#include "lumo/services/dataimport/RecordLinkChanges.h"

#include "lumo/xml/NodeReader.h"

NamedTargettedSourceRecord::NamedTargettedSourceRecord(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("record", m_record);
  in.In("targetRecords").Children("targetRecord", m_targetRecords);
}

RecordLinkChanges::RecordLinkChanges(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("linked").Children("sourceRecord", m_linked);
  in.In("unlinked").Children("sourceRecord", m_unlinked);
}

#include "lumo/services/browse/SourceRecord.h"

#include "lumo/xml/NodeReader.h"

SourceRecord::SourceRecord(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("record", m_record);
  in.In("recordLinkGroups").ForEachChild([this](XmlNode<char> const& group) {
    AddRecordLinkGroup(RecordLinkGroup::CreateOne(&group));  // whatever the element is called
  });
}

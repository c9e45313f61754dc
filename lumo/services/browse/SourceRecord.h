#pragma once

#include <vector>

#include "lumo/types/RecordLinkGroup.h"
#include "lumo/types/RecordReference.h"
#include "lumo/xml/FromXml.h"

/// A record and the records to which it is linked, group by group.
class LUMO_API SourceRecord : public lumo::FromXml<SourceRecord> {
 public:
  SourceRecord() = default;
  explicit SourceRecord(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<RecordReference> GetRecord() const { return m_record; }
  void SetRecord(SmartPtr<RecordReference> const& record) { m_record = record; }
  std::vector<SmartPtr<RecordLinkGroup>>& AccessRecordLinkGroups() { return m_recordLinkGroups; }
  std::vector<SmartPtr<RecordLinkGroup>> const& AccessRecordLinkGroups() const {
    return m_recordLinkGroups;
  }
  void AddRecordLinkGroup(SmartPtr<RecordLinkGroup> const& group) {
    m_recordLinkGroups.push_back(group);
  }

 private:
  SmartPtr<RecordReference> m_record;
  std::vector<SmartPtr<RecordLinkGroup>> m_recordLinkGroups;
};

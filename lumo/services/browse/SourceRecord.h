#pragma once

#include "lumo/types/RecordLinkGroup.h"
#include "lumo/types/RecordReference.h"
#include "lumo/types/WithRecordLinkGroups.h"
#include "lumo/xml/FromXml.h"

/// A record and the records to which it is linked, group by group.
class LUMO_API SourceRecord
    : public lumo::WithRecordLinkGroups<lumo::FromXml<SourceRecord>, RecordLinkGroup> {
 public:
  SourceRecord() = default;
  explicit SourceRecord(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<RecordReference> GetRecord() const { return m_record; }
  void SetRecord(SmartPtr<RecordReference> const& record) { m_record = record; }

 private:
  SmartPtr<RecordReference> m_record;
};

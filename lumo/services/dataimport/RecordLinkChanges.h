#pragma once

#include <vector>

#include "lumo/types/NamedRecord.h"
#include "lumo/xml/FromXml.h"

/// A record and those to which a call linked it, or from which it parted it.
class LUMO_API NamedTargettedSourceRecord : public lumo::FromXml<NamedTargettedSourceRecord> {
 public:
  NamedTargettedSourceRecord() = default;
  explicit NamedTargettedSourceRecord(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<NamedRecord> GetRecord() const { return m_record; }
  void SetRecord(SmartPtr<NamedRecord> const& record) { m_record = record; }
  std::vector<SmartPtr<NamedRecord>>& AccessTargetRecords() { return m_targetRecords; }
  std::vector<SmartPtr<NamedRecord>> const& AccessTargetRecords() const { return m_targetRecords; }
  void AddTargetRecords(SmartPtr<NamedRecord> const& record) { m_targetRecords.push_back(record); }

 private:
  SmartPtr<NamedRecord> m_record;
  std::vector<SmartPtr<NamedRecord>> m_targetRecords;
};

/// What a call changed.
class LUMO_API RecordLinkChanges : public lumo::FromXml<RecordLinkChanges> {
 public:
  RecordLinkChanges() = default;
  explicit RecordLinkChanges(XmlNode<char> const* node);

  std::vector<SmartPtr<NamedTargettedSourceRecord>>& AccessLinked() { return m_linked; }
  std::vector<SmartPtr<NamedTargettedSourceRecord>> const& AccessLinked() const { return m_linked; }
  void AddLinked(SmartPtr<NamedTargettedSourceRecord> const& source) { m_linked.push_back(source); }
  std::vector<SmartPtr<NamedTargettedSourceRecord>>& AccessUnlinked() { return m_unlinked; }
  std::vector<SmartPtr<NamedTargettedSourceRecord>> const& AccessUnlinked() const {
    return m_unlinked;
  }
  void AddUnlinked(SmartPtr<NamedTargettedSourceRecord> const& source) {
    m_unlinked.push_back(source);
  }

 private:
  std::vector<SmartPtr<NamedTargettedSourceRecord>> m_linked;
  std::vector<SmartPtr<NamedTargettedSourceRecord>> m_unlinked;
};

#pragma once

#include <string>
#include <vector>

#include "lumo/platform/core/Counted.h"
#include "lumo/types/RecordReference.h"
#include "lumo/xml/Xml.h"

/// One end of a link.
class LUMO_API LinkPoint : public lumo::Counted<LinkPoint> {
 public:
  /// Nothing is written when null.
  SmartPtr<RecordReference> GetRecord() const { return m_record; }
  void SetRecord(SmartPtr<RecordReference> const& record) { m_record = record; }

  /// Writes the record straight into the element.
  virtual void CreateXMLNode(XmlNode<char>* node) const;

 private:
  SmartPtr<RecordReference> m_record;
};

/// A record and those from which it is parted.
class LUMO_API TargettedSourceRecord : public lumo::Counted<TargettedSourceRecord, LinkPoint> {
 public:
  std::vector<SmartPtr<RecordReference>>& AccessTargets() { return m_targets; }
  std::vector<SmartPtr<RecordReference>> const& AccessTargets() const { return m_targets; }
  void AddRecord(SmartPtr<RecordReference> const& target) { m_targets.push_back(target); }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<RecordReference>> m_targets;
};

/// A record to which another one is linked, with notes for both directions.
class LUMO_API NotatedTargetRecord : public lumo::Counted<NotatedTargetRecord, LinkPoint> {
 public:
  std::string const& GetNotes() const { return m_notes; }
  void SetNotes(std::string const& notes) { m_notes = notes; }
  std::string const& GetReverseNotes() const { return m_reverseNotes; }
  void SetReverseNotes(std::string const& reverseNotes) { m_reverseNotes = reverseNotes; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_notes;
  std::string m_reverseNotes;
};

/// A record and those to which it is linked.
class LUMO_API NotatedTargettedSourceRecord
    : public lumo::Counted<NotatedTargettedSourceRecord, LinkPoint> {
 public:
  std::vector<SmartPtr<NotatedTargetRecord>>& AccessTargets() { return m_targets; }
  std::vector<SmartPtr<NotatedTargetRecord>> const& AccessTargets() const { return m_targets; }
  void AddRecord(SmartPtr<NotatedTargetRecord> const& target) { m_targets.push_back(target); }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<NotatedTargetRecord>> m_targets;
};

#pragma once

#include <string>
#include <vector>

#include "lumo/platform/core/Counted.h"
#include "lumo/types/RecordReference.h"
#include "lumo/xml/NodeWriter.h"

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

namespace lumo {

/// Base of the records that name those at the other ends of their links.
template <class Target>
class LUMO_API TargettedRecord : public LinkPoint {
 public:
  std::vector<SmartPtr<Target>>& AccessTargets() { return m_targets; }
  std::vector<SmartPtr<Target>> const& AccessTargets() const { return m_targets; }
  void AddRecord(SmartPtr<Target> const& target) { m_targets.push_back(target); }

  void CreateXMLNode(XmlNode<char>* node) const override {
    NodeWriter out(node);
    LinkPoint::CreateXMLNode(out.Into("dat:record").Node());
    out.Into("dat:targetRecords").Children("dat:targetRecord", m_targets);
  }

 private:
  std::vector<SmartPtr<Target>> m_targets;
};

}  // namespace lumo

/// A record and those from which it is parted.
class LUMO_API TargettedSourceRecord
    : public lumo::Counted<TargettedSourceRecord, lumo::TargettedRecord<RecordReference>> {};

/// A record to which another one is linked, with notes for both directions.
class LUMO_API NotatedTargetRecord : public lumo::Counted<NotatedTargetRecord, LinkPoint> {
 public:
  /// Of the link, as the source record shows it.
  std::string const& GetNotes() const { return m_notes; }
  void SetNotes(std::string const& notes) { m_notes = notes; }
  /// Of the link, as the target record shows it.
  std::string const& GetReverseNotes() const { return m_reverseNotes; }
  void SetReverseNotes(std::string const& reverseNotes) { m_reverseNotes = reverseNotes; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_notes;
  std::string m_reverseNotes;
};

/// A record and those to which it is linked.
class LUMO_API NotatedTargettedSourceRecord
    : public lumo::Counted<NotatedTargettedSourceRecord,
                           lumo::TargettedRecord<NotatedTargetRecord>> {};

#pragma once

#include <string>
#include <vector>

#include "lumo/services/dataimport/LinkPoint.h"

/// A change of links; the link group and what to do about errors stand in the request.
class LUMO_API RecordLinkModification : public SmartPtrTarget_ts {
 public:
  virtual void CreateXMLNode(XmlNode<char>* node) const = 0;
  /// Name of the change's element, without a prefix.
  virtual std::string GetNodeName() const = 0;
};

/// Base of the changes that are the same for all their source records.
class LUMO_API RecordLinkModificationWithSimpleSourceRecords : public RecordLinkModification {
 public:
  std::vector<SmartPtr<RecordReference>>& AccessSourceRecords() { return m_sourceRecords; }
  std::vector<SmartPtr<RecordReference>> const& AccessSourceRecords() const {
    return m_sourceRecords;
  }
  void AddSourceRecord(SmartPtr<RecordReference> const& record) {
    m_sourceRecords.push_back(record);
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<RecordReference>> m_sourceRecords;
};

/// Removes every link of the source records.
class LUMO_API UnlinkAllRecords
    : public lumo::Counted<UnlinkAllRecords, RecordLinkModificationWithSimpleSourceRecords> {
 public:
  std::string GetNodeName() const override { return "unlinkAllRecords"; }
};

/// Links each source record to each target record.
class LUMO_API LinkAllCombinations
    : public lumo::Counted<LinkAllCombinations, RecordLinkModificationWithSimpleSourceRecords> {
 public:
  std::string GetNodeName() const override { return "linkAllCombinations"; }

  std::vector<SmartPtr<RecordReference>>& AccessTargetRecords() { return m_targetRecords; }
  std::vector<SmartPtr<RecordReference>> const& AccessTargetRecords() const {
    return m_targetRecords;
  }
  void AddTargetRecord(SmartPtr<RecordReference> const& record) {
    m_targetRecords.push_back(record);
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<RecordReference>> m_targetRecords;
};

/// Removes single links.
class LUMO_API UnlinkRecords : public lumo::Counted<UnlinkRecords, RecordLinkModification> {
 public:
  std::string GetNodeName() const override { return "unlinkRecords"; }

  std::vector<SmartPtr<TargettedSourceRecord>>& AccessSources() { return m_sources; }
  std::vector<SmartPtr<TargettedSourceRecord>> const& AccessSources() const { return m_sources; }
  void AddSourceRecord(SmartPtr<TargettedSourceRecord> const& source) {
    m_sources.push_back(source);
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<TargettedSourceRecord>> m_sources;
};

/// Adds single links.
class LUMO_API LinkRecords : public lumo::Counted<LinkRecords, RecordLinkModification> {
 public:
  std::string GetNodeName() const override { return "linkRecords"; }

  std::vector<SmartPtr<NotatedTargettedSourceRecord>>& AccessSources() { return m_sources; }
  std::vector<SmartPtr<NotatedTargettedSourceRecord>> const& AccessSources() const {
    return m_sources;
  }
  void AddSourceRecord(SmartPtr<NotatedTargettedSourceRecord> const& source) {
    m_sources.push_back(source);
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<NotatedTargettedSourceRecord>> m_sources;
};

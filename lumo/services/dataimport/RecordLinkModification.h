#pragma once

#include <string>
#include <vector>

#include "lumo/services/dataimport/LinkPoint.h"
#include "lumo/xml/NodeWriter.h"

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

namespace lumo {

/// Base of the changes that name the targets of each source record.
template <class Source>
class LUMO_API TargettedLinkModification : public RecordLinkModification {
 public:
  std::vector<SmartPtr<Source>>& AccessSources() { return m_sources; }
  std::vector<SmartPtr<Source>> const& AccessSources() const { return m_sources; }
  void AddSourceRecord(SmartPtr<Source> const& source) { m_sources.push_back(source); }

  void CreateXMLNode(XmlNode<char>* node) const override {
    NodeWriter(node).Into("dat:sourceRecords").Children("dat:sourceRecord", m_sources);
  }

 private:
  std::vector<SmartPtr<Source>> m_sources;
};

}  // namespace lumo

/// Removes single links.
class LUMO_API UnlinkRecords
    : public lumo::Counted<UnlinkRecords, lumo::TargettedLinkModification<TargettedSourceRecord>> {
 public:
  std::string GetNodeName() const override { return "unlinkRecords"; }
};

/// Adds single links.
class LUMO_API LinkRecords
    : public lumo::Counted<LinkRecords,
                           lumo::TargettedLinkModification<NotatedTargettedSourceRecord>> {
 public:
  std::string GetNodeName() const override { return "linkRecords"; }
};

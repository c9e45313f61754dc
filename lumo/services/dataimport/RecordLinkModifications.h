#pragma once

#include <vector>

#include "lumo/platform/core/Counted.h"
#include "lumo/services/dataimport/RecordLinkModification.h"

/// Changes of links. They reach the server grouped by kind, in the order of the lists here.
class LUMO_API RecordLinkModifications : public lumo::Counted<RecordLinkModifications> {
 public:
  std::vector<SmartPtr<UnlinkAllRecords>>& AccessUnlinkAllRecords() { return m_unlinkAllRecords; }
  std::vector<SmartPtr<UnlinkAllRecords>> const& AccessUnlinkAllRecords() const {
    return m_unlinkAllRecords;
  }
  void AddUnlinkAllRecords(SmartPtr<UnlinkAllRecords> const& change) {
    m_unlinkAllRecords.push_back(change);
  }
  std::vector<SmartPtr<UnlinkRecords>>& AccessUnlinkRecords() { return m_unlinkRecords; }
  std::vector<SmartPtr<UnlinkRecords>> const& AccessUnlinkRecords() const {
    return m_unlinkRecords;
  }
  void AddUnlinkRecords(SmartPtr<UnlinkRecords> const& change) {
    m_unlinkRecords.push_back(change);
  }
  std::vector<SmartPtr<LinkRecords>>& AccessLinkRecords() { return m_linkRecords; }
  std::vector<SmartPtr<LinkRecords>> const& AccessLinkRecords() const { return m_linkRecords; }
  void AddLinkRecords(SmartPtr<LinkRecords> const& change) { m_linkRecords.push_back(change); }
  std::vector<SmartPtr<LinkAllCombinations>>& AccessLinkAllCombinations() {
    return m_linkAllCombinations;
  }
  std::vector<SmartPtr<LinkAllCombinations>> const& AccessLinkAllCombinations() const {
    return m_linkAllCombinations;
  }
  void AddLinkAllCombinations(SmartPtr<LinkAllCombinations> const& change) {
    m_linkAllCombinations.push_back(change);
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::vector<SmartPtr<UnlinkAllRecords>> m_unlinkAllRecords;
  std::vector<SmartPtr<UnlinkRecords>> m_unlinkRecords;
  std::vector<SmartPtr<LinkRecords>> m_linkRecords;
  std::vector<SmartPtr<LinkAllCombinations>> m_linkAllCombinations;
};

#pragma once

#include <string>
#include <vector>

#include "lumo/types/RecordLinkGroup.h"
#include "lumo/values/AttributeTypes.h"
#include "lumo/values/IDataValue.h"

/// The records to which a record is linked, by link group. It is only read, nothing is sent, and no
/// factory builds it.
class LUMO_API LinkedRecordsDataType : public lumo::FromXml<LinkedRecordsDataType, IDataValue> {
 public:
  LinkedRecordsDataType() = default;
  explicit LinkedRecordsDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "LinkedRecordsDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::LINK_TYPE_STRING; }

  std::vector<SmartPtr<RecordLinkGroup>>& AccessRecordLinkGroups() { return m_recordLinkGroups; }
  std::vector<SmartPtr<RecordLinkGroup>> const& AccessRecordLinkGroups() const {
    return m_recordLinkGroups;
  }
  void AddRecordLinkGroup(SmartPtr<RecordLinkGroup> const& group) {
    m_recordLinkGroups.push_back(group);
  }

  void CreateXMLNode(XmlNode<char>* /*node*/) const override {}

 private:
  std::vector<SmartPtr<RecordLinkGroup>> m_recordLinkGroups;
};

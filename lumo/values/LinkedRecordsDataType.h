#pragma once

#include <string>

#include "lumo/types/RecordLinkGroup.h"
#include "lumo/types/WithRecordLinkGroups.h"
#include "lumo/values/AttributeTypes.h"
#include "lumo/values/IDataValue.h"

/// The records to which a record is linked, by link group. It is only read, nothing is sent, and no
/// factory builds it.
class LUMO_API LinkedRecordsDataType
    : public lumo::WithRecordLinkGroups<lumo::FromXml<LinkedRecordsDataType, IDataValue>,
                                        RecordLinkGroup> {
 public:
  LinkedRecordsDataType() = default;
  explicit LinkedRecordsDataType(XmlNode<char> const* node);
  std::string GetNodeName() const override { return "LinkedRecordsDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::LINK_TYPE_STRING; }

  void CreateXMLNode(XmlNode<char>* /*node*/) const override {}
};

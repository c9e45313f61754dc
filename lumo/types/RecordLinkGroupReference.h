#pragma once

#include <string>

#include "lumo/types/RecordLinkGroupTypes.h"
#include "lumo/types/TableQualifiedReference.h"

/// A group of links between records, by identity or by name. A group with an identity is sent
/// without its name, and a standard name without its table.
class LUMO_API RecordLinkGroupReference
    : public lumo::FromXml<RecordLinkGroupReference, TableQualifiedReference> {
 public:
  RecordLinkGroupReference() = default;
  explicit RecordLinkGroupReference(XmlNode<char> const* node);

  /// Identity of the group; 0 means not set.
  int GetRecordLinkGroupIdentity() const { return m_recordLinkGroupIdentity; }
  void SetRecordLinkGroupIdentity(int identity) { m_recordLinkGroupIdentity = identity; }
  /// Text form of the group's type; "Unknown" by default. Sent along with the identity only.
  std::string GetRecordLinkGroupType() const {
    return RecordLinkGroupTypes::RecordLinkGroupType_ToString(m_recordLinkGroupType);
  }
  void SetRecordLinkGroupType(std::string const& type) {
    m_recordLinkGroupType = RecordLinkGroupTypes::RecordLinkGroupType_FromString(type);
  }
  /// Whether the name is a standard name rather than the table's own.
  bool GetStandard() const { return m_standard; }
  void SetStandard(bool const& standard) { m_standard = standard; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  int m_recordLinkGroupIdentity = 0;
  RecordLinkGroupTypes::eRecordLinkGroupType m_recordLinkGroupType = RecordLinkGroupTypes::Unknown;
  bool m_standard = false;
};

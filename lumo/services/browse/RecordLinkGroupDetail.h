#pragma once

#include <string>
#include <vector>

#include "lumo/types/RecordLinkGroupReference.h"
#include "lumo/types/TableReference.h"
#include "lumo/xml/FromXml.h"

/// Definition of a record link group.
class LUMO_API RecordLinkGroupDetail : public lumo::FromXml<RecordLinkGroupDetail> {
 public:
  RecordLinkGroupDetail() = default;
  explicit RecordLinkGroupDetail(XmlNode<char> const* node);

  /// Kind of the group as the server says it, such as "static".
  std::string const& GetLinkGroupType() const { return m_linkGroupType; }
  void SetLinkGroupType(std::string const& linkGroupType) { m_linkGroupType = linkGroupType; }
  /// Null when the reply named none.
  SmartPtr<RecordLinkGroupReference> GetRecordLinkGroup() const { return m_recordLinkGroup; }
  void SetRecordLinkGroup(SmartPtr<RecordLinkGroupReference> const& recordLinkGroup) {
    m_recordLinkGroup = recordLinkGroup;
  }
  /// The group as seen from the other side; null when the reply named none.
  SmartPtr<RecordLinkGroupReference> GetReverseRecordLinkGroup() const {
    return m_reverseRecordLinkGroup;
  }
  void SetReverseRecordLinkGroup(SmartPtr<RecordLinkGroupReference> const& reverseRecordLinkGroup) {
    m_reverseRecordLinkGroup = reverseRecordLinkGroup;
  }
  /// Name of the group on the other side.
  std::string const& GetReverseName() const { return m_reverseName; }
  void SetReverseName(std::string const& reverseName) { m_reverseName = reverseName; }
  /// Null when the reply named none, as the other table.
  SmartPtr<TableReference> GetFromTable() const { return m_fromTable; }
  void SetFromTable(SmartPtr<TableReference> const& fromTable) { m_fromTable = fromTable; }
  /// The table that the links lead to.
  SmartPtr<TableReference> GetToTable() const { return m_toTable; }
  void SetToTable(SmartPtr<TableReference> const& toTable) { m_toTable = toTable; }
  /// Name of the group.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// Standard names by which the group is known beside its own.
  std::vector<std::string>& AccessStandardNames() { return m_standardNames; }
  std::vector<std::string> const& AccessStandardNames() const { return m_standardNames; }
  void AddStandardName(std::string const& name) { m_standardNames.push_back(name); }

 private:
  std::string m_linkGroupType;
  SmartPtr<RecordLinkGroupReference> m_recordLinkGroup;
  SmartPtr<RecordLinkGroupReference> m_reverseRecordLinkGroup;
  std::string m_reverseName;
  SmartPtr<TableReference> m_fromTable;
  SmartPtr<TableReference> m_toTable;
  std::string m_name;
  std::vector<std::string> m_standardNames;
};

#pragma once

#include <string>
#include <vector>

#include "lumo/types/NamedRecord.h"

/// A record in the tree of its table.
class LUMO_API TreeRecord : public lumo::FromXml<TreeRecord, NamedRecord> {
 public:
  TreeRecord() = default;
  explicit TreeRecord(XmlNode<char> const* node);

  /// The records below, as deep as the call went.
  std::vector<SmartPtr<TreeRecord>>& AccessChildren() { return m_children; }
  std::vector<SmartPtr<TreeRecord>> const& AccessChildren() const { return m_children; }
  void AddChild(SmartPtr<TreeRecord> const& child) { m_children.push_back(child); }
  /// History identity of the record above; 0 for none.
  int GetParentRecordHistoryIdentity() const { return m_parentRecordHistoryIdentity; }
  void SetParentRecordHistoryIdentity(int parentRecordHistoryIdentity) {
    m_parentRecordHistoryIdentity = parentRecordHistoryIdentity;
  }
  /// Left to the caller: no reply sets it.
  bool GetHasChildren() const { return m_hasChildren; }
  void SetHasChildren(bool hasChildren) { m_hasChildren = hasChildren; }
  /// Name of the color in which the tree shows the record.
  std::string const& GetColor() const { return m_color; }
  void SetColor(std::string const& color) { m_color = color; }
  /// What the record is, as the server says it.
  std::string const& GetType() const { return m_type; }
  void SetType(std::string const& type) { m_type = type; }

 private:
  std::vector<SmartPtr<TreeRecord>> m_children;
  int m_parentRecordHistoryIdentity = 0;
  bool m_hasChildren = false;
  std::string m_color = "Black";
  std::string m_type;
};

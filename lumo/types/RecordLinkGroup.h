#pragma once

#include <string>
#include <vector>

#include "lumo/types/RecordReference.h"
#include "lumo/types/TableFilters.h"

/// The records to which one record is linked through one link group.
class LUMO_API RecordLinkGroup : public lumo::FromXml<RecordLinkGroup> {
 public:
  RecordLinkGroup() = default;
  explicit RecordLinkGroup(XmlNode<char> const* node);

  /// Name of the group.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  std::vector<SmartPtr<RecordReference>>& AccessLinkedRecords() { return m_linkedRecords; }
  std::vector<SmartPtr<RecordReference>> const& AccessLinkedRecords() const {
    return m_linkedRecords;
  }
  void AddLinkedRecord(SmartPtr<RecordReference> const& record) {
    m_linkedRecords.push_back(record);
  }
  /// Classes of the table that the links lead to; an unknown word reads as `NoFilter`.
  std::vector<TableFilters::eTablesFilter>& AccessTableFilters() { return m_tableFilters; }
  std::vector<TableFilters::eTablesFilter> const& AccessTableFilters() const {
    return m_tableFilters;
  }
  void AddTableFilter(TableFilters::eTablesFilter filter) { m_tableFilters.push_back(filter); }
  /// Standard names by which the group is known beside its own.
  std::vector<std::string>& AccessStandardNames() { return m_standardNames; }
  std::vector<std::string> const& AccessStandardNames() const { return m_standardNames; }
  void AddStandardName(std::string const& name) { m_standardNames.push_back(name); }

 private:
  std::string m_name;
  std::vector<SmartPtr<RecordReference>> m_linkedRecords;
  std::vector<TableFilters::eTablesFilter> m_tableFilters;
  std::vector<std::string> m_standardNames;
};

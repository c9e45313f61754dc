#pragma once

#include <vector>

#include "lumo/platform/core/SmartPtr.h"

namespace lumo {

/// Adds a list of link groups to a class; `Group` is `RecordLinkGroup`, which has the linked
/// records, or `RecordLinkGroupReference`.
template <class Base, class Group>
class WithRecordLinkGroups : public Base {
 public:
  std::vector<SmartPtr<Group>>& AccessRecordLinkGroups() { return m_recordLinkGroups; }
  std::vector<SmartPtr<Group>> const& AccessRecordLinkGroups() const { return m_recordLinkGroups; }
  void AddRecordLinkGroup(SmartPtr<Group> const& group) { m_recordLinkGroups.push_back(group); }

 protected:
  std::vector<SmartPtr<Group>> m_recordLinkGroups;
};

}  // namespace lumo

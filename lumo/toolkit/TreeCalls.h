#pragma once

#include <string>
#include <vector>

#include "lumo/toolkit/Tree.h"

/// The calls by which a tree is read, and what their replies hold. Not installed.
namespace lumo {

RecordId IdOf(NamedRecord const& record, std::string const& dbKey);
RecordHead HeadOf(NamedRecord const& record, std::string const& dbKey);
bool IsFolder(TreeRecord const& record);

/// What the server knows of these records; some servers refuse the call when one is not there.
std::vector<SmartPtr<TreeRecord>> TreeRecordsOf(
    Connection& connection, std::vector<SmartPtr<RecordReference>> const& records);
/// What lies directly in a folder; all of it for a null filter.
std::vector<SmartPtr<TreeRecord>> ChildrenOf(Connection& connection, RecordId const& parent,
                                             SmartPtr<RecordFilter> const& filter);

}  // namespace lumo

#pragma once

#include <optional>
#include <vector>

#include "References.h"

namespace sandbox {

/// The current records at the other end of a record's links.
std::vector<Record> LinkedRecords(Store& store, LinkGroup const& group, Record const& record);
/// The link groups of a record's table, those that lead to it reversed.
std::vector<LinkGroup> GroupsOf(Store& store, Record const& record);
/// Appends an element per group with the linked records that pass the filter.
void WriteLinks(Store& store, pugi::xml_node parent, Record const& record,
                std::vector<LinkGroup> const& groups, std::optional<std::vector<int>> const& filter,
                bool withGuids);

}  // namespace sandbox

#pragma once

#include <string>
#include <vector>

#include "sandbox/model/Records.h"
#include "sandbox/model/Subsets.h"

namespace sandbox {

struct LinkGroup {
  int id = 0;
  int fromTable = 0;
  int toTable = 0;
  std::string name;
  std::string reverseName;
  std::string kind;
  bool isReverse = false;  ///< followed from the target's side
};

/// Rows by a condition on the columns of link group g and database d.
std::vector<LinkGroup> LinkGroups(Store& store, std::string const& condition,
                                  std::vector<std::string> const& values);
LinkGroup ReadLinkGroup(Store& store, pugi::xml_node node);
/// Appends the children by which a reply names a link group, seen from the other side if reversed.
void WriteLinkGroup(Store& store, pugi::xml_node node, LinkGroup const& group, bool isReverse);

/// The current records at the other end of a record's links.
std::vector<Record> LinkedRecords(Store& store, LinkGroup const& group, Record const& record);
/// The link groups of a record's table, those that lead to it reversed.
std::vector<LinkGroup> GroupsOf(Store& store, Record const& record);

/// Appends the standard names of the group.
void WriteStandardNames(Store& store, pugi::xml_node node, LinkGroup const& group);
/// Appends an element per group with the linked records that pass the filter.
void WriteLinks(Store& store, pugi::xml_node parent, Record const& record,
                std::vector<LinkGroup> const& groups, Filter const& filter, bool withGuids);

}  // namespace sandbox

#pragma once

#include <vector>

#include "sandbox/model/Records.h"
#include "sandbox/model/Subsets.h"

namespace sandbox {

/// How a tree is listed.
struct Listing {
  Filter filter;
  bool withGuids = false;
};

std::vector<Record> ChildrenOf(Store& store, Record const& parent, Filter const& filter);
/// Fills the element of a record, and of those below it as deep as asked.
void WriteTreeRecord(Store& store, pugi::xml_node node, Record const& record, int depth,
                     Listing const& listing);

}  // namespace sandbox

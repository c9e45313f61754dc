#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sandbox/model/Records.h"
#include "sandbox/model/Tables.h"

namespace sandbox {

struct Subset {
  int id = 0;
  std::string name;
  int tableId = 0;
};

/// The subset that a reference names; a name alone is looked for in `context`, when it is set.
Subset ReadSubset(Store& store, pugi::xml_node node, Table const* context = nullptr);

/// Identities of the subsets to which a request restricts; nothing for no restriction.
using Filter = std::optional<std::vector<int>>;
Filter ReadFilter(Store& store, pugi::xml_node node);
/// Whether the record is in one of the subsets, or there is no restriction. Folders always pass.
bool Passes(Store& store, Record const& record, Filter const& subsets);

}  // namespace sandbox

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lumo/toolkit/Condition.h"
#include "lumo/toolkit/Tree.h"

/// What of a condition the server judges, and what is judged here. Not installed.
namespace lumo {

/// One criteria search, and what is left to judge of each record that it finds.
struct ServerSearch {
  std::vector<SmartPtr<RecordSearchCriterion>> criteria = {};  ///< empty: all records of the table
  std::optional<Condition> rest = {};
};

/// Searches whose results together are the records that fulfil the condition: one for each side of
/// an "or", since criteria of a search must all be met. A condition with too many sides is judged
/// here as a whole.
LUMO_API std::vector<ServerSearch> PlanOf(Condition const& condition, TableInfo const& table);

/// Reads the values of the attributes with these names for a record, in their order, and hands them
/// on with the record's place in the list.
using ValueReader = std::function<void(
    std::vector<RecordHead> const& records, std::vector<std::string> const& attributes,
    std::function<void(std::size_t record, std::vector<Value> const& values)> const& take)>;

/// The records of a table, of a subset unless its name is empty, that fulfil the condition; each
/// once. `read` is called for those that the server alone cannot judge.
LUMO_API std::vector<RecordHead> FindWhere(Connection& connection, TableInfo const& table,
                                           Condition const& condition, std::string const& subset,
                                           ValueReader const& read);

}  // namespace lumo

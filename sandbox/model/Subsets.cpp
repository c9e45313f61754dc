#include "sandbox/model/Subsets.h"

#include <algorithm>

#include "sandbox/Fault.h"
#include "sandbox/model/Single.h"

namespace sandbox {

Subset ReadSubset(Store& store, pugi::xml_node node, Table const* context) {
  Checker in(node);
  std::string const dbKey = KnownKey(store, in.Required("zbt:dbKey"));
  std::string condition;
  std::vector<std::string> values = {dbKey};
  std::string what = "subset ";
  if (auto const identity = in.Optional("zbt:subsetIdentity")) {
    values.push_back(Id(IdentityOf(identity)));
    condition = "s.id = ?";
    what += "with the identity " + values.back();
  } else {
    Checker name(in.Required("zbt:name"));
    TableName owner = ReadOwner(name, dbKey);
    if (owner.IsEmpty() && context != nullptr && context->dbKey == dbKey) {
      owner.identity = context->id;
    }
    values.push_back(TextOf(name.Required("zbt:subsetName")));
    name.End();
    condition = "s.name = ?";
    what += "\"" + values.back() + "\"";
    if (!owner.IsEmpty()) {
      condition += " AND s.table_id = " + Id(FindTable(store, owner).id);
      what += " in that table";
    }
  }
  in.End();
  std::vector<Subset> found;
  for (Row const& row : store.Rows(
           "SELECT s.id, s.name, s.table_id FROM subset s JOIN data_table t ON t.id = s.table_id"
           " JOIN database d ON d.id = t.database_id WHERE d.key = ? AND " +
               condition,
           values)) {
    found.push_back({row.Int(0), row.Text(1), row.Int(2)});
  }
  return Single(found, what + " in \"" + dbKey + "\"");
}

Filter ReadFilter(Store& store, pugi::xml_node node) {
  if (!node) return {};
  std::vector<int> ids;
  Checker in(node);
  if (auto const profile = in.Optional("zbt:Profile")) {
    Checker key(profile);
    std::string const name = FilledTextOf(key.Required("zbt:Key"));
    key.End();
    in.End();
    // A profile is the subset of its name, in whichever tables have one.
    for (Row const& row : store.Rows("SELECT id FROM subset WHERE name = ?", {name})) {
      ids.push_back(row.Int(0));
    }
    if (ids.empty()) throw Fault("there is no profile \"" + name + "\"");
    return ids;
  }
  Checker subsets(in.Required("zbt:subsetReferences"));
  in.End();
  do {
    ids.push_back(ReadSubset(store, subsets.Required("zbt:subset")).id);
  } while (subsets.HasMore());
  return ids;
}

bool Passes(Store& store, Record const& record, Filter const& subsets) {
  if (!subsets || record.isFolder) return true;
  return std::any_of(subsets->begin(), subsets->end(), [&](int subset) {
    return !store
                .Rows("SELECT 1 FROM record_subset WHERE record_id = ? AND subset_id = ?",
                      {Id(record.id), Id(subset)})
                .empty();
  });
}

}  // namespace sandbox

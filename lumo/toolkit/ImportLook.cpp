#include "lumo/toolkit/ImportLook.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TreeCalls.h"
#include "lumo/toolkit/ValueBytes.h"

namespace lumo {
namespace {

/// Full names, by the records' identities.
std::map<int, std::string> FullNamesOf(Connection& connection, std::vector<Step> const& steps) {
  std::vector<SmartPtr<RecordReference>> references;
  for (Step const& step : steps) {
    if (!step.fullName.empty()) references.push_back(ReferenceTo(step.record));
  }
  std::map<int, std::string> names;
  if (references.empty()) return names;
  for (auto const& record : TreeRecordsOf(connection, references)) {
    names[record->GetRecordReference()->GetIdentity()] = record->GetLongName();
  }
  return names;
}

}  // namespace

bool HasLinks(Step const& step, std::string const& group) {
  return std::any_of(step.values.begin(), step.values.end(), [&](Step::Content const& value) {
    return ImportFields::IsLinks(value.attribute) && (group.empty() || value.attribute == group);
  });
}

void LookForRecords(Connection& connection, std::vector<Step> const& steps, std::vector<Step>& done,
                    std::vector<Step>& missing) {
  std::map<int, std::multimap<std::string, RecordId>> contents;
  for (Step const& step : steps) {
    auto const [content, isNew] = contents.try_emplace(step.parent.identity);
    if (isNew) {
      for (auto const& child : ChildrenOf(connection, step.parent, nullptr)) {
        if (IsFolder(*child)) continue;
        content->second.emplace(child->GetShortName(), IdOf(*child, step.parent.database));
      }
    }
    auto const [begin, end] = content->second.equal_range(step.name);
    if (begin == end) {
      missing.push_back(step);
      continue;
    }
    if (std::next(begin) != end) {
      throw Error(ErrorCode::Ambiguous, "while the import ran, " +
                                            Quoted(PathBelow(step.folder, step.name)) +
                                            " came to be there several times");
    }
    done.push_back(step);
    done.back().record = begin->second;
  }
}

void LookForChanges(OpenedTable& table, ImportFields& fields, Connection& connection,
                    std::vector<Step> const& steps, std::vector<Step>& done,
                    std::vector<Step>& missing) {
  std::vector<RecordHead> heads;
  std::set<Attribute const*> attributes;
  for (Step const& step : steps) {
    heads.push_back({step.record, step.name, "", step.folder});
    for (Step::Content const& value : step.values) {
      if (ImportFields::IsLinks(value.attribute)) continue;  // later
      attributes.insert(&fields.Find(value.attribute));
    }
  }
  std::vector<bool> hasAll(steps.size(), true);
  Units const& units = table.info.KnownUnits(connection);
  fields.ReadPresent(heads, attributes, connection.Scope().cancel,
                     [&](std::size_t place, Attribute const& attribute, Value const& present) {
                       for (Step::Content const& value : steps[place].values) {
                         if (value.attribute != attribute.name) continue;
                         bool const isThere = MeansTheSame(present, value.after, attribute, units);
                         if (!isThere) hasAll[place] = false;
                       }
                     });
  std::map<int, std::string> const names = FullNamesOf(connection, steps);
  for (std::size_t i = 0; i < steps.size(); ++i) {
    auto const name = names.find(steps[i].record.identity);
    bool const isNamed =
        steps[i].fullName.empty() || (name != names.end() && name->second == steps[i].fullName);
    (hasAll[i] && isNamed ? done : missing).push_back(steps[i]);
  }
}

void LookForFullNames(Connection& connection, std::vector<Step> const& steps,
                      std::vector<Step>& done, std::vector<Step>& missing) {
  std::map<int, std::string> const names = FullNamesOf(connection, steps);
  for (Step const& step : steps) {
    auto const name = names.find(step.record.identity);
    bool const isThere = name != names.end() && name->second == step.fullName;
    (isThere ? done : missing).push_back(step);
  }
}

std::optional<RecordId> FindFolderIn(Connection& connection, RecordId const& parent,
                                     std::string const& name) {
  for (auto const& child : ChildrenOf(connection, parent, nullptr)) {
    if (IsFolder(*child) && child->GetShortName() == name) return IdOf(*child, parent.database);
  }
  return {};
}

}  // namespace lumo

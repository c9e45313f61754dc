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

Looked LookForRecords(OpenedTable& table, ImportFields& fields, Connection& connection,
                      std::vector<Step> const& steps, Depth depth) {
  Looked looked;
  std::vector<Step> found;
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
      looked.missing.push_back(step);
    } else if (std::next(begin) != end) {
      looked.others.push_back({step, {"", "came to be there several times since the run began"}});
    } else {
      found.push_back(step);
      found.back().record = begin->second;
    }
  }
  Looked compared = LookForChanges(table, fields, connection, found, depth);
  looked.done = std::move(compared.done);
  std::string const kWhy = " came to be there since the run began, with other values";
  for (Step const& step : compared.missing) {
    looked.others.push_back({step, {"", IdentityText(step.record) + kWhy}});
  }
  for (auto const& [step, fault] : compared.others) {
    looked.others.push_back({step, {"", IdentityText(step.record) + kWhy}});
  }
  for (auto& [step, fault] : looked.others) step.record = {};  // it is not ours
  return looked;
}

Looked LookForChanges(OpenedTable& table, ImportFields& fields, Connection& connection,
                      std::vector<Step> const& steps, Depth depth) {
  std::vector<RecordHead> heads;
  std::set<Attribute const*> attributes;
  std::vector<std::size_t> lacks(steps.size());
  std::vector<RowFault> faults(steps.size());
  auto const isMeant = [&](Step::Content const& value) {
    return depth == Depth::All || !ImportFields::IsLinks(value.attribute);
  };
  for (std::size_t i = 0; i < steps.size(); ++i) {
    heads.push_back({steps[i].record, steps[i].name, "", steps[i].folder});
    for (Step::Content const& value : steps[i].values) {
      if (!isMeant(value)) continue;
      attributes.insert(&fields.Find(value.attribute));
      ++lacks[i];
    }
  }
  auto const tell = [&](std::size_t place, std::string const& field, std::string const& present) {
    faults[place] = {field, "has been changed since the run began, to " + Quoted(present) +
                                ", and is left alone"};
  };
  Units const& units = table.info.KnownUnits(connection);
  fields.ReadPresent(heads, attributes, connection.Scope().cancel,
                     [&](std::size_t place, Attribute const& attribute, Value const& present) {
                       for (Step::Content const& value : steps[place].values) {
                         if (value.attribute != attribute.name || !isMeant(value)) continue;
                         if (MeansTheSame(present, value.after, attribute, units)) {
                           --lacks[place];
                         } else if (!MeansTheSame(present, value.before, attribute, units)) {
                           tell(place, ImportFields::ShownName(attribute.name),
                                fields.TextOf(present, attribute));
                         }
                       }
                     });
  std::map<int, std::string> const names = FullNamesOf(connection, steps);
  Looked looked;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    Step const& step = steps[i];
    auto const name = names.find(step.record.identity);
    bool const isCreate = step.kind == RowVerdict::Kind::Create;
    bool const needsName = !step.fullName.empty() && (!isCreate || depth == Depth::All);
    if (needsName && (name == names.end() || name->second != step.fullName)) {
      ++lacks[i];
      bool const isOther = name != names.end() && name->second != step.fullNameBefore;
      if (isOther) tell(i, "Full name", name->second);
    }
    if (!faults[i].why.empty()) {
      looked.others.push_back({step, faults[i]});
    } else {
      (lacks[i] == 0 ? looked.done : looked.missing).push_back(step);
    }
  }
  return looked;
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

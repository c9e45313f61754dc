#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/model/LinkGroups.h"
#include "sandbox/model/Records.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/dataimport/ErrorMode.h"

namespace sandbox {
namespace {

/// A change of links: what to do with which pairs.
struct LinkChange {
  bool link = false;
  Record source;
  std::vector<Record> targets;
  std::vector<std::pair<std::string, std::string>> notes;  ///< one per target, of links to make
  bool all = false;                                        ///< unlink from every target
};

std::vector<Record> ReadPlain(Store& store, Checker& in, std::string const& list,
                              std::string const& item) {
  return ReadRecords(store, in.Required(list), item.c_str());
}

/// Reads the sources of single links, with targets that are notated when links are made.
void ReadSources(Store& store, Checker& in, bool link, std::vector<LinkChange>& changes) {
  Checker sources(in.Required("dat:sourceRecords"));
  while (sources.HasMore()) {
    Checker source(sources.Required("dat:sourceRecord"));
    LinkChange change;
    change.link = link;
    change.source = ReadRecord(store, source.Required("dat:record"));
    Checker targets(source.Required("dat:targetRecords"));
    source.End();
    while (targets.HasMore()) {
      pugi::xml_node const target = targets.Required("dat:targetRecord");
      if (!link) {
        change.targets.push_back(ReadRecord(store, target));
        continue;
      }
      Checker notated(target);
      change.targets.push_back(ReadRecord(store, notated.Required("dat:record")));
      std::string const notes = TextOf(notated.Required("dat:notes"));
      change.notes.emplace_back(notes, TextOf(notated.Required("dat:reverseNotes")));
      notated.End();
    }
    changes.push_back(std::move(change));
  }
}

std::vector<LinkChange> ReadChanges(Store& store, Checker& in) {
  std::vector<LinkChange> changes;
  while (auto const node = in.Optional("dat:unlinkAllRecords")) {
    Checker one(node);
    for (Record& source : ReadPlain(store, one, "dat:sourceRecords", "dat:sourceRecord")) {
      changes.push_back({false, std::move(source), {}, {}, true});
    }
    one.End();
  }
  while (auto const node = in.Optional("dat:unlinkRecords")) {
    Checker one(node);
    ReadSources(store, one, false, changes);
    one.End();
  }
  while (auto const node = in.Optional("dat:linkRecords")) {
    Checker one(node);
    ReadSources(store, one, true, changes);
    one.End();
  }
  while (auto const node = in.Optional("dat:linkAllCombinations")) {
    Checker one(node);
    auto const sources = ReadPlain(store, one, "dat:sourceRecords", "dat:sourceRecord");
    auto const targets = ReadPlain(store, one, "dat:targetRecords", "dat:targetRecord");
    one.End();
    for (Record const& source : sources) changes.push_back({true, source, targets, {}, false});
  }
  in.End();
  return changes;
}

/// Makes the change; returns the targets whose links it changed.
std::vector<Record> Apply(Store& store, LinkGroup const& group, LinkChange const& change) {
  int const sourceTable = group.isReverse ? group.toTable : group.fromTable;
  int const targetTable = group.isReverse ? group.fromTable : group.toTable;
  if (change.source.tableId != sourceTable) {
    throw Fault("\"" + change.source.shortName + "\" is in no table of the link group");
  }
  std::vector<Record> const linked = LinkedRecords(store, group, change.source);
  std::vector<Record> changed;
  std::vector<Record> const& targets = change.all ? linked : change.targets;
  for (std::size_t i = 0; i < targets.size(); ++i) {
    Record const& target = targets[i];
    if (target.tableId != targetTable) {
      throw Fault("\"" + target.shortName + "\" is not in the table that the group leads to");
    }
    bool const isLinked = std::any_of(linked.begin(), linked.end(), [&](Record const& other) {
      return other.historyId == target.historyId;
    });
    if (!change.link && !isLinked) throw Fault("\"" + target.shortName + "\" is not linked");
    if (change.link == isLinked) continue;
    std::string from = Id(change.source.historyId);
    std::string to = Id(target.historyId);
    if (group.isReverse) std::swap(from, to);
    if (change.link) {
      auto const notes =
          i < change.notes.size() ? change.notes[i] : std::pair<std::string, std::string>();
      store.Insert("INSERT INTO record_link VALUES (?, ?, ?, ?, ?)",
                   {Id(group.id), from, to, notes.first, notes.second});
    } else {
      store.Insert("DELETE FROM record_link WHERE group_id = ? AND from_id = ? AND to_id = ?",
                   {Id(group.id), from, to});
    }
    changed.push_back(target);
  }
  return changed;
}

}  // namespace

void ModifyRecordLinks(Store& store, Checker& request, pugi::xml_node response) {
  LinkGroup const group = ReadLinkGroup(store, request.Required("dat:recordLinkGroup"));
  bool const isStrict = IsStrict(request.Required("dat:importErrorMode"));
  std::string const checks = TextOf(request.Required("dat:recordLinkCheckMode"));
  if (checks != "CheckOnlyForwardLinks" && checks != "CheckForwardAndReverseLinks") {
    throw Fault("<dat:recordLinkCheckMode> does not know the word \"" + checks + "\"");
  }
  Checker modifications(request.Required("dat:recordLinkModifications"));
  request.End();
  Transaction all(store);
  pugi::xml_node linked = response.append_child("linked");
  pugi::xml_node unlinked = response.append_child("unlinked");
  for (LinkChange const& change : ReadChanges(store, modifications)) {
    try {
      Transaction one(store);
      std::vector<Record> const changed = Apply(store, group, change);
      one.Commit();
      if (changed.empty()) continue;
      pugi::xml_node source = (change.link ? linked : unlinked).append_child("sourceRecord");
      WriteNamedRecord(source.append_child("record"), change.source);
      pugi::xml_node targets = source.append_child("targetRecords");
      for (Record const& target : changed) {
        WriteNamedRecord(targets.append_child("targetRecord"), target);
      }
    } catch (Fault const&) {
      if (isStrict) throw;
    }
  }
  all.Commit();
}

}  // namespace sandbox

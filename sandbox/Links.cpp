#include <string>
#include <vector>

#include "Links.h"
#include "Operations.h"
#include "References.h"
#include "Soap.h"

namespace sandbox {
namespace {

void WriteStandardNames(Store& store, pugi::xml_node node, LinkGroup const& group) {
  pugi::xml_node names = node.append_child("b:standardNames");
  std::string const name =
      store.Only("SELECT standard_name FROM record_link_group WHERE id = ?", {Id(group.id)})
          .Text(0);
  if (!name.empty() && !group.isReverse) AddText(names, "b:standardName", name);
}

void WriteDetail(Store& store, pugi::xml_node node, LinkGroup const& group) {
  Table const from = store.TableOf(group.fromTable);
  Table const to = store.TableOf(group.toTable);
  AddText(node, "b:linkGroupType", group.kind);
  WriteLinkGroup(store, node.append_child("b:recordLinkGroup"), group, group.isReverse);
  WriteLinkGroup(store, node.append_child("b:reverseRecordLinkGroup"), group, !group.isReverse);
  AddText(node, "b:reverseName", group.isReverse ? group.name : group.reverseName);
  WriteTable(node.append_child("b:from"), group.isReverse ? to : from);
  WriteTable(node.append_child("b:to"), group.isReverse ? from : to);
  AddText(node, "b:name", group.isReverse ? group.reverseName : group.name);
  WriteStandardNames(store, node, group);
}

}  // namespace

std::vector<Record> LinkedRecords(Store& store, LinkGroup const& group, Record const& record) {
  std::string const ends = group.isReverse
                               ? "SELECT l.from_id FROM record_link l WHERE l.to_id = ?"
                               : "SELECT l.to_id FROM record_link l WHERE l.from_id = ?";
  return Records(
      store, "r.history_id IN (" + ends + " AND l.group_id = ?) AND r.is_current = 1 ORDER BY r.id",
      {Id(record.historyId), Id(group.id)});
}

std::vector<LinkGroup> GroupsOf(Store& store, Record const& record) {
  std::vector<LinkGroup> groups = LinkGroups(store, "g.from_table_id = ?", {Id(record.tableId)});
  for (LinkGroup& group : LinkGroups(store, "g.to_table_id = ?", {Id(record.tableId)})) {
    group.isReverse = true;
    groups.push_back(std::move(group));
  }
  return groups;
}

void WriteLinks(Store& store, pugi::xml_node parent, Record const& record,
                std::vector<LinkGroup> const& groups, std::optional<std::vector<int>> const& filter,
                bool withGuids) {
  for (LinkGroup const& group : groups) {
    pugi::xml_node node = parent.append_child("b:recordLinkGroup");
    AddText(node, "b:name", group.isReverse ? group.reverseName : group.name);
    pugi::xml_node linked = node.append_child("b:linkedRecords");
    for (Record const& other : LinkedRecords(store, group, record)) {
      if (Passes(store, other, filter)) {
        WriteRecord(linked.append_child("b:record"), other, withGuids);
      }
    }
    pugi::xml_node filters = node.append_child("b:tableFilters");
    int const target = group.isReverse ? group.fromTable : group.toTable;
    for (Row const& row : store.Rows(
             "SELECT word FROM table_filter WHERE table_id = ? ORDER BY word", {Id(target)})) {
      AddText(filters, "b:tableFilter", row.Text(0));
    }
    WriteStandardNames(store, node, group);
  }
}

void GetRecordLinkGroups(Store& store, Checker& request, pugi::xml_node response) {
  std::vector<LinkGroup> groups;
  auto const single = request.Optional("zbt:recordLinkGroups");
  if (single) {
    Checker in(single);
    do {
      groups.push_back(ReadLinkGroup(store, in.Required("zbt:recordLinkGroup")));
    } while (in.HasMore());
  }
  auto const database = request.Optional("brow:database");
  if (database) {
    Checker in(database);
    std::string const key = KnownKey(store, in.Required("brow:dbKey"));
    bool const standardOnly = BooleanOf(in.Required("brow:standardNamesOnly"));
    in.End();
    std::string const condition =
        standardOnly ? "d.key = ? AND g.standard_name <> ''" : "d.key = ?";
    for (LinkGroup& group : LinkGroups(store, condition, {key})) {
      groups.push_back(std::move(group));
    }
  }
  request.End();
  if (!single && !database) {
    throw Fault("<brow:GetRecordLinkGroups> must hold link groups or a database");
  }
  pugi::xml_node details = response.append_child("recordLinkGroupDetails");
  for (LinkGroup const& group : groups) {
    WriteDetail(store, details.append_child("recordLinkGroup"), group);
  }
}

void GetLinkedRecords(Store& store, Checker& request, pugi::xml_node response) {
  std::vector<LinkGroup> groups;
  if (auto const node = request.Optional("zbt:recordLinkGroups")) {
    Checker in(node);
    do {
      groups.push_back(ReadLinkGroup(store, in.Required("zbt:recordLinkGroup")));
    } while (in.HasMore());
  }
  auto const records = ReadRecords(store, request.Required("zbt:recordReferences"));
  int const withGuids = IntegerOf(request.Required("brow:populateGUIDs"));
  if (withGuids != 0 && withGuids != 1) throw Fault("<brow:populateGUIDs> must hold 0 or 1");
  auto const filter = ReadFilter(store, request.Optional("brow:recordFilter"));
  request.End();
  pugi::xml_node sources = response.append_child("sourceRecords");
  for (Record const& record : records) {
    pugi::xml_node source = sources.append_child("sourceRecord");
    WriteRecord(source.append_child("b:record"), record, withGuids == 1);
    pugi::xml_node links = source.append_child("b:recordLinkGroups");
    std::vector<LinkGroup> wanted;
    for (LinkGroup const& group : groups) {
      int const table = group.isReverse ? group.toTable : group.fromTable;
      if (table == record.tableId) wanted.push_back(group);
    }
    WriteLinks(store, links, record, groups.empty() ? GroupsOf(store, record) : wanted, filter,
               withGuids == 1);
  }
}

}  // namespace sandbox

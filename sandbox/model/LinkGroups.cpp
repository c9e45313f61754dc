#include "sandbox/model/LinkGroups.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "sandbox/Fault.h"
#include "sandbox/model/Single.h"
#include "sandbox/model/Tables.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

std::vector<LinkGroup> LinkGroups(Store& store, std::string const& condition,
                                  std::vector<std::string> const& values) {
  std::vector<LinkGroup> groups;
  for (Row const& row :
       store.Rows("SELECT g.id, g.from_table_id, g.to_table_id, g.name, g.reverse_name, g.kind"
                  " FROM record_link_group g JOIN data_table t ON t.id = g.from_table_id"
                  " JOIN database d ON d.id = t.database_id WHERE " +
                      condition + " ORDER BY g.id",
                  values)) {
    groups.push_back(
        {row.Int(0), row.Int(1), row.Int(2), row.Text(3), row.Text(4), row.Text(5), false});
  }
  return groups;
}

LinkGroup ReadLinkGroup(Store& store, pugi::xml_node node) {
  Checker in(node);
  std::string const dbKey = KnownKey(store, in.Required("zbt:dbKey"));
  if (auto const identity =
          in.Optional("zbt:recordLinkGroupIdentity", {"zbt:recordLinkGroupType"})) {
    in.End();
    // The reverse of a group has the same identity, negated.
    int const id = IdentityOf(identity);
    std::vector<LinkGroup> found =
        LinkGroups(store, "d.key = ? AND g.id = ?", {dbKey, Id(std::abs(id))});
    for (LinkGroup& group : found) group.isReverse = id < 0;
    return Single(found, "link group with the identity " + Id(id) + " in \"" + dbKey + "\"");
  }
  Checker name(in.Required("zbt:name"));
  in.End();
  TableName const owner = ReadOwner(name, dbKey);
  pugi::xml_node const groupName = name.Required("zbt:recordLinkGroupName", {"zbt:isStandard"});
  name.End();
  std::string const text = TextOf(groupName);
  bool const isStandard = IsTrue(groupName, "zbt:isStandard");
  std::vector<LinkGroup> found =
      isStandard ? LinkGroups(store, "d.key = ? AND g.standard_name = ?", {dbKey, text})
                 : LinkGroups(store, "d.key = ? AND ? IN (g.name, g.reverse_name)", {dbKey, text});
  for (LinkGroup& group : found) group.isReverse = !isStandard && group.name != text;
  if (!owner.IsEmpty()) {
    int const table = FindTable(store, owner).id;
    found.erase(std::remove_if(found.begin(), found.end(),
                               [table](LinkGroup const& group) {
                                 return (group.isReverse ? group.toTable : group.fromTable) !=
                                        table;
                               }),
                found.end());
  }
  return Single(found, "link group \"" + text + "\" in \"" + dbKey + "\"");
}

void WriteLinkGroup(Store& store, pugi::xml_node node, LinkGroup const& group, bool isReverse) {
  Table const table = TableOf(store, isReverse ? group.toTable : group.fromTable);
  AddText(node, "b:dbKey", table.dbKey);
  AddText(node, "b:recordLinkGroupIdentity", Id(isReverse ? -group.id : group.id))
      .append_attribute("b:recordLinkGroupType") = group.kind.c_str();
  pugi::xml_node name = node.append_child("b:name");
  WriteOwner(name, table);
  AddText(name, "b:recordLinkGroupName", isReverse ? group.reverseName : group.name)
      .append_attribute("b:isStandard") = "false";
}

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

void WriteStandardNames(Store& store, pugi::xml_node node, LinkGroup const& group) {
  pugi::xml_node names = node.append_child("b:standardNames");
  std::string const name =
      store.Only("SELECT standard_name FROM record_link_group WHERE id = ?", {Id(group.id)})
          .Text(0);
  if (!name.empty() && !group.isReverse) AddText(names, "b:standardName", name);
}

void WriteLinks(Store& store, pugi::xml_node parent, Record const& record,
                std::vector<LinkGroup> const& groups, Filter const& filter, bool withGuids) {
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

}  // namespace sandbox

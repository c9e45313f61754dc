#include <string>
#include <utility>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/model/LinkGroups.h"
#include "sandbox/model/Tables.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

void WriteDetail(Store& store, pugi::xml_node node, LinkGroup const& group) {
  Table const from = TableOf(store, group.fromTable);
  Table const to = TableOf(store, group.toTable);
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

}  // namespace sandbox

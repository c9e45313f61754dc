#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/model/LinkGroups.h"
#include "sandbox/operations/Handlers.h"

namespace sandbox {

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

#include <limits>
#include <string>
#include <vector>

#include "Operations.h"
#include "References.h"
#include "Soap.h"

namespace sandbox {
namespace {

using Filter = std::optional<std::vector<int>>;

std::vector<Record> ChildrenOf(Store& store, Record const& parent, Filter const& filter) {
  std::vector<Record> children =
      Records(store, "r.parent_id = ? AND r.is_current = 1 ORDER BY r.is_folder DESC, r.id",
              {std::to_string(parent.id)});
  std::vector<Record> passing;
  for (Record& child : children) {
    if (Passes(store, child, filter)) passing.push_back(std::move(child));
  }
  return passing;
}

/// How a tree is listed.
struct Listing {
  Filter filter;
  bool withGuids = false;
};

/// Fills the element of a record, and of those below it as deep as asked.
void WriteTreeRecord(Store& store, pugi::xml_node node, Record const& record, int depth,
                     Listing const& listing) {
  node.append_attribute("color") = record.color.c_str();
  node.append_attribute("type") = record.isFolder ? "Folder" : "Record";
  WriteNamedRecord(node, record, listing.withGuids);
  pugi::xml_node children = node.append_child("b:children");
  if (depth > 0) {
    for (Record const& child : ChildrenOf(store, record, listing.filter)) {
      WriteTreeRecord(store, children.append_child("b:treeRecord"), child, depth - 1, listing);
    }
  }
  if (record.parentId == 0) return;
  Record const parent = Records(store, "r.id = ?", {std::to_string(record.parentId)}).at(0);
  AddText(node, "b:parentRecordHistoryIdentity", std::to_string(parent.historyId));
}

/// SQL for the versions that a policy wants.
std::string VersionCondition(std::string const& policy) {
  constexpr char kNewest[] = " ORDER BY r.version DESC LIMIT 1";
  std::string const readable = " AND r.state IN ('Released', 'Unversioned', 'Superseded')";
  if (policy == "LatestRead") return readable + kNewest;
  if (policy == "Latest") return kNewest;
  if (policy == "AllReleased") return readable + " ORDER BY r.version";
  if (policy == "All") return " ORDER BY r.version";
  throw Fault("<brow:versions> does not know the word \"" + policy + "\"");
}

}  // namespace

void GetRootNode(Store& store, Checker& request, pugi::xml_node response) {
  Table const table = ReadTable(store, request.Required("brow:table"));
  request.End();
  auto const roots =
      Records(store, "r.table_id = ? AND r.parent_id IS NULL", {std::to_string(table.id)});
  WriteTreeRecord(store, response.append_child("rootNode"), roots.at(0), 1, {});
}

void GetChildNodes(Store& store, Checker& request, pugi::xml_node response) {
  Record const parent = ReadRecord(store, request.Required("brow:parent"));
  Listing listing;
  listing.filter = ReadFilter(store, request.Optional("brow:recordFilter"));
  bool const recurse = BooleanOf(request.Required("brow:recurse"));
  int const maxDepth = IntegerOf(request.Required("brow:recurseMaxDepth"));
  listing.withGuids = BooleanOf(request.Required("brow:populateGUIDs"));
  request.End();
  int const unlimited = std::numeric_limits<int>::max();
  int const depth = !recurse ? 0 : maxDepth > 0 ? maxDepth : unlimited;
  pugi::xml_node records = response.append_child("treeRecords");
  for (Record const& child : ChildrenOf(store, parent, listing.filter)) {
    WriteTreeRecord(store, records.append_child("b:treeRecord"), child, depth, listing);
  }
}

void GetTreeRecords(Store& store, Checker& request, pugi::xml_node response) {
  std::vector<Record> const wanted = ReadRecords(store, request.Required("zbt:recordReferences"));
  request.End();
  pugi::xml_node records = response.append_child("treeRecords");
  for (Record const& record : wanted) {
    WriteTreeRecord(store, records.append_child("b:treeRecord"), record, 0, {});
  }
}

void GetRecordVersions(Store& store, Checker& request, pugi::xml_node response) {
  std::string const condition = VersionCondition(TextOf(request.Required("brow:versions")));
  std::vector<Record> const wanted = ReadRecords(store, request.Required("zbt:recordReferences"));
  request.End();
  pugi::xml_node states = response.append_child("recordVersionStates");
  for (Record const& record : wanted) {
    for (Record const& version :
         Records(store, "r.history_id = ?" + condition, {std::to_string(record.historyId)})) {
      pugi::xml_node state = states.append_child("recordVersionState");
      WriteRecord(state.append_child("b:record"), version, true);
      AddText(state, "b:versionState", version.state);
    }
  }
}

}  // namespace sandbox

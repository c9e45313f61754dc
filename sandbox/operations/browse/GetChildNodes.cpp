#include <limits>

#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/browse/TreeRecords.h"

namespace sandbox {

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

}  // namespace sandbox

#include <string>

#include "sandbox/Fault.h"
#include "sandbox/model/Subsets.h"
#include "sandbox/model/Tables.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

void WriteSubsetDetail(pugi::xml_node node, Subset const& subset, Table const& table) {
  AddText(node, "b:name", subset.name);
  pugi::xml_node reference = node.append_child("b:subset");
  AddText(reference, "b:dbKey", table.dbKey);
  AddText(reference, "b:subsetIdentity", std::to_string(subset.id));
  pugi::xml_node name = reference.append_child("b:name");
  WriteOwner(name, table);
  AddText(name, "b:subsetName", subset.name);
  WriteTable(node.append_child("b:table"), table);
}

}  // namespace

void GetSubsets(Store& store, Checker& request, pugi::xml_node response) {
  pugi::xml_node const tableNode = request.Optional("brow:table");
  pugi::xml_node const subsetNodes = request.Optional("zbt:subsetReferences");
  request.End();
  if (!tableNode && !subsetNodes) {
    throw Fault("<brow:GetSubsets> must hold <brow:table> or <zbt:subsetReferences>");
  }

  Table wanted;
  if (tableNode) wanted = ReadTable(store, tableNode);
  pugi::xml_node details = response.append_child("subsetDetails");
  if (!subsetNodes) {
    for (Row const& row : store.Rows("SELECT id, name FROM subset WHERE table_id = ? ORDER BY id",
                                     {std::to_string(wanted.id)})) {
      WriteSubsetDetail(details.append_child("subsetDetail"), {row.Int(0), row.Text(1), wanted.id},
                        wanted);
    }
    return;
  }
  Checker in(subsetNodes);
  do {
    Subset const subset =
        ReadSubset(store, in.Required("zbt:subset"), tableNode ? &wanted : nullptr);
    if (tableNode && subset.tableId != wanted.id) {
      throw Fault("the subset \"" + subset.name + "\" does not belong to the table");
    }
    WriteSubsetDetail(details.append_child("subsetDetail"), subset, TableOf(store, subset.tableId));
  } while (in.HasMore());
}

}  // namespace sandbox

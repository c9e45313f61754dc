#include <string>

#include "sandbox/Fault.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/browse/Details.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

/// Whether a value of each attribute is what the request wants to hear of.
struct Wishes {
  bool meta = false;
  bool empty = false;
  bool parameters = false;
  bool full = false;
};

void WriteRecordAttribute(Store& store, pugi::xml_node node, Record const& record,
                          Attribute const& attribute, Wishes const& wishes) {
  auto const values =
      store.Rows("SELECT version FROM attribute_value WHERE record_id = ? AND attribute_id = ?",
                 {Id(record.id), Id(attribute.id)});
  WriteRecord(node.append_child("b:record"), record);
  WriteNamedAttribute(store, node.append_child("b:attribute"), attribute);
  AddText(node, "b:hasData", values.empty() ? "false" : "true");
  if (wishes.full && !values.empty()) {
    WriteRevision(node.append_child("b:dataRevisionInfo"));
    AddText(node, "b:dataCreatedRecordVersion", Id(record.version));
    AddText(node, "b:dataVersionNumber", values[0].Text(0));
  }
  if (!wishes.parameters) return;
  WriteParameters(store, node.append_child("b:parameterDetails"), kOfAttribute, {Id(attribute.id)},
                  &attribute, &record);
}

}  // namespace

void GetRecordAttributes(Store& store, Checker& request, pugi::xml_node response) {
  auto const records = ReadRecords(store, request.Required("zbt:recordReferences"));
  auto const isSet = [&request](char const* name) {
    auto const node = request.Optional(name);
    if (node && TextOf(node) != "1") throw Fault(std::string("<") + name + "> must hold 1");
    return !node.empty();
  };
  Wishes wishes;
  wishes.meta = isSet("brow:includeMetaAttributes");
  wishes.empty = isSet("brow:includeEmptyAttributes");
  wishes.parameters = isSet("brow:includeParameterDetails");
  wishes.full = isSet("brow:includeFullAttributeDetail");
  request.End();
  pugi::xml_node list = response.append_child("recordAttributes");
  for (Record const& record : records) {
    std::string condition = "a.table_id = ?";
    if (!wishes.meta) condition += " AND a.about_id IS NULL";
    if (!wishes.empty) {
      condition += " AND a.id IN (SELECT attribute_id FROM attribute_value WHERE record_id = " +
                   Id(record.id) + ")";
    }
    for (Attribute const& attribute : Attributes(store, condition, {Id(record.tableId)})) {
      WriteRecordAttribute(store, list.append_child("recordAttribute"), record, attribute, wishes);
    }
  }
}

}  // namespace sandbox

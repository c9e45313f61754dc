#include <string>

#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/browse/Details.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

void WriteColumns(Store& store, pugi::xml_node columns, Attribute const& attribute) {
  for (Row const& row : store.Rows(
           "SELECT name, type, unit FROM tabular_column WHERE attribute_id = ? ORDER BY position",
           {Id(attribute.id)})) {
    pugi::xml_node column = columns.append_child("b:local");
    AddText(column, "b:Name", row.Text(0));
    WriteRevision(column.append_child("b:RevisionInfo"));
    AddText(column, "b:columnType", "local");
    AddText(column, "b:DatabaseUnit", row.Text(2));
    AddText(column, "b:type", row.Text(1));
  }
}

void WriteDetail(Store& store, pugi::xml_node node, Attribute const& attribute) {
  node.append_attribute("isSearchable") = "true";
  node.append_attribute("isMultiValued") = attribute.isMultiValued ? "true" : "false";
  bool const isNumber = attribute.type == "RNGE" || attribute.type == "POIN" ||
                        attribute.type == "INPT" || attribute.type == "FUNC";
  node.append_attribute("isChartable") = isNumber ? "true" : "false";
  WriteNamedAttribute(store, node, attribute);
  AddText(node, "b:identity", Id(attribute.id));
  AddText(node, "b:type", attribute.type);
  WriteRevision(node.append_child("b:revisionInfo"));
  WriteHelp(node.append_child("b:helpInfo"), "attribute-" + Id(attribute.id));
  AddText(node, "b:databaseUnit", attribute.unit);
  AddText(node, "b:defaultThreshold", "");
  pugi::xml_node words = node.append_child("b:discreteValues");
  for (Row const& row :
       store.Rows("SELECT word FROM attribute_discrete WHERE attribute_id = ? ORDER BY position",
                  {Id(attribute.id)})) {
    AddText(words, "b:discreteValue", row.Text(0));
  }
  AddText(node, "b:order", Id(attribute.id));
  AddText(node, "b:axisName", attribute.name);
  WriteColumns(store, node.append_child("b:columns"), attribute);
}

}  // namespace

void GetAttributeDetails(Store& store, Checker& request, pugi::xml_node response) {
  auto const attributes = ReadAttributes(store, request.Required("zbt:attributeReferences"));
  request.End();
  pugi::xml_node details = response.append_child("attributeDetails");
  for (Attribute const& attribute : attributes) {
    WriteDetail(store, details.append_child("attributeDetail"), attribute);
  }
}

}  // namespace sandbox

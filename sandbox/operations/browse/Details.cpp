#include "sandbox/operations/browse/Details.h"

#include "sandbox/model/Units.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

void WriteRevision(pugi::xml_node node) {
  AddText(node, "b:modified", "2026-01-05T09:00:00");
  AddText(node, "b:modifiedUser", "seed");
  AddText(node, "b:created", "2026-01-05T09:00:00");
  AddText(node, "b:createdUser", "seed");
  AddText(node, "b:updateCount", "0");
}

void WriteHelp(pugi::xml_node node, std::string const& topic) {
  AddText(node, "b:helpURI", "https://www.example.com/help/" + topic);
  AddText(node, "b:isDatabaseHelp", "false");
}

void WriteParameters(Store& store, pugi::xml_node details, std::string const& condition,
                     std::vector<std::string> const& values, Attribute const* attribute,
                     Record const* record) {
  for (Row const& row : store.Rows(
           "SELECT p.id, p.name, p.unit, p.type, d.key, p.scale, p.interpolation FROM parameter p"
           " JOIN database d ON d.id = p.database_id WHERE " +
               condition + " ORDER BY p.id",
           values)) {
    Parameter const parameter = {row.Int(0), row.Text(1), row.Text(2), row.Text(3)};
    pugi::xml_node node = details.append_child("parameterDetail");
    WriteParameter(node.append_child("b:ParameterReference"), parameter, row.Text(4));
    AddText(node, "b:Name", parameter.name);
    WriteUnit(store, node.append_child("b:Unit"), parameter.unit);
    auto const add = [&](pugi::xml_node value, std::string const& text) {
      bool const isNumeric = parameter.type != "Discrete";
      value.append_attribute("i:type") =
          isNumeric ? "b:NumericParameterValue" : "b:DiscreteParameterValue";
      AddText(value, "b:Value", text);
    };
    auto const known =
        store.Rows("SELECT value FROM parameter_value WHERE parameter_id = ? ORDER BY position",
                   {row.Text(0)});
    add(node.append_child("b:defaultValue"), known.empty() ? "20" : known[0].Text(0));
    AddText(node, "b:scaleType", row.Text(5));
    AddText(node, "b:interpolationMethod", row.Text(6));
    AddText(node, "b:parameterType", parameter.type);
    WriteRevision(node.append_child("b:revisionInfo"));
    WriteHelp(node.append_child("b:helpInfo"), "parameter-" + row.Text(0));
    pugi::xml_node list = node.append_child("b:parameterValues");
    for (Row const& value : known) add(list.append_child("b:parameterValue"), value.Text(0));
    pugi::xml_node appliesTo = node.append_child("b:appliesTo");
    if (attribute != nullptr) {
      WriteAttribute(store, appliesTo.append_child("b:attributeReference"), *attribute);
    }
    if (record != nullptr) WriteRecord(appliesTo.append_child("b:recordReference"), *record);
    AddText(node, "b:order", row.Text(0));
  }
}

}  // namespace sandbox

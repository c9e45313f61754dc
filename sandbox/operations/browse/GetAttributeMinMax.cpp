#include <string>

#include "sandbox/model/Attributes.h"
#include "sandbox/model/Units.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

void WriteExtreme(Store& store, pugi::xml_node node, Attribute const& attribute,
                  std::string const& value, std::string const& unit) {
  if (attribute.type == "DTTM") {
    AddText(node, "b:date", value);
  } else if (attribute.type == "INPT") {
    AddText(node, "b:integer", value);
  } else {
    AddText(node, "b:double", TextOfNumber(Convert(store, NumberOf(value), attribute.unit, unit)));
  }
}

}  // namespace

void GetAttributeMinMax(Store& store, Checker& request, pugi::xml_node response) {
  auto const attributes = ReadAttributes(store, request.Required("zbt:attributeReferences"));
  UnitContext const context =
      ReadUnitContext(store, request.Optional("brow:unitConversionContext"));
  request.End();
  pugi::xml_node list = response.append_child("minMaxes");
  for (Attribute const& attribute : attributes) {
    bool const isDate = attribute.type == "DTTM";
    Row const row = store.Only(
        std::string("SELECT ") +
            (isDate ? "min(trim(v.text, char(10))), max(trim(v.text, char(10)))"
                    : "min(v.low), max(v.high)") +
            " FROM attribute_value v JOIN record r ON r.id = v.record_id WHERE v.attribute_id = ?"
            " AND r.is_current = 1",
        {Id(attribute.id)});
    std::string const unit = TargetUnit(store, attribute.unit, context);
    pugi::xml_node node = list.append_child("minMax");
    AddText(node, "b:unit", unit);
    WriteAttribute(store, node.append_child("b:attributeReference"), attribute);
    if (row.Text(0).empty()) continue;
    WriteExtreme(store, node.append_child("b:min"), attribute, row.Text(0), unit);
    WriteExtreme(store, node.append_child("b:max"), attribute, row.Text(1), unit);
  }
}

}  // namespace sandbox

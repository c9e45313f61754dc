#include <string>
#include <vector>

#include "Operations.h"
#include "References.h"
#include "Soap.h"
#include "Units.h"

namespace sandbox {
namespace {

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

/// The parameters that a condition on parameter p selects.
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

constexpr char kOfAttribute[] =
    "p.id IN (SELECT parameter_id FROM attribute_parameter WHERE attribute_id = ?)";

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

void GetAttributeDetails(Store& store, Checker& request, pugi::xml_node response) {
  auto const attributes = ReadAttributes(store, request.Required("zbt:attributeReferences"));
  request.End();
  pugi::xml_node details = response.append_child("attributeDetails");
  for (Attribute const& attribute : attributes) {
    WriteDetail(store, details.append_child("attributeDetail"), attribute);
  }
}

void GetAttributeParameters(Store& store, Checker& request, pugi::xml_node response) {
  auto const attributes = ReadAttributes(store, request.Required("zbt:attributeReferences"));
  request.End();
  pugi::xml_node details = response.append_child("parameterDetails");
  for (Attribute const& attribute : attributes) {
    WriteParameters(store, details, kOfAttribute, {Id(attribute.id)}, &attribute, nullptr);
  }
}

void GetParameterDetails(Store& store, Checker& request, pugi::xml_node response) {
  Checker parameters(request.Required("zbt:parameterReferences"));
  std::vector<Parameter> wanted;
  while (parameters.HasMore()) {
    wanted.push_back(ReadParameter(store, parameters.Required("zbt:parameter")));
  }
  std::optional<Attribute> attribute;
  if (auto const node = request.Optional("brow:functionalAttribute")) {
    attribute = ReadAttribute(store, node);
  }
  std::optional<Record> record;
  if (auto const node = request.Optional("brow:recordReference")) {
    record = ReadRecord(store, node);
  }
  request.End();
  pugi::xml_node details = response.append_child("parameterDetails");
  for (Parameter const& parameter : wanted) {
    WriteParameters(store, details, "p.id = ?", {Id(parameter.id)},
                    attribute ? &*attribute : nullptr, record ? &*record : nullptr);
  }
}

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

void GetMetaAttributes(Store& store, Checker& request, pugi::xml_node response) {
  auto const attributes = ReadAttributes(store, request.Required("zbt:attributeReferences"));
  request.End();
  for (Attribute const& attribute : attributes) {
    pugi::xml_node node = response.append_child("Attribute");
    WriteNamedAttribute(store, node.append_child("b:ParentAttribute"), attribute);
    pugi::xml_node list = node.append_child("b:MetaAttributes");
    for (Attribute const& meta : Attributes(store, "a.about_id = ?", {Id(attribute.id)})) {
      WriteNamedAttribute(store, list.append_child("b:MetaAttribute"), meta);
    }
  }
}

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

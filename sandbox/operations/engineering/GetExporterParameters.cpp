#include "sandbox/model/Parameters.h"
#include "sandbox/model/Units.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/engineering/Exporters.h"
#include "sandbox/operations/engineering/Figures.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

void WriteNeed(Store& store, pugi::xml_node list, Record const& record, Attribute const& attribute,
               bool isPresent) {
  pugi::xml_node node = list.append_child("b:Attribute");
  node.append_attribute("data") = isPresent ? "Present" : "Missing";
  WriteNamedAttribute(store, node.append_child("b:Attribute"), attribute);
  pugi::xml_node parameters = node.append_child("b:Parameters");
  pugi::xml_node domains = node.append_child("b:GraphDomains");
  if (attribute.name != kCurve) return;
  for (Row const& row :
       store.Rows("SELECT p.id, p.name, p.unit, p.type FROM parameter p JOIN data_table t"
                  " ON t.database_id = p.database_id WHERE t.id = ? AND p.name = 'Temperature'",
                  {Id(record.tableId)})) {
    Parameter const temperature = {row.Int(0), row.Text(1), row.Text(2), row.Text(3)};
    pugi::xml_node parameter = parameters.append_child("b:Parameter");
    parameter.append_attribute("id") = "temperature";
    parameter.append_attribute("usage") = "Optional";
    WriteParameter(parameter.append_child("b:ParameterReference"), temperature, record.dbKey);
    AddText(parameter, "b:Name", temperature.name);
    WriteUnit(store, parameter.append_child("b:Unit"), temperature.unit);
  }
  pugi::xml_node domain = domains.append_child("b:GraphDomain")
                              .append_child("b:ParameterDomains")
                              .append_child("b:ParameterDomain");
  domain.append_attribute("exporterParameterId") = "temperature";
  domain.append_attribute("interpolable") = "true";
  pugi::xml_node values = domain.append_child("b:Values");
  for (auto const& [x, y] : CurveOf(store, record)) {
    pugi::xml_node value = values.append_child("b:Value");
    value.append_attribute("i:type") = "b:NumericParameterValue";
    AddText(value, "b:Value", TextOfNumber(x));
  }
}

}  // namespace

void GetExporterParameters(Store& store, Checker& request, pugi::xml_node response) {
  auto const records = ReadRecords(store, request.Required("zbt:recordReferences"));
  Exporter const& exporter = FindExporter(TextOf(request.Required("eng:ExporterKey")));
  ReadUnitContext(store, request.Optional("eng:UnitConversionContext"));
  bool const withGuids = BooleanOf(request.Required("eng:populateGUIDs"));
  request.End();
  pugi::xml_node list = response.append_child("b:Records");
  for (Record const& record : records) {
    pugi::xml_node node = list.append_child("b:Record");
    WriteRecord(node.append_child("b:Record"), record, withGuids);
    pugi::xml_node attributes = node.append_child("b:Attributes");
    for (Figure const& figure : NeededFigures(store, record)) {
      WriteNeed(store, attributes, record, figure.attribute, figure.value.has_value());
    }
    if (exporter.format != Format::Card) continue;
    for (Attribute const& curve : ByName(store, kCurve, record.tableId)) {
      WriteNeed(store, attributes, record, curve, !CurveOf(store, record).empty());
    }
  }
}

}  // namespace sandbox

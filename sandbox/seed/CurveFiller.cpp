#include "sandbox/seed/CurveFiller.h"

#include "sandbox/seed/Lines.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

void FillUnitInformation(pugi::xml_node node, std::string const& unit) {
  AddText(node, "zbt:UnitName", unit);
  AddText(node, "zbt:UnitSymbol", unit);
}

void FillParameterValue(pugi::xml_node node, std::string const& text, bool isNumeric) {
  node.append_attribute("xsi:type") =
      isNumeric ? "zbt:NumericParameterValue" : "zbt:DiscreteParameterValue";
  AddText(node, "zbt:Value", text);
}

}  // namespace

void FillUnit(pugi::xml_node node, std::string const& unit) {
  node.append_attribute("zbt:isNotApplicable") = "false";
  AddText(node, "zbt:Estimated", "false");
  AddText(node, "zbt:UnitSymbol", unit);
}

void CurveFiller::FillPoints(pugi::xml_node node, std::string const& text) {
  FillUnit(node, m_attribute.unit);
  FillParameters(node);
  for (std::string const& part : Split(text, ';')) {
    std::vector<std::string> const point = Split(part, '@');
    pugi::xml_node element = node.append_child("zbt:Point");
    AddText(element, "zbt:Value", point.at(0));
    pugi::xml_node values = element.append_child("zbt:ValueParameters");
    if (point.size() < 2) continue;
    for (std::string const& condition : Split(point[1], ',')) {
      FillCondition(values.append_child("zbt:ParameterWithValue"), condition);
    }
  }
}

void CurveFiller::FillSeries(pugi::xml_node node, std::string const& text) {
  FillCurveHead(node);
  pugi::xml_node graph = node.append_child("zbt:Graph");
  graph.append_attribute("zbt:HideGraph") = "false";
  graph.append_attribute("zbt:LogarithmicYAxis") = "false";
  pugi::xml_node series = graph.append_child("zbt:Series");
  series.append_attribute("zbt:decoration") = "LinesAndMarkers";
  std::vector<std::string> const parts = Split(text, '@');
  FillConstraints(series, parts.size() > 1 ? parts[1] : "");
  pugi::xml_node points = series.append_child("zbt:XYPoints");
  for (std::string const& part : Split(parts.at(0), ';')) {
    std::vector<std::string> const figures = Split(part, ' ');
    bool const isRange = figures.size() > 2;
    pugi::xml_node point = points.append_child("zbt:XYPoint");
    point.append_attribute("xsi:type") = isRange ? "zbt:XYRange" : "zbt:XYPoint";
    FillParameterValue(point.append_child("zbt:X"), figures.at(0), true);
    AddText(point, "zbt:Estimated", "false");
    AddText(point, isRange ? "zbt:LowerY" : "zbt:Y", figures.at(1));
    if (isRange) AddText(point, "zbt:UpperY", figures[2]);
  }
  FillParameter(graph.append_child("zbt:XAxisParameter"), ParametersOfAttribute().at(0));
}

void CurveFiller::FillGrid(pugi::xml_node node, std::string const& text) {
  FillCurveHead(node);
  node.append_attribute("zbt:decoration") = "Markers";
  pugi::xml_node values = node.append_child("zbt:Values");
  for (std::string const& part : Split(text, ';')) {
    std::vector<std::string> const one = Split(part, '@');
    pugi::xml_node value = values.append_child("zbt:Value");
    value.append_attribute("xsi:type") = "zbt:FloatFunctionalPointValue";
    FillConstraints(value, one.size() > 1 ? one[1] : "");
    AddText(value, "zbt:Estimated", "false");
    AddText(value, "zbt:Value", one.at(0));
  }
  FillParameter(node.append_child("zbt:DefaultXAxisParameter"), ParametersOfAttribute().at(0));
}

std::vector<Row> CurveFiller::ParametersOfAttribute() {
  return m_store.Rows(
      "SELECT p.name, p.unit, p.type FROM attribute_parameter a JOIN parameter p"
      " ON p.id = a.parameter_id WHERE a.attribute_id = ? ORDER BY a.rowid",
      {std::to_string(m_attribute.id)});
}

void CurveFiller::FillReference(pugi::xml_node node, std::string const& name) {
  AddText(node, "zbt:dbKey", m_dbKey);
  AddText(node, "zbt:name", name);
}

void CurveFiller::FillParameter(pugi::xml_node node, Row const& parameter) {
  FillReference(node.append_child("zbt:ParameterReference"), parameter.Text(0));
  AddText(node, "zbt:Name", parameter.Text(0));
  FillUnitInformation(node.append_child("zbt:Unit"), parameter.Text(1));
}

void CurveFiller::FillParameters(pugi::xml_node node) {
  pugi::xml_node list = node.append_child("zbt:Parameters");
  for (Row const& parameter : ParametersOfAttribute()) {
    FillParameter(list.append_child("zbt:Parameter"), parameter);
  }
}

void CurveFiller::FillCondition(pugi::xml_node node, std::string const& text) {
  std::vector<std::string> const parts = Split(text, '=');
  FillReference(node.append_child("zbt:Parameter"), parts.at(0));
  bool const isNumeric = parts[0] != "Condition";
  FillParameterValue(node.append_child("zbt:ParameterValue"), parts.at(1), isNumeric);
}

void CurveFiller::FillConstraints(pugi::xml_node node, std::string const& text) {
  pugi::xml_node list = node.append_child("zbt:Constraints");
  for (std::string const& condition : Split(text, ',')) {
    pugi::xml_node constraint = list.append_child("zbt:Constraint");
    FillCondition(constraint, condition);
    AddText(constraint, "zbt:Label", condition);
  }
}

void CurveFiller::FillCurveHead(pugi::xml_node node) {
  FillParameters(node);
  FillUnitInformation(node.append_child("zbt:Unit"), m_attribute.unit);
  node.append_attribute("zbt:isNotApplicable") = "false";
}

}  // namespace sandbox

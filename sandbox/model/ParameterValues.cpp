#include "sandbox/model/ParameterValues.h"

#include <string>

#include "sandbox/Fault.h"
#include "sandbox/model/Parameters.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

void ReadUnitInformation(pugi::xml_node from, pugi::xml_node to) {
  Checker in(from);
  AddText(to, "b:UnitName", TextOf(in.Required("zbt:UnitName")));
  AddText(to, "b:UnitSymbol", TextOf(in.Required("zbt:UnitSymbol")));
  in.End();
}

}  // namespace

void ReadParameterValue(pugi::xml_node from, pugi::xml_node to) {
  std::string const type = from.attribute("xsi:type").value();
  bool const isNumeric = type == "zbt:NumericParameterValue";
  if (!isNumeric && type != "zbt:DiscreteParameterValue") {
    throw Fault("a parameter value must not have the type \"" + type + "\"");
  }
  to.append_attribute("i:type") = ("b:" + type.substr(4)).c_str();
  Checker in(from);
  pugi::xml_node const value = in.Required("zbt:Value");
  in.End();
  AddText(to, "b:Value", isNumeric ? TextOfNumber(RealOf(value)) : TextOf(value));
}

void ReadParameterAndValue(Store& store, Checker& in, pugi::xml_node to) {
  std::string dbKey;
  Parameter const parameter = ReadParameter(store, in.Required("zbt:Parameter"), &dbKey);
  WriteParameter(to.append_child("b:Parameter"), parameter, dbKey);
  ReadParameterValue(in.Required("zbt:ParameterValue", {"xsi:type"}),
                     to.append_child("b:ParameterValue"));
}

void ReadParameterInformation(Store& store, pugi::xml_node from, pugi::xml_node to) {
  Checker in(from);
  if (auto const reference = in.Optional("zbt:ParameterReference")) {
    std::string dbKey;
    Parameter const parameter = ReadParameter(store, reference, &dbKey);
    WriteParameter(to.append_child("b:ParameterReference"), parameter, dbKey);
  }
  AddText(to, "b:Name", TextOf(in.Required("zbt:Name")));
  ReadUnitInformation(in.Required("zbt:Unit"), to.append_child("b:Unit"));
  in.End();
}

void ReadParameters(Store& store, pugi::xml_node from, pugi::xml_node to) {
  Checker in(from);
  while (in.HasMore()) {
    ReadParameterInformation(store, in.Required("zbt:Parameter"), to.append_child("b:Parameter"));
  }
}

void ReadConstraints(Store& store, pugi::xml_node from, pugi::xml_node to) {
  Checker in(from);
  while (in.HasMore()) {
    Checker constraint(in.Required("zbt:Constraint"));
    pugi::xml_node element = to.append_child("b:Constraint");
    ReadParameterAndValue(store, constraint, element);
    AddText(element, "b:Label", TextOf(constraint.Required("zbt:Label")));
    constraint.End();
  }
}

}  // namespace sandbox

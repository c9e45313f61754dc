#include <algorithm>
#include <string>

#include "sandbox/Fault.h"
#include "sandbox/model/Parameters.h"
#include "sandbox/model/Subsets.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/engineering/Export.h"

namespace sandbox {
namespace {

void ReadParameterValues(Store& store, pugi::xml_node node, Export& job) {
  if (auto const figures = node.attribute("eng:significantFigures")) {
    job.significantFigures = figures.as_int();
    if (job.significantFigures < 1) throw Fault("eng:significantFigures must be positive");
  }
  Checker values(node);
  while (values.HasMore()) {
    Checker one(values.Required("eng:parameterValue"));
    Parameter const parameter = ReadParameter(store, one.Required("zbt:Parameter"));
    Checker value(one.Required("zbt:ParameterValue", {"xsi:type"}));
    pugi::xml_node const figure = value.Required("zbt:Value");
    value.End();
    std::string unit = parameter.unit;
    if (auto const symbol = one.Optional("zbt:UnitSymbol")) unit = FilledTextOf(symbol);
    one.End();
    if (parameter.name != "Temperature") {
      throw Fault("no exporter needs the parameter \"" + parameter.name + "\"");
    }
    job.temperature = Convert(store, RealOf(figure), unit, parameter.unit);
  }
}

void ReadStop(pugi::xml_node node, Export& job) {
  Checker in(node);
  if (auto const index = in.Optional("eng:index", {"eng:value"})) {
    job.stopBefore = std::min(job.stopBefore, index.attribute("eng:value").as_int());
  } else {
    std::string const id =
        in.Required("eng:transformId", {"eng:value"}).attribute("eng:value").value();
    auto const* const found = std::find(std::begin(kTransforms), std::end(kTransforms), id);
    if (found == std::end(kTransforms)) throw Fault("the exporter has no step \"" + id + "\"");
    job.stopBefore = static_cast<int>(found - std::begin(kTransforms));
  }
  in.End();
}

}  // namespace

void ExportRecordData(Store& store, Checker& request, pugi::xml_node response) {
  Export job;
  job.records = ReadRecords(store, request.Required("zbt:recordReferences"));
  if (auto const node = request.Optional("eng:attributes")) {
    Checker in(node);
    do {
      job.attributes.push_back(ReadAttribute(store, in.Required("eng:attribute")));
    } while (in.HasMore());
  }
  job.exporter = &FindExporter(TextOf(request.Required("eng:exporterKey")));
  job.units = ReadUnitContext(store, request.Optional("eng:unitConversionContext"));
  auto const filter = ReadFilter(store, request.Optional("eng:recordFilter"));
  if (request.IsNext("eng:parameterValues")) {
    ReadParameterValues(
        store, request.RequiredWithAnyOf("eng:parameterValues", {"eng:significantFigures"}), job);
  }
  if (auto const node = request.Optional("eng:stopBefore")) ReadStop(node, job);
  request.End();
  job.records.erase(
      std::remove_if(job.records.begin(), job.records.end(),
                     [&](Record const& record) { return !Passes(store, record, filter); }),
      job.records.end());
  response.append_child(pugi::node_cdata).set_value(Output(store, job).c_str());
}

}  // namespace sandbox

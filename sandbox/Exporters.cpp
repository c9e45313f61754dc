#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "Operations.h"
#include "References.h"
#include "Soap.h"
#include "Units.h"

namespace sandbox {
namespace {

enum class Format { Table, Card };

struct Exporter {
  char const* key;
  char const* name;
  int version;
  char const* package;
  char const* model;
  char const* description;
  char const* tag;
  Format format;
};

constexpr Exporter kExporters[] = {
    {"table-1", "Tab-separated table", 1, "Spreadsheet", "Table",
     "One line per record, one column per attribute", "table", Format::Table},
    {"card-1", "Elastic-plastic card", 1, "Solver", "Elastic-plastic",
     "Material card for a solver, superseded by version 2", "card", Format::Card},
    {"card-2", "Elastic-plastic card", 2, "Solver", "Elastic-plastic",
     "Material card for a solver; yield strength at a temperature when one is given", "card",
     Format::Card},
};
/// Steps of every exporter.
constexpr char const* kTransforms[] = {"collect", "format"};
/// What the exporters need; all but the last are required.
constexpr char const* kNeeded[] = {"Density",          "Young's modulus",
                                   "Poisson's ratio",  "Yield strength (elastic limit)",
                                   "Tensile strength", "Thermal expansion coefficient"};
/// Where a card shows them; without a word a figure stands below the one before.
constexpr char const* kKeywords[] = {"DENSITY", "ELASTIC", "", "YIELD", "STRENGTH", "EXPANSION"};
constexpr std::size_t kYield = 3;
constexpr std::size_t kRequired = 5;
constexpr char kCurve[] = "Yield strength against temperature";

Exporter const& FindExporter(std::string const& key) {
  for (Exporter const& exporter : kExporters) {
    if (exporter.key == key) return exporter;
  }
  throw Fault("there is no exporter with the key \"" + key + "\"");
}

void WriteExporter(pugi::xml_node node, Exporter const& exporter) {
  node.append_attribute("name") = exporter.name;
  node.append_attribute("version") = exporter.version;
  node.append_attribute("validatedOK") = "true";
  AddText(node, "key", exporter.key);
  AddText(node, "package", exporter.package);
  AddText(node, "model", exporter.model);
  AddText(node, "description", exporter.description);
  pugi::xml_node transforms = node.append_child("transforms");
  for (char const* const id : kTransforms) {
    transforms.append_child("transform").append_attribute("id") = id;
  }
}

/// What a request says of the exporters that it wants.
struct Wanted {
  std::string package;
  std::string model;
  bool latestOnly = false;
  std::string tag;

  void ReadPolicyAndTag(Checker& in) {
    if (auto const node = in.Optional("eng:versionPolicy")) {
      std::string const policy = TextOf(node);
      if (policy != "IncludeAll" && policy != "LatestVersionPerName") {
        throw Fault("<eng:versionPolicy> does not know the word \"" + policy + "\"");
      }
      latestOnly = policy == "LatestVersionPerName";
    }
    if (auto const node = in.Optional("eng:applicabilityTag")) tag = FilledTextOf(node);
  }
  void ReadPackageAndModel(Checker& in) {
    if (auto const node = in.Optional("eng:package")) package = FilledTextOf(node);
    if (auto const node = in.Optional("eng:model")) model = FilledTextOf(node);
  }
  bool Holds(Exporter const& exporter) const {
    bool const isLatest = std::none_of(
        std::begin(kExporters), std::end(kExporters), [&exporter](Exporter const& other) {
          return std::string(other.name) == exporter.name && other.version > exporter.version;
        });
    return (package.empty() || package == exporter.package) &&
           (model.empty() || model == exporter.model) && (tag.empty() || tag == exporter.tag) &&
           (isLatest || !latestOnly);
  }
};

bool IsMaterial(Store& store, int tableId) { return store.TableOf(tableId).name == "Materials"; }

/// A figure of a record: the middle of its range, in the database's unit.
struct Figure {
  Attribute attribute;
  std::optional<double> value;
};

std::vector<Attribute> ByName(Store& store, std::string const& name, int tableId) {
  return Attributes(store, "a.name = ? AND a.table_id = ?", {name, Id(tableId)});
}

Figure FigureOf(Store& store, Record const& record, Attribute const& attribute) {
  auto const rows =
      store.Rows("SELECT low, high FROM attribute_value WHERE record_id = ? AND attribute_id = ?",
                 {Id(record.id), Id(attribute.id)});
  if (rows.empty() || rows[0].Text(0).empty()) return {attribute, {}};
  return {attribute, (rows[0].Real(0) + rows[0].Real(1)) / 2};
}

std::vector<Figure> NeededFigures(Store& store, Record const& record) {
  std::vector<Figure> figures;
  for (char const* const name : kNeeded) {
    for (Attribute const& attribute : ByName(store, name, record.tableId)) {
      figures.push_back(FigureOf(store, record, attribute));
    }
  }
  return figures;
}

using Curve = std::vector<std::pair<double, double>>;

/// Points of the record's first curve of yield strength; empty without one.
Curve CurveOf(Store& store, Record const& record) {
  Curve curve;
  auto const rows = store.Rows(
      "SELECT v.xml FROM attribute_value v JOIN attribute a ON a.id = v.attribute_id"
      " WHERE v.record_id = ? AND a.name = ?",
      {Id(record.id), kCurve});
  if (rows.empty()) return curve;
  pugi::xml_document value;
  value.load_string(("<v>" + rows[0].Text(0) + "</v>").c_str());
  pugi::xml_node const series = value.first_child().child("b:Graph").child("b:Series");
  for (pugi::xml_node const point : series.child("b:XYPoints").children()) {
    double const x = NumberOf(point.child("b:X").child("b:Value").text().get());
    bool const isRange = !point.child("b:LowerY").empty();
    double const y = isRange ? (NumberOf(point.child("b:LowerY").text().get()) +
                                NumberOf(point.child("b:UpperY").text().get())) /
                                   2
                             : NumberOf(point.child("b:Y").text().get());
    curve.emplace_back(x, y);
  }
  return curve;
}

double Interpolated(Curve const& curve, double x) {
  if (x < curve.front().first || x > curve.back().first) {
    throw Fault("the curve is not defined at a temperature of " + TextOfNumber(x) + " degC");
  }
  auto const above = std::find_if(curve.begin() + 1, curve.end(),
                                  [x](auto const& point) { return point.first >= x; });
  auto const below = above - 1;
  double const part = (x - below->first) / (above->first - below->first);
  return below->second + part * (above->second - below->second);
}

/// An export as the request says it.
struct Export {
  Exporter const* exporter = nullptr;
  std::vector<Record> records;
  std::vector<Attribute> attributes;
  UnitContext units;
  int significantFigures = 0;
  std::optional<double> temperature;  ///< in degC
  int stopBefore = static_cast<int>(std::size(kTransforms));
};

std::string Shown(Store& store, Export const& job, Attribute const& attribute, double value,
                  std::string* unit = nullptr) {
  std::string const target = TargetUnit(store, attribute.unit, job.units);
  if (unit != nullptr) *unit = target;
  char text[48];
  std::snprintf(text, sizeof text, "%.*g", job.significantFigures > 0 ? job.significantFigures : 6,
                Convert(store, value, attribute.unit, target));
  return text;
}

std::string TableOutput(Store& store, Export const& job) {
  std::string text = "Record";
  std::vector<Attribute> columns = job.attributes;
  if (columns.empty() && !job.records.empty()) {
    for (Figure const& figure : NeededFigures(store, job.records[0])) {
      columns.push_back(figure.attribute);
    }
  }
  for (Attribute const& column : columns) {
    std::string const unit = TargetUnit(store, column.unit, job.units);
    text += "\t" + column.name + (unit.empty() ? "" : " (" + unit + ")");
  }
  text += "\n";
  for (Record const& record : job.records) {
    text += record.shortName;
    for (Attribute const& column : columns) {
      Figure const figure = FigureOf(store, record, column);
      text += "\t";
      if (figure.value) text += Shown(store, job, column, *figure.value);
    }
    text += "\n";
  }
  return text;
}

/// One quantity of a card: its keyword, a comment with name and unit, and the figure.
std::string CardLine(Store& store, Export const& job, std::string const& keyword,
                     Attribute const& attribute, double value, std::string const& note = "") {
  std::string unit;
  std::string const shown = Shown(store, job, attribute, value, &unit);
  return (keyword.empty() ? "" : "*" + keyword + "\n") + "** " + attribute.name +
         (unit.empty() ? "" : ", " + unit) + note + "\n" + shown + "\n";
}

std::string CardOutput(Store& store, Export const& job) {
  std::string text;
  for (Record const& record : job.records) {
    std::vector<Figure> const figures = NeededFigures(store, record);
    text += "** " + record.longName + "\n** typical figures, middles of ranges; not for design\n" +
            "*MATERIAL, " + record.shortName + "\n";
    for (std::size_t i = 0; i < figures.size(); ++i) {
      std::optional<double> value = figures[i].value;
      std::string note;
      if (i == kYield && job.temperature) {
        Curve const curve = CurveOf(store, record);
        if (curve.empty()) throw Fault("\"" + record.shortName + "\" has no curve to read from");
        value = Interpolated(curve, *job.temperature);
        note = " at " + TextOfNumber(*job.temperature) + " degC";
      }
      if (!value && i < kRequired) {
        throw Fault("\"" + record.shortName + "\" has no " + figures[i].attribute.name);
      }
      if (value) text += CardLine(store, job, kKeywords[i], figures[i].attribute, *value, note);
    }
    text += "*END\n";
  }
  return text;
}

/// What stands there before anything is formatted.
std::string CollectedOutput(Store& store, Export const& job) {
  std::string text;
  for (Record const& record : job.records) {
    for (Figure const& figure : NeededFigures(store, record)) {
      if (!figure.value) continue;
      text += record.shortName + ": " + figure.attribute.name + " = " +
              Shown(store, job, figure.attribute, *figure.value) + "\n";
    }
  }
  return text;
}

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

void GetAvailableExporters(Store& store, Checker& request, pugi::xml_node response) {
  Wanted wanted;
  wanted.ReadPackageAndModel(request);
  std::string dbKey;
  if (auto const node = request.Optional("eng:dbKey")) dbKey = KnownKey(store, node);
  bool isForMaterials = dbKey.empty() || dbKey == "ENG_MATERIALS";
  if (request.IsNext("eng:table")) {
    Checker table(request.RequiredWithAnyOf("eng:table", {"eng:matchDatabase"}));
    TableName name = ReadTableIdentifiers(table);
    table.End();
    name.dbKey = dbKey.empty() ? "ENG_MATERIALS" : dbKey;
    isForMaterials = FindTable(store, name).name == "Materials";
  }
  wanted.ReadPolicyAndTag(request);
  request.End();
  for (Exporter const& exporter : kExporters) {
    if (isForMaterials && wanted.Holds(exporter)) {
      WriteExporter(response.append_child("exporter"), exporter);
    }
  }
}

void ExportersForRecords(Store& store, Checker& request, pugi::xml_node response) {
  Wanted wanted;
  bool const needsBoth = BooleanOf(request.Required("eng:packageAndModelRequired"));
  bool const singleOnly = BooleanOf(request.Required("eng:specificAttributeExportersOnly"));
  wanted.ReadPackageAndModel(request);
  if (needsBoth && (wanted.package.empty() || wanted.model.empty())) {
    throw Fault("package and model are required");
  }
  wanted.ReadPolicyAndTag(request);
  auto const records = ReadRecords(store, request.Required("zbt:recordReferences"));
  request.End();
  pugi::xml_node list = response.append_child("records");
  for (Record const& record : records) {
    pugi::xml_node node = list.append_child("record");
    WriteRecord(node.append_child("record"), record);
    pugi::xml_node exporters = node.append_child("exporters");
    if (singleOnly || !IsMaterial(store, record.tableId)) continue;
    std::vector<Figure> const figures = NeededFigures(store, record);
    auto const missing = std::count_if(figures.begin(), figures.end(),
                                       [](Figure const& figure) { return !figure.value; });
    for (Exporter const& exporter : kExporters) {
      if (!wanted.Holds(exporter)) continue;
      pugi::xml_node element = exporters.append_child("exporter");
      WriteExporter(element, exporter);
      AddText(element, "populationState", missing == 0 ? "FullyPopulated" : "PartiallyPopulated");
    }
  }
}

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
  std::string output;
  if (job.stopBefore == 1) {
    output = CollectedOutput(store, job);
  } else if (job.stopBefore > 1) {
    output =
        job.exporter->format == Format::Card ? CardOutput(store, job) : TableOutput(store, job);
  }
  response.append_child(pugi::node_cdata).set_value(output.c_str());
}

}  // namespace sandbox

#include <algorithm>

#include "cli/Options.h"
#include "lumo/toolkit/Catalogue.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

struct ExportChoice : RecordChoice {
  std::string exporter;
  std::vector<std::string> parameters;  ///< "NAME=VALUE" or "NAME=VALUE UNIT"
  UnitChoice units;
  bool listsParameters = false;
};

void ListExporters(Context& context, lumo::Table const& table) {
  auto const exporters = lumo::ExportersOf(table);
  PutOut(context.output, {"key", "name", "version", "package", "description"},
         [&](TableWriter& out) {
           for (auto const& one : exporters) {
             out.Add({one.key, one.name, one.version, one.package, one.description});
           }
         });
}

/// Reads "NAME=VALUE" or "NAME=VALUE UNIT".
lumo::Parameter ParameterOf(std::string const& text) {
  std::size_t const sign = text.find('=');
  if (sign == std::string::npos) {
    Refuse("the parameter " + lumo::Quoted(text) + " needs NAME=VALUE");
  }
  std::string const figure(lumo::Trimmed(std::string_view(text).substr(sign + 1)));
  lumo::Parameter parameter{std::string(lumo::Trimmed(text.substr(0, sign))), figure, ""};
  std::size_t const blank = std::min(figure.find(' '), figure.size());
  double number = 0;
  if (lumo::ReadNumber(figure.substr(0, blank), number)) {
    parameter.value = number;
    parameter.unit = lumo::Trimmed(std::string_view(figure).substr(blank));
  }
  return parameter;
}

/// What the exporter asks for to write the first of the records, or some of the table.
void ListParameters(Context& context, lumo::Table const& table, ExportChoice const& choice) {
  auto const parameters = lumo::ExporterParametersOf(
      table, choice.exporter, choice.records.empty() ? "" : choice.records[0]);
  PutOut(context.output, {"parameter", "unit", "usage", "attribute", "values"},
         [&](TableWriter& out) {
           for (auto const& one : parameters) {
             out.Add({one.name, one.unit, one.usage, one.attribute, lumo::Joined(one.words)});
           }
         });
}

void Export(Context& context, ExportChoice const& choice) {
  lumo::Table const table = context.Connect().OpenTable(choice.database, choice.table);
  if (choice.exporter.empty()) return ListExporters(context, table);
  if (choice.listsParameters) return ListParameters(context, table, choice);
  if (choice.IsWholeTable()) {
    Refuse("say which records to export: RECORD, --folder, --subset, --text, --where");
  }
  std::vector<lumo::Parameter> parameters;
  for (std::string const& text : choice.parameters) parameters.push_back(ParameterOf(text));
  lumo::ReadOptions options = context.ReadOptions();
  choice.units.Fill(options, false);
  auto const records = choice.In(table).Ids(options);
  if (records.empty()) return context.Note("0 records");
  std::string const text = lumo::RunExporter(table, choice.exporter, records, parameters, options);
  Sink sink(context.output.file);
  sink.Write(text);
  sink.Finish();
}

}  // namespace

void AddLinks(CommandLine& line) {
  auto const what = std::make_shared<RecordChoice>();
  CLI::App& links = line.Add(
      "links", "list the records that records are linked to",
      "  $ lumo links ENG_MATERIALS Materials AW-6061-T6", [what](Context& context) {
        lumo::Table const table = context.Connect().OpenTable(what->database, what->table);
        PutOut(context.output, {"record", "group", "identity", "name", "fullName"},
               [&](TableWriter& out) {
                 lumo::ReadLinks(what->In(table), context.ReadOptions(),
                                 [&](lumo::RecordLink const& link) {
                                   out.Add({link.from.name, link.group, link.to.id.identity,
                                            link.to.name, link.to.fullName});
                                 });
               });
      });
  AddRecords(links, *what);
  AddOutput(links, line.Shared().output);
}

void AddExport(CommandLine& line) {
  auto const choice = std::make_shared<ExportChoice>();
  CLI::App& exporting = line.Add(
      "export", "run an exporter of the server",
      "  $ lumo export ENG_MATERIALS Materials\n"
      "  $ lumo export ENG_MATERIALS Materials AW-6061-T6 -e card-2\n"
      "  $ lumo export ENG_MATERIALS Materials AW-6061-T6 -e card-2 --list-parameters\n\n"
      "Without --exporter it lists the exporters. --list-parameters lists what one takes:\n"
      "for RECORD, whose curves tell which values there are, or for the table's first ones.",
      [choice](Context& context) { Export(context, *choice); });
  AddRecords(exporting, *choice);
  exporting.add_option("-e,--exporter", choice->exporter, "key of the exporter")->type_name("KEY");
  exporting
      .add_option("-p,--parameter", choice->parameters,
                  "value of a parameter, \"Temperature=100 degC\"; may be given again")
      ->type_name("NAME=VALUE")
      ->allow_extra_args(false);
  exporting.add_flag("--list-parameters", choice->listsParameters,
                     "list the parameters that the exporter takes");
  AddUnits(exporting, choice->units);
  AddOutput(exporting, line.Shared().output);
}

}  // namespace cli

#include <nlohmann/json.hpp>

#include <map>
#include <string>

#include "cli/Commands.h"
#include "cli/Names.h"
#include "cli/Select.h"
#include "cli/Text.h"

namespace cli {
namespace {

void ListExporters(Context& context, Connection& connection, TableOf const& table) {
  auto const request = GetAvailableExportersRequest::CreateOne();
  request->SetDBKey(table.Key());
  request->SetTable(table.Partial());
  auto const found = connection.Ask<GetAvailableExportersResponse>([&](auto* into) {
    connection.Engineering()->GetGetAvailableExportersImplPtr()->GetAvailableExporters(request,
                                                                                       into);
  });
  Sink sink(context.output.file);
  TableWriter out(context.output, sink, {"key", "name", "version", "package", "description"});
  for (auto const& exporter : found->AccessExporters()) {
    out.Add({exporter->GetKey(), exporter->GetName(), exporter->GetVersion(),
             exporter->GetPackage(), exporter->GetDescription()});
  }
  out.Finish();
}

/// Reads "NAME=VALUE" or "NAME=VALUE UNIT".
UnittedParameterValue ParameterOf(std::string const& text, std::string const& dbKey) {
  std::size_t const sign = text.find('=');
  if (sign == std::string::npos) {
    throw UsageFailure("the parameter \"" + text + "\" needs NAME=VALUE");
  }
  std::string const figure = Trimmed(text.substr(sign + 1));
  std::size_t const blank = figure.find(' ');
  auto value = ParameterValue::CreateOne();
  double number = 0;
  UnittedParameterValue parameter;
  if (ReadNumber(figure.substr(0, blank), number)) {
    value->SetValue_Numeric(number);
    if (blank != std::string::npos) parameter.SetUnitSymbol(Trimmed(figure.substr(blank)));
  } else {
    value->SetValue_Discrete(figure);
  }
  auto reference = ParameterReference::CreateOne();
  reference->SetDBKey(dbKey);
  reference->SetName(Trimmed(text.substr(0, sign)));
  auto both = ParameterReferenceAndValue::CreateOne();
  both->SetParameter(reference);
  both->SetParameterValue(value);
  parameter.SetParameterValue(both);
  return parameter;
}

/// Names of the records that links lead to, by identity.
std::map<int, SmartPtr<TreeRecord>> NamesOf(Connection& connection,
                                            GetLinkedRecordsResponse const& links) {
  std::vector<SmartPtr<RecordReference>> records;
  std::map<int, SmartPtr<TreeRecord>> names;
  for (auto const& source : links.AccessSourceRecords()) {
    for (auto const& group : source->AccessRecordLinkGroups()) {
      for (auto const& record : group->AccessLinkedRecords()) {
        if (names.try_emplace(record->GetIdentity()).second) records.push_back(record);
      }
    }
  }
  if (names.empty()) return names;
  auto const found = TreeRecordsOf(connection, records);
  for (auto const& record : found->AccessTreeRecords()) {
    if (record->GetRecordReference()) names[record->GetRecordReference()->GetIdentity()] = record;
  }
  return names;
}

}  // namespace

void ListLinks(Context& context, Selection const& what) {
  auto const connection = context.Connect();
  TableOf table(*connection, what.database, what.table);
  Sink sink(context.output.file);
  TableWriter out(context.output, sink, {"record", "group", "identity", "name", "fullName"});
  RecordSource source(*connection, table, what, context.chunk);
  Fill(out, [&] {
    while (auto const chunk = source.Next()) {
      auto const request = GetLinkedRecordsRequest::CreateOne();
      std::map<int, std::string> sources;
      for (Entry const& entry : *chunk) {
        request->AddRecordReference(entry.record);
        sources[entry.record->GetIdentity()] = entry.name;
      }
      auto const found = connection->Ask<GetLinkedRecordsResponse>([&](auto* into) {
        connection->Browse()->GetGetLinkedRecordsImpl()->GetLinkedRecords(request, into);
      });
      auto const names = NamesOf(*connection, *found);
      for (auto const& one : found->AccessSourceRecords()) {
        std::string const name =
            one->GetRecord() ? sources[one->GetRecord()->GetIdentity()] : std::string();
        for (auto const& group : one->AccessRecordLinkGroups()) {
          for (auto const& record : group->AccessLinkedRecords()) {
            auto const& target = names.at(record->GetIdentity());
            out.Add({name, group->GetName(), record->GetIdentity(),
                     target ? target->GetShortName() : "", target ? target->GetLongName() : ""});
          }
        }
      }
    }
  });
}

void Export(Context& context, ExportOptions const& options) {
  auto const connection = context.Connect();
  TableOf table(*connection, options.what.database, options.what.table);
  if (options.exporter.empty()) return ListExporters(context, *connection, table);
  if (options.what.records.empty() && options.what.text.empty() &&
      options.what.conditions.empty() && options.what.folder.empty() &&
      options.what.subset.empty()) {
    throw UsageFailure("say which records to export: RECORD, --folder, --subset, --text, --where");
  }
  auto const request = ExportRecordDataRequest::CreateOne();
  request->SetExporterKey(options.exporter);
  RecordSource source(*connection, table, options.what, context.chunk);
  while (auto const chunk = source.Next()) {
    for (Entry const& entry : *chunk) request->AddRecord(entry.record);
  }
  if (request->AccessRecords().empty()) return context.Note("0 records");
  for (std::string const& parameter : options.parameters) {
    request->AddParameterValue(ParameterOf(parameter, table.Key()));
  }
  request->SetUnitConversionContext(UnitsOf(options.unitSystem, options.currency));
  auto const found = connection->Ask<ExportRecordDataResponse>([&](auto* into) {
    connection->Engineering()->GetExportRecordDataImpl()->ExportRecordData(request, into);
  });
  Sink sink(context.output.file);
  sink.Write(found->GetExportResult());
  sink.Flush();
}

}  // namespace cli

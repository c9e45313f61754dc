#include "lumo/toolkit/Catalogue.h"

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/OpenedTable.h"
#include "lumo/toolkit/Relations.h"
#include "lumo/toolkit/Tree.h"

namespace lumo {
namespace {

Value ValueOf(SmartPtr<MinMaxValue> const& value, std::string const& unit) {
  if (!value) return {};
  switch (value->GetType()) {
    case MinMaxValue::Date: return DateTime{value->GetDate()};
    case MinMaxValue::Integer: return std::int64_t{value->GetInteger()};
    case MinMaxValue::Double: return Quantity{value->GetDouble(), unit, false};
    default: return {};
  }
}

SmartPtr<UnitConversionContext> UnitsOf(TableInfo const& table, Connection& connection,
                                        ReadOptions const& options) {
  if (options.unitSystem.empty() && options.currency.empty()) return nullptr;
  auto const pick = [](auto const& names, std::string const& name, char const* what) {
    return name.empty() ? name : names[FindName(names, name, what)];
  };
  auto context = UnitConversionContext::CreateOne();
  context->SetUnitSystem(pick(table.UnitSystems(connection), options.unitSystem, "unit system"));
  context->SetCurrency(pick(table.Currencies(connection), options.currency, "currency"));
  return context;
}

UnittedParameterValue SentForm(Parameter const& parameter, std::string const& dbKey) {
  auto value = ::ParameterValue::CreateOne();
  UnittedParameterValue sent;
  if (auto const* const number = std::get_if<double>(&parameter.value)) {
    value->SetValue_Numeric(*number);
    sent.SetUnitSymbol(parameter.unit);
  } else {
    value->SetValue_Discrete(std::get<std::string>(parameter.value));
  }
  auto reference = ParameterReference::CreateOne();
  reference->SetDBKey(dbKey);
  reference->SetName(parameter.name);
  auto both = ParameterReferenceAndValue::CreateOne();
  both->SetParameter(reference);
  both->SetParameterValue(value);
  sent.SetParameterValue(both);
  return sent;
}

/// The key as the server has it.
std::string KeyOf(Table const& table, std::string const& exporter) {
  std::vector<std::string> keys;
  for (ExporterInfo const& one : ExportersOf(table)) keys.push_back(one.key);
  return keys[FindName(keys, exporter, "exporter")];
}

/// Fills in the names of the records that links lead to.
void FillNames(Connection& connection, std::vector<RecordLink>& links) {
  std::map<int, RecordHead> heads;
  for (RecordLink const& link : links) heads[link.to.id.identity] = link.to;
  std::vector<RecordHead> records;
  records.reserve(heads.size());
  for (auto const& [identity, head] : heads) records.push_back(head);
  FolderPaths().Fill(connection, records);
  for (RecordHead& head : records) heads[head.id.identity] = std::move(head);
  for (RecordLink& link : links) link.to = heads[link.to.id.identity];
}

std::vector<RecordLink> LinksOf(Connection& connection, std::vector<RecordHead> const& records) {
  std::vector<RecordLink> links;
  auto const linked = LinkedRecordsOf(connection, records);
  for (RecordHead const& head : records) {
    auto const found = linked.find(head.id.identity);
    if (found == linked.end()) continue;
    for (auto const& group : found->second) {
      for (RecordId const& id : group.records) {
        links.push_back({head, group.name, RecordHead{id, "", "", ""}});
      }
    }
  }
  FillNames(connection, links);
  return links;
}

/// Enough to find curves among them.
constexpr std::size_t kFirstRecords = 50;

std::vector<RecordId> FirstRecords(Connection& connection, Table const& table) {
  TreeWalk walk(connection, table.Opened()->info, "", "");
  std::vector<RecordId> records;
  TreeWalk::Step step;
  while (records.size() < kFirstRecords &&
         walk.Next(connection, step, std::numeric_limits<int>::max())) {
    if (!step.isFolder) records.push_back(step.record.id);
  }
  return records;
}

/// A parameter that another record has, too, gets the words of both.
void Join(ExporterParameterInfo info, std::vector<ExporterParameterInfo>& parameters) {
  for (ExporterParameterInfo& known : parameters) {
    if (known.name != info.name || known.attribute != info.attribute) continue;
    for (std::string& word : info.words) {
      bool const isNew =
          std::find(known.words.begin(), known.words.end(), word) == known.words.end();
      if (isNew) known.words.push_back(std::move(word));
    }
    return;
  }
  parameters.push_back(std::move(info));
}

void AddWords(AttributeExporterParameters const& attribute, std::string const& id,
              std::vector<std::string>& words) {
  for (auto const& domain : attribute.AccessGraphDomains()) {
    if (!domain) continue;
    for (auto const& one : domain->AccessParameterDomains()) {
      // Most servers do not say which parameter a domain belongs to.
      bool const isOther =
          one && !one->GetExporterParameterId().empty() && one->GetExporterParameterId() != id;
      if (!one || isOther) continue;
      for (auto const& value : one->AccessValues()) {
        if (!value) continue;
        words.push_back(value->GetType() == ::ParameterValue::Numeric
                            ? TextOf(value->GetValue_Numeric())
                            : value->GetValue_Discrete());
      }
    }
  }
}

}  // namespace

std::vector<TableEntry> TablesIn(Client const& client, std::string const& database) {
  auto const connection = client.Pool()->Lend();
  auto const request = GetTables::CreateOne();
  request->SetDBKey(FindDatabase(*connection, database).key);
  auto const found = connection->Ask<GetTablesResponse>(
      [&](auto* into) { connection->Browse()->GetGetTablesImpl()->RequestTables(request, into); });
  std::vector<TableEntry> tables;
  for (auto const& table : found->AccessTableDetails()) {
    if (!table || !table->GetTableReference()) continue;
    auto const reference = table->GetTableReference();
    tables.push_back({reference->GetTableName(), reference->GetTableGUID(),
                      table->AccessAttributeReferences().size()});
  }
  return tables;
}

std::vector<UnitEntry> UnitsIn(Client const& client, std::string const& database) {
  auto const connection = client.Pool()->Lend();
  auto const request = GetUnits::CreateOne();
  request->SetDBKey(FindDatabase(*connection, database).key);
  auto const found = connection->Ask<GetUnitsResponse>(
      [&](auto* into) { connection->Browse()->GetGetUnitsImpl()->GetUnits(request, into); });
  std::vector<UnitEntry> units;
  for (auto const& one : found->AccessDatabases()) {
    for (auto const& unit : one->AccessUnits()) {
      units.push_back({unit->GetSymbol(), unit->GetName()});
    }
  }
  return units;
}

std::vector<UnitStep> ConversionsOf(Client const& client, std::string const& database,
                                    std::string const& unit) {
  std::vector<std::string> symbols;
  for (UnitEntry const& one : UnitsIn(client, database)) symbols.push_back(one.symbol);
  auto const connection = client.Pool()->Lend();
  auto const request = GetUnitConversions::CreateOne();
  request->SetDBKey(FindDatabase(*connection, database).key);
  // Case tells units apart: "mN" is not "MN".
  bool const isKnown = std::find(symbols.begin(), symbols.end(), unit) != symbols.end();
  if (!isKnown) ThrowNotFound("unit", unit, symbols);
  request->AddSourceUnit(unit);
  auto const found = connection->Ask<GetUnitConversionsResponse>([&](auto* into) {
    connection->Browse()->GetGetUnitConversionsImpl()->GetUnitConversions(request, into);
  });
  std::vector<UnitStep> steps;
  for (auto const& source : found->AccessSourceUnits()) {
    for (auto const& one : source->AccessConversions()) {
      steps.push_back({one->GetTargetSymbol(), one->GetFactor(), one->GetOffset()});
    }
  }
  return steps;
}

UnitSystemEntries UnitSystemsIn(Client const& client, std::string const& database) {
  auto const connection = client.Pool()->Lend();
  auto const request = GetUnitSystems::CreateOne();
  request->SetDBKey(FindDatabase(*connection, database).key);
  auto const found = connection->Ask<GetUnitSystemsResponse>([&](auto* into) {
    connection->Browse()->GetGetUnitSystemsImpl()->GetUnitSystems(request, into);
  });
  UnitSystemEntries entries{found->AccessUnitSystems(), {}};
  for (auto const& currency : found->AccessCurrencies()) {
    if (currency) entries.currencies.push_back({currency->GetCode(), currency->GetName()});
  }
  return entries;
}

std::vector<Extent> ExtentsOf(Table const& table) {
  TableInfo const& info = table.Opened()->info;
  auto const connection = table.Opened()->pool->Lend();
  std::vector<Attribute> const& attributes = info.Attributes(*connection);
  std::vector<Extent> extents(attributes.size());
  if (attributes.empty()) return extents;
  auto const request = GetAttributeMinMaxRequest::CreateOne();
  std::map<int, std::size_t> places;
  for (Attribute const& attribute : attributes) {
    places.emplace(attribute.identity, places.size());
    request->AddAttributeReference(info.ReferenceTo(attribute));
  }
  auto const found = connection->Ask<GetAttributeMinMaxResponse>([&](auto* into) {
    connection->Browse()->GetGetAttributeMinMaxImpl()->RequestAttributeMinMax(request, into);
  });
  for (auto const& one : found->AccessMinMaxes()) {
    if (!one || !one->GetAttributeReference()) continue;
    auto const place = places.find(one->GetAttributeReference()->GetAttributeID());
    if (place == places.end()) continue;
    extents[place->second] = {ValueOf(one->GetMin(), one->GetUnit()),
                              ValueOf(one->GetMax(), one->GetUnit())};
  }
  return extents;
}

void WalkTree(Table const& table, std::string const& folder, std::string const& subset, int levels,
              std::function<void(TreeEntry const&)> const& take) {
  auto const connection = table.Opened()->pool->Lend();
  TreeWalk walk(*connection, table.Opened()->info, folder, subset);
  TreeWalk::Step step;
  while (walk.Next(*connection, step, levels - 1)) {
    take({std::move(step.record), step.isFolder, step.depth});
  }
}

void ReadLinks(Selection const& records, ReadOptions const& options,
               std::function<void(RecordLink const&)> const& take) {
  records.ReadHeads(options, [&](Connection& connection, std::vector<RecordHead> const& heads) {
    for (RecordLink const& link : LinksOf(connection, heads)) take(link);
  });
}

std::vector<ExporterInfo> ExportersOf(Table const& table) {
  auto const connection = table.Opened()->pool->Lend();
  auto const request = GetAvailableExportersRequest::CreateOne();
  request->SetDBKey(table.Database());
  request->SetTable(table.Opened()->info.Partial());
  auto const found = connection->Ask<GetAvailableExportersResponse>([&](auto* into) {
    connection->Engineering()->GetGetAvailableExportersImplPtr()->GetAvailableExporters(request,
                                                                                        into);
  });
  std::vector<ExporterInfo> exporters;
  for (auto const& one : found->AccessExporters()) {
    if (!one) continue;
    exporters.push_back({one->GetKey(), one->GetName(), one->GetVersion(), one->GetPackage(),
                         one->GetDescription()});
  }
  return exporters;
}

std::vector<ExporterParameterInfo> ExporterParametersOf(Table const& table,
                                                        std::string const& exporter,
                                                        std::string const& record) {
  auto const connection = table.Opened()->pool->Lend();
  auto const request = GetExporterParametersRequest::CreateOne();
  request->SetExporterKey(KeyOf(table, exporter));
  for (RecordId const& id :
       record.empty()
           ? FirstRecords(*connection, table)
           : std::vector<RecordId>{FindRecord(*connection, table.Opened()->info, record).id}) {
    request->AddRecord(ReferenceTo(id));
  }
  auto const found = connection->Ask<GetExporterParametersResponse>([&](auto* into) {
    connection->Engineering()->GetGetExporterParametersImpl()->GetExporterParameters(request, into);
  });
  std::vector<ExporterParameterInfo> parameters;
  for (auto const& one : found->AccessRecords()) {
    for (auto const& attribute : one->AccessAttributes()) {
      std::string const name =
          attribute->GetAttribute() ? attribute->GetAttribute()->GetName() : std::string();
      for (auto const& parameter : attribute->AccessParameters()) {
        ExporterParameterInfo info{parameter->GetName(), "", parameter->GetUsage(), name, {}};
        if (parameter->GetUnit()) info.unit = parameter->GetUnit()->GetUnitSymbol();
        AddWords(*attribute, parameter->GetId(), info.words);
        Join(std::move(info), parameters);
      }
    }
  }
  return parameters;
}

std::string RunExporter(Table const& table, std::string const& exporter,
                        std::vector<RecordId> const& records,
                        std::vector<Parameter> const& parameters, ReadOptions const& options) {
  std::string const key = KeyOf(table, exporter);
  auto const connection = table.Opened()->pool->Lend();
  connection->Scope().cancel = options.cancel;
  auto const request = ExportRecordDataRequest::CreateOne();
  request->SetExporterKey(key);
  for (RecordId const& id : records) request->AddRecord(ReferenceTo(id));
  for (Parameter const& parameter : parameters) {
    request->AddParameterValue(SentForm(parameter, table.Database()));
  }
  request->SetUnitConversionContext(UnitsOf(table.Opened()->info, *connection, options));
  return connection
      ->Ask<ExportRecordDataResponse>([&](auto* into) {
        connection->Engineering()->GetExportRecordDataImpl()->ExportRecordData(request, into);
      })
      ->GetExportResult();
}

}  // namespace lumo

#include <nlohmann/json.hpp>

#include <map>
#include <string>

#include "cli/Commands.h"
#include "cli/Names.h"
#include "cli/Text.h"
#include "cli/Values.h"

namespace cli {
namespace {

Json MinMaxOf(SmartPtr<MinMaxValue> const& value) {
  if (!value) return nullptr;
  switch (value->GetType()) {
    case MinMaxValue::Date: return value->GetDate();
    case MinMaxValue::Integer: return value->GetInteger();
    case MinMaxValue::Double: return JsonOf(value->GetDouble());
    default: return nullptr;
  }
}

/// Words, columns or parameters: what there is to know of an attribute beside its type.
std::string Remarks(TableOf& table, AttributeDetail const& attribute) {
  std::string const& type = attribute.GetType();
  std::vector<std::string> parts = attribute.AccessDiscreteValues();
  for (auto const& column : attribute.AccessColumns()) {
    parts.push_back(WithUnit(column->GetName(), column->GetDatabaseUnit()));
  }
  if (type == AttributeTypes::FLOAT_FUNCTIONAL_TYPE_STRING ||
      type == AttributeTypes::POINT_TYPE_STRING) {
    for (auto const& [name, detail] : table.Parameters(attribute)) {
      parts.push_back(WithUnit(name, detail->GetUnit()->GetUnitSymbol()));
    }
  }
  return Joined(parts);
}

void ListSystems(Connection& connection, TableWriter& out, std::string const& dbKey) {
  auto const request = GetUnitSystems::CreateOne();
  request->SetDBKey(dbKey);
  auto const found = connection.Ask<GetUnitSystemsResponse>([&](auto* into) {
    connection.Browse()->GetGetUnitSystemsImpl()->GetUnitSystems(request, into);
  });
  for (std::string const& system : found->AccessUnitSystems()) out.Add({"system", system, ""});
  for (auto const& currency : found->AccessCurrencies()) {
    out.Add({"currency", currency->GetCode(), currency->GetName()});
  }
}

void ListConversions(Connection& connection, TableWriter& out, std::string const& dbKey,
                     std::string const& from) {
  auto const request = GetUnitConversions::CreateOne();
  request->SetDBKey(dbKey);
  request->AddSourceUnit(from);
  auto const found = connection.Ask<GetUnitConversionsResponse>([&](auto* into) {
    connection.Browse()->GetGetUnitConversionsImpl()->GetUnitConversions(request, into);
  });
  for (auto const& source : found->AccessSourceUnits()) {
    for (auto const& conversion : source->AccessConversions()) {
      out.Add({source->GetSourceSymbol(), conversion->GetTargetSymbol(),
               JsonOf(conversion->GetFactor()), JsonOf(conversion->GetOffset())});
    }
  }
}

void ListAllUnits(Connection& connection, TableWriter& out, std::string const& dbKey) {
  auto const request = GetUnits::CreateOne();
  request->SetDBKey(dbKey);
  auto const found = connection.Ask<GetUnitsResponse>(
      [&](auto* into) { connection.Browse()->GetGetUnitsImpl()->GetUnits(request, into); });
  for (auto const& database : found->AccessDatabases()) {
    for (auto const& unit : database->AccessUnits()) {
      out.Add({unit->GetSymbol(), unit->GetName()});
    }
  }
}

}  // namespace

void ListDatabases(Context& context) {
  auto const connection = context.Connect();
  auto const found = connection->Ask<GetDatabasesResponse>(
      [&](auto* into) { connection->Browse()->GetGetDatabaseImpl()->GetDatabases(into); });
  Sink sink(context.output.file);
  TableWriter out(context.output, sink, {"key", "name"});
  for (auto const& database : found->AccessDatabases()) {
    out.Add({database->GetDBKey(), database->GetName()});
  }
  out.Finish();
}

void ListTables(Context& context, std::string const& database) {
  auto const connection = context.Connect();
  auto const request = GetTables::CreateOne();
  request->SetDBKey(FindDatabase(*connection, database)->GetDBKey());
  auto const found = connection->Ask<GetTablesResponse>(
      [&](auto* into) { connection->Browse()->GetGetTablesImpl()->RequestTables(request, into); });
  Sink sink(context.output.file);
  TableWriter out(context.output, sink, {"table", "attributes", "guid"});
  for (auto const& table : found->AccessTableDetails()) {
    auto const reference = table->GetTableReference();
    if (!reference) continue;
    out.Add({reference->GetTableName(), table->AccessAttributeReferences().size(),
             reference->GetTableGUID()});
  }
  out.Finish();
}

void PrintTree(Context& context, TreeOptions const& options) {
  auto const connection = context.Connect();
  TableOf const table(*connection, options.from.database, options.from.table);
  TreeWalk walk(*connection, table, options.from.folder, options.from.subset);
  Sink sink(context.output.file);
  bool const isText = context.output.format == Format::Text;
  TableWriter out(context.output, sink, {"identity", "kind", "folder", "name", "fullName"});
  Fill(out, [&] {
    TreeWalk::Step step;
    while (walk.Next(step, options.depth - 1)) {
      Entry const& entry = step.entry;
      if (!isText) {
        out.Add({entry.record->GetIdentity(), step.isFolder ? "folder" : "record", entry.folder,
                 entry.name, entry.fullName});
        continue;
      }
      std::string line(static_cast<std::size_t>(step.depth) * 2, ' ');
      line += OneLine(entry.name) + (step.isFolder ? "/" : "");
      if (!step.isFolder && entry.fullName != entry.name) line += "  " + OneLine(entry.fullName);
      out.AddLine(line);
    }
  });
}

void ListAttributes(Context& context, Selection const& from) {
  auto const connection = context.Connect();
  TableOf table(*connection, from.database, from.table);
  auto const request = GetAttributeMinMaxRequest::CreateOne();
  for (auto const& attribute : table.Attributes()) {
    request->AddAttributeReference(table.ReferenceTo(*attribute));
  }
  auto const found = connection->Ask<GetAttributeMinMaxResponse>([&](auto* into) {
    connection->Browse()->GetGetAttributeMinMaxImpl()->RequestAttributeMinMax(request, into);
  });
  std::map<int, SmartPtr<AttributeMinMax>> ends;
  for (auto const& one : found->AccessMinMaxes()) {
    if (one->GetAttributeReference()) ends[one->GetAttributeReference()->GetAttributeID()] = one;
  }
  Sink sink(context.output.file);
  TableWriter out(context.output, sink, {"name", "type", "unit", "least", "most", "remarks"});
  for (auto const& attribute : table.Attributes()) {
    auto const& end = ends[attribute->GetIdentity()];
    out.Add({attribute->GetName(), attribute->GetType(), attribute->GetDatabaseUnit(),
             end ? MinMaxOf(end->GetMin()) : Json(), end ? MinMaxOf(end->GetMax()) : Json(),
             Remarks(table, *attribute)});
  }
  out.Finish();
}

void ListUnits(Context& context, UnitsOptions const& options) {
  auto const connection = context.Connect();
  std::string const key = FindDatabase(*connection, options.database)->GetDBKey();
  Sink sink(context.output.file);
  std::vector<std::string> columns = {"unit", "name"};
  if (options.systems) columns = {"kind", "name", "fullName"};
  if (!options.from.empty()) columns = {"from", "to", "factor", "offset"};
  TableWriter out(context.output, sink, columns);
  if (options.systems) {
    ListSystems(*connection, out, key);
  } else if (!options.from.empty()) {
    ListConversions(*connection, out, key, options.from);
  } else {
    ListAllUnits(*connection, out, key);
  }
  out.Finish();
}

}  // namespace cli

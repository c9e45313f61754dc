#include <unistd.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "cli/Commands.h"
#include "cli/Plot.h"
#include "cli/Progress.h"
#include "cli/Select.h"
#include "cli/Text.h"
#include "cli/Values.h"
#include "cli/Work.h"

namespace cli {
namespace {

/// A record with its values, in the order of the columns; null for those that it lacks.
struct RecordValues {
  Entry entry;
  std::vector<Json> values;
};

struct Column {
  SmartPtr<AttributeDetail> attribute;
  SmartPtr<AttributeReference> reference;
  std::string unit;

  std::string Heading() const { return WithUnit(attribute->GetName(), unit); }
};

/// Replaces the units of the columns by those that the values will come in.
void ConvertUnits(Connection& connection, std::string const& dbKey,
                  SmartPtr<UnitConversionContext> const& units, std::vector<Column>& columns) {
  if (!units) return;
  auto const request = GetUnitConversions::CreateOne();
  request->SetDBKey(dbKey);
  request->AddUnitConversionContext(units);
  auto const found = connection.Ask<GetUnitConversionsResponse>([&](auto* into) {
    connection.Browse()->GetGetUnitConversionsImpl()->GetUnitConversions(request, into);
  });
  std::map<std::string, std::string> targets;
  for (auto const& context : found->AccessUnitConversionContexts()) {
    for (auto const& conversion : context->AccessConversions()) {
      targets[conversion->GetSourceSymbol()] = conversion->GetTargetSymbol();
    }
  }
  for (Column& column : columns) {
    auto const target = targets.find(column.unit);
    if (target != targets.end()) column.unit = target->second;
  }
}

std::vector<Column> ColumnsOf(TableOf& table, std::vector<std::string> const& names) {
  std::vector<Column> columns;
  auto const add = [&](SmartPtr<AttributeDetail> const& attribute) {
    bool const isThere = std::any_of(columns.begin(), columns.end(), [&](Column const& column) {
      return column.attribute == attribute;
    });
    if (isThere) return;
    columns.push_back({attribute, table.ReferenceTo(*attribute), attribute->GetDatabaseUnit()});
  };
  for (std::string const& name : names) add(table.Attribute(name));
  if (names.empty()) {
    for (auto const& attribute : table.Attributes()) add(attribute);
  }
  return columns;
}

/// Reads the values of a chunk of records; used by all workers at once.
class Reader {
 public:
  Reader(std::vector<Column> const& columns, SmartPtr<UnitConversionContext> units, bool withFiles)
      : m_columns(columns), m_units(std::move(units)), m_withFiles(withFiles) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
      m_places[columns[i].attribute->GetName()] = i;
    }
  }

  std::vector<RecordValues> Read(Connection& connection, std::vector<Entry> const& chunk) const {
    auto const request = GetRecordAttributesByRefRequest::CreateOne();
    for (Entry const& entry : chunk) request->AddRecordReference(entry.record);
    for (Column const& column : m_columns) request->AddAttributeReference(column.reference);
    request->SetUnitConversionContext(m_units);
    request->SetBinaryDataRepresentation(m_withFiles ? BinaryDataRepresentations::Inline
                                                     : BinaryDataRepresentations::URL);
    auto const found = connection.Ask<GetRecordAttributesByRefResponse>([&](auto* into) {
      connection.Export()->GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(request,
                                                                                           into);
    });
    return Ordered(chunk, *found);
  }

 private:
  /// The server may leave records out, and answers in an order of its own.
  std::vector<RecordValues> Ordered(std::vector<Entry> const& chunk,
                                    GetRecordAttributesByRefResponse const& found) const {
    std::map<int, RecordData const*> data;
    for (auto const& record : found.AccessRecordData()) {
      if (record && record->GetRecordReference()) {
        data[record->GetRecordReference()->GetIdentity()] = record.get();
      }
    }
    std::vector<RecordValues> rows;
    for (Entry const& entry : chunk) {
      RecordValues row = {entry, std::vector<Json>(m_columns.size())};
      auto const at = data.find(entry.record->GetIdentity());
      if (at != data.end()) Fill(row, *at->second);
      rows.push_back(std::move(row));
    }
    return rows;
  }

  void Fill(RecordValues& row, RecordData const& data) const {
    for (auto const& value : data.AccessAttributeValues()) {
      auto const place = m_places.find(value->GetAttributeName());
      if (place != m_places.end()) row.values[place->second] = JsonOf(value->GetDataValue().get());
    }
  }

  std::vector<Column> const& m_columns;
  SmartPtr<UnitConversionContext> m_units;
  bool m_withFiles;
  std::map<std::string, std::size_t> m_places;
};

/// Puts records out in the format that is wanted.
class Writer {
 public:
  Writer(Context const& context, std::vector<Column> const& columns)
      : m_format(context.output.format),
        m_columns(columns),
        m_sink(context.output.file),
        m_table(context.output, m_sink, Headings(m_format, columns)) {}

  void Write(RecordValues const& row) {
    if (m_format == Format::Plot) return DrawCurves(row);
    if (m_format == Format::JsonArray || m_format == Format::NdJson) {
      return m_table.AddObject(ObjectOf(row));
    }
    bool const isText = m_format == Format::Text;
    std::vector<Json> cells = {row.entry.name};
    if (!isText) cells = {row.entry.folder, row.entry.name, row.entry.fullName};
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      auto const cell = isText ? ReadableCell : CsvCell;
      cells.emplace_back(cell(row.values[i], m_columns[i].unit));
    }
    m_table.Add(cells);
  }
  void Flush() { m_sink.Flush(); }
  void Finish() {
    if (m_format != Format::Plot) m_table.Finish();
  }

 private:
  static std::vector<std::string> Headings(Format format, std::vector<Column> const& columns) {
    std::vector<std::string> headings = {"Name"};
    if (format == Format::Csv) headings = {"Folder", "Name", "Full name"};
    for (Column const& column : columns) headings.push_back(column.Heading());
    return headings;
  }

  Json ObjectOf(RecordValues const& row) const {
    Json values = Json::object();
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      if (!row.values[i].is_null()) values[m_columns[i].attribute->GetName()] = row.values[i];
    }
    return {{"folder", row.entry.folder},
            {"name", row.entry.name},
            {"fullName", row.entry.fullName},
            {"identity", row.entry.record->GetIdentity()},
            {"values", std::move(values)}};
  }

  void DrawCurves(RecordValues const& row) {
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
      if (!row.values[i].is_object() || !row.values[i].contains("series")) continue;
      m_sink.Write(OneLine(row.entry.name) + ": " + m_columns[i].Heading() + '\n' +
                   Plot(row.values[i]));
    }
  }

  Format m_format;
  std::vector<Column> const& m_columns;
  Sink m_sink;
  TableWriter m_table;
};

}  // namespace

void Get(Context& context, GetOptions const& options) {
  auto const connection = context.Connect();
  TableOf table(*connection, options.what.database, options.what.table);
  std::vector<Column> columns = ColumnsOf(table, options.attributes);
  auto const units = UnitsOf(options.unitSystem, options.currency);
  ConvertUnits(*connection, table.Key(), units, columns);
  bool const isText = context.output.format == Format::Text;
  Reader const reader(columns, units, !options.withoutFiles && !isText);

  RecordSource source(*connection, table, options.what, context.chunk);
  Writer writer(context, columns);
  Progress progress("records", source.Total(), context.isQuiet);
  bool const isOnTerminal = context.output.file.empty() && isatty(STDOUT_FILENO) == 1;
  using Rows = std::vector<RecordValues>;
  Work<std::vector<Entry>, Rows> work([&] { return source.Next(); },
                                      [&](Connection& worker, std::vector<Entry> const& chunk) {
                                        return reader.Read(worker, chunk);
                                      },
                                      [&](Rows&& rows) {
                                        if (isOnTerminal) progress.Clear();
                                        for (RecordValues const& row : rows) writer.Write(row);
                                        if (!isText) writer.Flush();
                                        progress.Add(rows.size());
                                      });
  try {
    work.Run(context.ConnectAll());
  } catch (Failure const& failure) {
    progress.Clear();
    if (*failure.what() == '\0') throw;  // nobody reads on
    writer.Finish();
    if (progress.Done() == 0) throw;
    throw failure.After(Count(progress.Done(), "record"));
  }
  progress.Clear();
  writer.Finish();
}

void Search(Context& context, SearchOptions const& options) {
  if (options.name.empty() && options.what.text.empty() && options.what.conditions.empty()) {
    throw UsageFailure("say what to search for: --text, --name or --where");
  }
  auto const connection = context.Connect();
  TableOf table(*connection, options.what.database, options.what.table);
  std::vector<Entry> const found =
      options.name.empty() ? SearchTable(*connection, table, options.what)
                           : FindByName(*connection, table, options.name, options.what.subset);
  Sink sink(context.output.file);
  TableWriter out(context.output, sink, {"identity", "name", "fullName"});
  for (Entry const& entry : found) {
    out.Add({entry.record->GetIdentity(), entry.name, entry.fullName});
  }
  out.Finish();
  context.Note(Count(found.size(), "record"));
}

}  // namespace cli

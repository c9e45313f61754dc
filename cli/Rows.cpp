#include "cli/Rows.h"

#include <utility>

#include "cli/Cells.h"

namespace cli {
namespace {

using lumo::AttributeType;
using Kind = RowColumn::Kind;

class CsvWriter : public RowWriter {
 public:
  CsvWriter(OutputOptions const& options, RowLayout const& layout, Sink& sink)
      : m_columns(layout, options.ranges), m_table(options, sink, m_columns.Headings()) {}

  void Write(Row const& row) override { m_table.Add(m_columns.CellsOf(row)); }
  void End() override { m_table.End(); }

 private:
  FlatColumns m_columns;
  TableWriter m_table;
};

class JsonWriter : public RowWriter {
 public:
  JsonWriter(OutputOptions const& options, RowLayout const& layout, Sink& sink)
      : m_layout(layout), m_table(options, sink, {}) {}

  void Write(Row const& row) override {
    Json object = Json::object();
    Json values = Json::object();
    bool hasValues = false;
    for (RowColumn const& column : m_layout.columns) {
      switch (column.kind) {
        case Kind::Identity: object["identity"] = row.head.id.identity; break;
        case Kind::Guid: object["guid"] = row.head.id.guid; break;
        case Kind::Folder: object["folder"] = row.head.folder; break;
        case Kind::Name: object["name"] = row.head.name; break;
        case Kind::FullName: object["fullName"] = row.head.fullName; break;
        case Kind::Value: {
          hasValues = true;
          Json value = JsonOf(row.values[column.place]);
          if (!value.is_null()) values[m_layout.AttributeOf(column).name] = std::move(value);
        }
      }
    }
    if (hasValues) object["values"] = std::move(values);
    if (row.relations) {
      object["links"] = Json::object();
      for (auto const& links : row.relations->links) object["links"][links.group] = links.records;
      object["subsets"] = row.relations->subsets;
    }
    m_table.AddObject(object);
  }
  void End() override { m_table.End(); }

 private:
  RowLayout const& m_layout;
  TableWriter m_table;
};

/// Null without a figure; several points say it themselves.
Json IsEstimated(lumo::Value const& value) {
  if (auto const* const range = std::get_if<lumo::Range>(&value)) return range->estimated;
  if (auto const* const one = std::get_if<lumo::Quantity>(&value)) return one->estimated;
  return nullptr;
}

}  // namespace

std::string RowLayout::HeadingOf(RowColumn const& column) const {
  switch (column.kind) {
    case Kind::Identity: return "Identity";
    case Kind::Guid: return "GUID";
    case Kind::Folder: return "Folder";
    case Kind::Name: return "Name";
    case Kind::FullName: return "Full name";
    default: return WithUnit(AttributeOf(column).name, AttributeOf(column).unit);
  }
}

Json RowLayout::HeadCell(Row const& row, RowColumn const& column) const {
  switch (column.kind) {
    case Kind::Identity: return row.head.id.identity;
    case Kind::Guid: return row.head.id.guid;
    case Kind::Folder: return row.head.folder;
    case Kind::Name: return row.head.name;
    case Kind::FullName: return row.head.fullName;
    default: return nullptr;
  }
}

bool FlatColumns::IsSplit(lumo::Attribute const& attribute) const {
  return m_ranges == Ranges::Split && attribute.type == AttributeType::Range;
}

/// Whether a column of its own says which figures are estimated.
bool FlatColumns::SaysEstimated(lumo::Attribute const& attribute) const {
  return m_ranges == Ranges::Split &&
         (attribute.type == AttributeType::Range || attribute.type == AttributeType::Number);
}

/// Whether a column of its own holds what is more than one figure.
bool FlatColumns::HasPoints(lumo::Attribute const& attribute) const {
  return m_ranges != Ranges::Text && attribute.type == AttributeType::Number &&
         !attribute.parameters.empty();
}

std::vector<std::string> FlatColumns::Headings() const {
  std::vector<std::string> headings;
  for (RowColumn const& column : m_layout.columns) {
    if (column.kind != Kind::Value) {
      headings.push_back(m_layout.HeadingOf(column));
      continue;
    }
    lumo::Attribute const& attribute = m_layout.AttributeOf(column);
    // What has figures of several units in JSON is not a column of numbers.
    bool const isJson =
        attribute.type == AttributeType::Curve || attribute.type == AttributeType::Grid;
    if (!IsSplit(attribute)) {
      bool const isBare = m_ranges != Ranges::Text && isJson;
      headings.push_back(WithUnit(attribute.name, isBare ? "" : attribute.unit));
    } else {
      headings.push_back(WithUnit(attribute.name + " low", attribute.unit));
      headings.push_back(WithUnit(attribute.name + " high", attribute.unit));
    }
    if (SaysEstimated(attribute)) headings.push_back(attribute.name + " estimated");
    if (HasPoints(attribute)) headings.push_back(attribute.name + " points");
  }
  return headings;
}

std::vector<Json> FlatColumns::CellsOf(Row const& row) const {
  std::vector<Json> cells;
  for (RowColumn const& column : m_layout.columns) {
    if (column.kind != Kind::Value) {
      cells.push_back(m_layout.HeadCell(row, column));
    } else {
      AddCells(row.values[column.place], m_layout.AttributeOf(column), cells);
    }
  }
  return cells;
}

void FlatColumns::AddCells(lumo::Value const& value, lumo::Attribute const& attribute,
                           std::vector<Json>& cells) const {
  bool const isFigure =
      attribute.type == AttributeType::Range || attribute.type == AttributeType::Number;
  if (attribute.type == AttributeType::Integer) {
    cells.push_back(JsonOf(value));
    return;
  }
  if (m_ranges == Ranges::Text || !isFigure) {
    cells.emplace_back(CsvCell(value, attribute.unit));
    return;
  }
  auto const add = [&](std::optional<double> const& figure) {
    cells.push_back(
        figure ? JsonOf(m_layout.units.Convert(*figure, lumo::UnitIn(value), attribute.unit))
               : Json());
  };
  if (IsSplit(attribute)) {
    auto const* const range = std::get_if<lumo::Range>(&value);
    add(range == nullptr ? std::nullopt : range->low);
    add(range == nullptr ? std::nullopt : range->high);
  } else {
    add(lumo::NumberIn(value));
  }
  if (SaysEstimated(attribute)) cells.push_back(IsEstimated(value));
  if (!HasPoints(attribute)) return;
  bool const isMore = std::holds_alternative<lumo::Points>(value);
  cells.push_back(isMore ? Json(CsvCell(value, attribute.unit)) : Json());
}

std::unique_ptr<RowWriter> MakeRowWriter(OutputOptions const& options, RowLayout const& layout,
                                         Sink& sink) {
  if (options.isLong) return MakeLongWriter(options, layout, sink);
  switch (options.format) {
    case Format::Csv: return std::make_unique<CsvWriter>(options, layout, sink);
    case Format::JsonArray:
    case Format::NdJson: return std::make_unique<JsonWriter>(options, layout, sink);
    case Format::Plot: return MakePlotWriter(layout, sink);
    case Format::Xlsx: return MakeXlsxWriter(layout, sink);
    default: return MakeTextWriter(options, layout, sink);
  }
}

}  // namespace cli

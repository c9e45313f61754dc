#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/Output.h"
#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Columns.h"
#include "lumo/toolkit/RecordHead.h"
#include "lumo/toolkit/Relations.h"
#include "lumo/toolkit/Units.h"

namespace cli {

/// A record with the values of some attributes.
struct Row {
  lumo::RecordHead head = {};
  std::vector<lumo::Value> values = {};  ///< in the order of `RowLayout::attributes`
  std::optional<lumo::Relations> relations = {};
};

/// One column of a list of records.
struct RowColumn {
  enum class Kind { Identity, Guid, Folder, Name, FullName, Value };
  Kind kind = Kind::Value;
  std::size_t place = 0;  ///< of the attribute
};

/// What is shown of records.
struct RowLayout {
  std::vector<lumo::Attribute> attributes;  ///< that were read, with the units of their figures
  lumo::Units units;
  std::vector<RowColumn> columns;

  /// Of a column that shows a value.
  lumo::Attribute const& AttributeOf(RowColumn const& column) const {
    return attributes[column.place];
  }
  std::string HeadingOf(RowColumn const& column) const;
  /// What stands there; null for a column that shows a value.
  Json HeadCell(Row const& row, RowColumn const& column) const;
};

/// Puts records out in one of the forms.
class RowWriter {
 public:
  RowWriter() = default;
  virtual ~RowWriter() = default;
  RowWriter(RowWriter const&) = delete;
  RowWriter& operator=(RowWriter const&) = delete;

  virtual void Write(Row const& row) = 0;
  /// Called after each chunk.
  virtual void Flush() {}
  /// Ends the list, also one that a failure has cut.
  virtual void End() = 0;
};

/// Values as plain cells: texts, and numbers in columns of their own.
class FlatColumns {
 public:
  FlatColumns(RowLayout const& layout, Ranges ranges) : m_layout(layout), m_ranges(ranges) {}

  std::vector<std::string> Headings() const;
  std::vector<Json> CellsOf(Row const& row) const;

 private:
  bool IsSplit(lumo::Attribute const& attribute) const;
  bool SaysEstimated(lumo::Attribute const& attribute) const;
  bool HasPoints(lumo::Attribute const& attribute) const;
  void AddCells(lumo::Value const& value, lumo::Attribute const& attribute,
                std::vector<Json>& cells) const;

  RowLayout const& m_layout;
  Ranges m_ranges;
};

/// The long form of one attribute: a row for each point of its curves, or for each row of its
/// tables.
class LongRows {
 public:
  /// Throws `lumo::Error` unless the attribute has such a form.
  LongRows(lumo::Attribute const& attribute, lumo::Units const& units)
      : m_builder(lumo::ColumnBuilder::Long(attribute, units)) {}

  std::vector<std::string> Headings() const;
  void Add(lumo::RecordHead const& head, lumo::Value const& value) { m_builder.Add(head, {value}); }
  /// The rows since the last time.
  std::vector<std::vector<Json>> Take();

 private:
  lumo::ColumnBuilder m_builder;
};

/// In the form that the options name.
std::unique_ptr<RowWriter> MakeRowWriter(OutputOptions const& options, RowLayout const& layout,
                                         Sink& sink);
/// Text for reading: a line for each record, or one for each attribute.
std::unique_ptr<RowWriter> MakeTextWriter(OutputOptions const& options, RowLayout const& layout,
                                          Sink& sink);
/// The long form of the first attribute.
std::unique_ptr<RowWriter> MakeLongWriter(OutputOptions const& options, RowLayout const& layout,
                                          Sink& sink);
/// A spreadsheet: a sheet for the records, and one for each attribute with curves or tables.
std::unique_ptr<RowWriter> MakeXlsxWriter(RowLayout const& layout, Sink& sink);
/// Curves, those of all records in one frame.
std::unique_ptr<RowWriter> MakePlotWriter(RowLayout const& layout, Sink& sink);

}  // namespace cli

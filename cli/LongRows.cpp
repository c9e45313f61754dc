#include <utility>

#include "cli/Rows.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

Json CellOf(lumo::Column const& column, std::size_t row) {
  using lumo::ColumnType;
  if (!column.IsValid(row)) return nullptr;
  switch (column.field.type) {
    case ColumnType::Integer: return column.integers[row];
    case ColumnType::Number: return JsonOf(column.numbers[row]);
    case ColumnType::Logical: return column.Logical(row);
    case ColumnType::Moment: return lumo::DateTime::FromMicroseconds(column.integers[row]).text;
    case ColumnType::Words: {
      std::vector<std::string> words;
      for (std::string_view const word : column.Words(row)) words.emplace_back(word);
      return lumo::Joined(words);
    }
    default: return column.Text(row);
  }
}

/// "Yield strength.low" as "Yield strength low"; the names of records as elsewhere.
std::string HeadingOf(lumo::Field const& field) {
  if (field.name == "record.identity") return "Identity";
  if (field.name == "record.guid") return "GUID";
  if (field.name == "record.name") return "Name";
  std::string heading = field.name;
  bool const isPart = !field.attribute.empty() && heading.size() > field.attribute.size() &&
                      heading.compare(0, field.attribute.size(), field.attribute) == 0;
  if (isPart) heading[field.attribute.size()] = ' ';
  return WithUnit(heading, field.unit);
}

class LongWriter : public RowWriter {
 public:
  LongWriter(OutputOptions const& options, RowLayout const& layout, Sink& sink)
      : m_rows(layout.attributes.at(0), layout.units), m_table(options, sink, m_rows.Headings()) {}

  void Write(Row const& row) override { m_rows.Add(row.head, row.values[0]); }
  void Flush() override {
    for (auto const& cells : m_rows.Take()) m_table.Add(cells);
  }
  void End() override {
    Flush();
    m_table.End();
  }

 private:
  LongRows m_rows;
  TableWriter m_table;
};

}  // namespace

std::vector<std::string> LongRows::Headings() const {
  std::vector<std::string> headings;
  for (lumo::Field const& field : m_builder.Fields()) headings.push_back(HeadingOf(field));
  return headings;
}

std::vector<std::vector<Json>> LongRows::Take() {
  auto const columns = m_builder.Take();
  std::vector<std::vector<Json>> rows(columns->rows);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (lumo::Column const& column : columns->columns) rows[i].push_back(CellOf(column, i));
  }
  return rows;
}

std::unique_ptr<RowWriter> MakeLongWriter(OutputOptions const& options, RowLayout const& layout,
                                          Sink& sink) {
  return std::make_unique<LongWriter>(options, layout, sink);
}

}  // namespace cli

#include <algorithm>
#include <utility>

#include "lumo/toolkit/ImportCheck.h"
#include "lumo/toolkit/ImportParts.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TypedText.h"

namespace lumo {
namespace {

struct Column {
  std::string ImportRow::*text = nullptr;  ///< of a heading that is not an attribute
  bool isIdentity = false;
  bool isGuid = false;
  Attribute const* attribute = nullptr;
  std::string unit = {};
  bool isEmpty = false;   ///< without a heading, or with one that was refused
  bool isRemark = false;  ///< says why a row was refused before
};

bool IsBlank(std::string const& cell) { return Trimmed(cell).empty(); }

class Sheet {
 public:
  Sheet(OpenedTable& table, std::vector<RowFault>& faults, Import::SheetOptions const& options)
      : m_attributes(table.info.Attributes(*table.pool->Lend())),
        m_check(table.info.KnownUnits(*table.pool->Lend()), table.info.DatabaseKey(), 0),
        m_faults(faults),
        m_options(options) {}

  void ReadHeadings(std::vector<std::string> const& headings) {
    for (std::string const& heading : headings) {
      try {
        m_columns.push_back(ColumnOf(std::string(Trimmed(heading))));
      } catch (Error const& error) {
        m_columns.emplace_back();
        m_columns.back().isEmpty = true;
        m_faults.push_back({std::string(Trimmed(heading)), WhyOf(error, heading)});
      }
    }
  }

  ImportRow RowOf(std::vector<std::string> const& cells, std::size_t number) const {
    ImportRow row;
    row.number = number;
    std::size_t count = cells.size();
    while (count > 0 && IsBlank(cells[count - 1])) --count;
    if (count > m_columns.size()) {
      row.faults.push_back({"", std::to_string(count) + " cells under " +
                                    std::to_string(m_columns.size()) + " headings"});
    }
    for (std::size_t i = 0; i < std::min(count, m_columns.size()); ++i) {
      if (!IsBlank(cells[i])) AddCell(row, m_columns[i], cells[i]);
    }
    return row;
  }

 private:
  Column ColumnOf(std::string const& heading) {
    Column column;
    if (heading.empty()) {
      column.isEmpty = true;
      return column;
    }
    constexpr std::pair<char const*, std::string ImportRow::*> kTexts[] = {
        {"Folder", &ImportRow::folder},
        {"Name", &ImportRow::name},
        {"Full name", &ImportRow::fullName}};
    for (auto const& [name, text] : kTexts) {
      if (EqualIgnoringCase(heading, name)) column.text = text;
    }
    if (EqualIgnoringCase(heading, "why")) {
      column.isEmpty = column.isRemark = true;
      return column;
    }
    column.isIdentity = EqualIgnoringCase(heading, "Identity");
    column.isGuid = EqualIgnoringCase(heading, "GUID");
    if (column.text == nullptr && !column.isIdentity && !column.isGuid) {
      Heading const read = ReadHeading(heading, m_attributes);
      column.attribute = read.attribute;
      column.unit = read.unit;
      if (!read.unit.empty()) m_check.CheckUnit(read.unit, read.attribute->unit);
    }
    bool const isRepeated =
        std::any_of(m_columns.begin(), m_columns.end(), [&](Column const& other) {
          return !other.isEmpty && other.text == column.text &&
                 other.attribute == column.attribute && other.isGuid == column.isGuid &&
                 other.isIdentity == column.isIdentity;
        });
    if (isRepeated) throw Error(ErrorCode::InvalidArgument, "the heading comes twice");
    return column;
  }

  void AddCell(ImportRow& row, Column const& column, std::string const& cell) const {
    std::string const text(Trimmed(cell));
    if (column.isEmpty) {
      if (m_faults.empty() && !column.isRemark)
        row.faults.push_back({"", Quoted(text) + " has no heading"});
    } else if (column.text != nullptr) {
      row.*column.text = text;
    } else if (column.isGuid) {
      row.id.guid = text;
    } else if (column.isIdentity) {
      std::string const number = StartsIgnoringCase(text, "id:") ? text.substr(3) : text;
      if (!ReadInteger(number, row.id.identity) || row.id.identity <= 0) {
        row.faults.push_back({"Identity", Quoted(text) + " is not an identity"});
      }
    } else {
      AddValue(row, column, cell);
    }
  }

  void AddValue(ImportRow& row, Column const& column, std::string const& cell) const {
    std::string const& name = column.attribute->name;
    bool const isText = column.attribute->type == AttributeType::Text ||
                        column.attribute->type == AttributeType::LongText;
    bool const isOther = !isText && (cell[0] == '{' || cell[0] == '[');
    if (!isOther || !m_options.readCell) {
      row.values.push_back({name, TypedText{cell, column.unit, m_options.hasDecimalComma}});
      return;
    }
    try {
      row.values.push_back({name, m_options.readCell(cell, *column.attribute)});
    } catch (Error const& error) {
      row.faults.push_back({name, WhyOf(error, name)});
    }
  }

  std::vector<Attribute> const& m_attributes;
  ImportCheck m_check;
  std::vector<RowFault>& m_faults;
  Import::SheetOptions const& m_options;
  std::vector<Column> m_columns;
};

}  // namespace

Import& Import::AddSheet(std::vector<std::string> const& headings,
                         std::vector<std::vector<std::string>> const& rows,
                         SheetOptions const& options) {
  Sheet sheet(*m_parts->table, m_parts->faults, options);
  sheet.ReadHeadings(headings);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (std::all_of(rows[i].begin(), rows[i].end(), IsBlank)) continue;
    Add(sheet.RowOf(rows[i], options.headingRow + 1 + i));
  }
  return *this;
}

}  // namespace lumo

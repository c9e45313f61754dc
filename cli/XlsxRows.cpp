#include <xlsxwriter.h>

#include <algorithm>
#include <set>
#include <utility>

#include "cli/PassingFile.h"
#include "cli/Rows.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

using lumo::AttributeType;

constexpr std::size_t kLongestSheetName = 31;
constexpr std::size_t kWidest = 40;
constexpr std::size_t kMostRows = 1'048'576;
constexpr std::size_t kLongestCell = 32'767;

/// A sheet with a frozen line of bold headings.
class Sheet {
 public:
  Sheet(lxw_workbook* book, lxw_format* bold, std::string const& name,
        std::vector<std::string> const& headings)
      : m_sheet(workbook_add_worksheet(book, name.c_str())) {
    for (std::size_t i = 0; i < headings.size(); ++i) {
      auto const column = static_cast<lxw_col_t>(i);
      worksheet_write_string(m_sheet, 0, column, headings[i].c_str(), bold);
      double const width = static_cast<double>(std::min(kWidest, Width(headings[i]) + 2));
      worksheet_set_column(m_sheet, column, column, width, nullptr);
    }
    worksheet_freeze_panes(m_sheet, 1, 0);
  }

  void Add(std::vector<Json> const& cells) {
    if (++m_row >= kMostRows) Refuse("a sheet holds 1048575 records; use -f csv");
    for (std::size_t i = 0; i < cells.size(); ++i) {
      auto const row = static_cast<lxw_row_t>(m_row);
      auto const column = static_cast<lxw_col_t>(i);
      if (cells[i].is_number()) {
        worksheet_write_number(m_sheet, row, column, cells[i].get<double>(), nullptr);
      } else if (cells[i].is_boolean()) {
        worksheet_write_boolean(m_sheet, row, column, cells[i].get<bool>() ? 1 : 0, nullptr);
      } else if (!cells[i].is_null()) {
        std::string const text = CellText(cells[i]);
        if (text.size() > kLongestCell) continue;  // no cell holds it; curves have sheets
        worksheet_write_string(m_sheet, row, column, text.c_str(), nullptr);
      }
    }
  }

 private:
  lxw_worksheet* m_sheet;
  std::size_t m_row = 0;
};

class XlsxWriter : public RowWriter {
 public:
  XlsxWriter(RowLayout const& layout, Sink& sink)
      : m_layout(WithoutLong(layout)),
        m_long(layout),
        m_sink(sink),
        m_flat(m_layout, Ranges::Split) {
    m_book = workbook_new(m_file.Name().c_str());
    if (m_book == nullptr) throw std::bad_alloc();
    m_bold = workbook_add_format(m_book);
    format_set_bold(m_bold);
    m_records = std::make_unique<Sheet>(m_book, m_bold, SheetName("Records"), m_flat.Headings());
    for (RowColumn const& column : layout.columns) {
      if (!IsLong(layout, column)) continue;
      LongSheet sheet{column.place, LongRows(layout.AttributeOf(column), layout.units), nullptr};
      m_sheets.push_back(std::move(sheet));
    }
  }
  ~XlsxWriter() override {
    if (m_book != nullptr) lxw_workbook_free(m_book);
  }

  void Write(Row const& row) override {
    m_records->Add(m_flat.CellsOf(row));
    for (LongSheet& one : m_sheets) {
      one.rows.Add(row.head, row.values[one.place]);
      for (auto const& cells : one.rows.Take()) {
        if (!one.sheet) one.sheet = MakeSheet(one);
        one.sheet->Add(cells);
      }
    }
  }

  void End() override {
    lxw_error const error = workbook_close(std::exchange(m_book, nullptr));
    if (error != LXW_NO_ERROR) {
      throw Failure(ExitCode::PartlyDone,
                    std::string("cannot make the spreadsheet: ") + lxw_strerror(error));
    }
    m_sink.Write(m_file.Content());
    m_sink.Flush();
  }

 private:
  struct LongSheet {
    std::size_t place;
    LongRows rows;
    std::unique_ptr<Sheet> sheet;  ///< made when there is something in it
  };

  static bool IsLong(RowLayout const& layout, RowColumn const& column) {
    if (column.kind != RowColumn::Kind::Value) return false;
    AttributeType const type = layout.AttributeOf(column).type;
    return type == AttributeType::Curve || type == AttributeType::Grid;
  }
  /// Pictures and files have no place in a cell either.
  static RowLayout WithoutLong(RowLayout layout) {
    RowLayout const whole = layout;
    auto const isOut = [&whole](RowColumn const& column) {
      if (column.kind != RowColumn::Kind::Value) return false;
      AttributeType const type = whole.AttributeOf(column).type;
      return IsLong(whole, column) || type == AttributeType::File || type == AttributeType::Picture;
    };
    auto& columns = layout.columns;
    columns.erase(std::remove_if(columns.begin(), columns.end(), isOut), columns.end());
    return layout;
  }

  std::unique_ptr<Sheet> MakeSheet(LongSheet const& one) {
    return std::make_unique<Sheet>(m_book, m_bold, SheetName(m_long.attributes[one.place].name),
                                   one.rows.Headings());
  }

  /// A name that a sheet may have and no other one has.
  std::string SheetName(std::string name) {
    for (char& c : name) {
      if (std::string("[]:*?/\\'").find(c) != std::string::npos) c = ' ';
    }
    std::string unique = Shortened(name, kLongestSheetName);
    for (int i = 2; !m_names.insert(lumo::Lower(unique)).second; ++i) {
      std::string const number = " " + std::to_string(i);
      unique = Shortened(name, kLongestSheetName - number.size()) + number;
    }
    return unique;
  }

  RowLayout m_layout;  // of the records' sheet
  RowLayout const& m_long;
  Sink& m_sink;
  FlatColumns m_flat;
  PassingFile m_file;
  lxw_workbook* m_book = nullptr;
  lxw_format* m_bold = nullptr;
  std::unique_ptr<Sheet> m_records;
  std::vector<LongSheet> m_sheets;
  std::set<std::string> m_names;
};

}  // namespace

std::unique_ptr<RowWriter> MakeXlsxWriter(RowLayout const& layout, Sink& sink) {
  return std::make_unique<XlsxWriter>(layout, sink);
}

}  // namespace cli

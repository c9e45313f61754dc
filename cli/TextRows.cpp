#include <algorithm>
#include <cmath>
#include <utility>

#include "cli/Cells.h"
#include "cli/Rows.h"
#include "lumo/toolkit/Numbers.h"

namespace cli {
namespace {

using Kind = RowColumn::Kind;
using Lines = std::vector<std::vector<std::string>>;

constexpr std::size_t kHeldRows = 500;
constexpr std::size_t kWidestName = 40;
constexpr int kDigits = 6;

std::string Short(double number) { return lumo::TextOf(number, kDigits); }

/// Lines of cells below each other, the first one as headings.
std::string Aligned(Lines const& lines, std::string const& indent) {
  std::vector<std::size_t> widths;
  for (auto const& line : lines) {
    widths.resize(std::max(widths.size(), line.size()));
    for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], Width(line[i]));
  }
  std::string text;
  for (auto const& line : lines) {
    std::string one = indent;
    for (std::size_t i = 0; i < line.size(); ++i) one += Padded(line[i], widths[i]) + "  ";
    text += one.substr(0, one.find_last_not_of(' ') + 1) + '\n';
  }
  return text;
}

/// What a cell only counts: tables, points and curves in full; empty for all else.
struct InFull {
  std::string const indent;

  std::string operator()(lumo::Points const& points) const {
    Lines lines;
    for (lumo::Point const& point : points.points) {
      lines.push_back({Short(point.value) + " " + points.unit, TextOf(point.parameters)});
    }
    return Aligned(lines, indent);
  }
  std::string operator()(lumo::Curves const& curves) const {
    std::string text;
    for (lumo::Curve const& curve : curves.curves) {
      std::string const label = TextOf(curve.parameters);
      if (!label.empty()) text += indent + label + '\n';
      text += Aligned(LinesOf(curve), indent);
    }
    return text;
  }
  std::string operator()(std::shared_ptr<lumo::Grid const> const& grid) const {
    Lines lines(1);
    for (auto const& column : grid->columns) lines[0].push_back(WithUnit(column.name, column.unit));
    for (auto const& row : grid->rows) {
      std::vector<std::string> line;
      for (std::size_t i = 0; i < row.cells.size(); ++i) {
        line.push_back(OneLine(ReadableCell(row.cells[i], grid->columns[i].unit)));
      }
      lines.push_back(std::move(line));
    }
    return Aligned(lines, indent);
  }
  template <class Other>
  std::string operator()(Other const& /*other*/) const {
    return "";
  }

  static Lines LinesOf(lumo::Curve const& curve) {
    Lines lines = {{WithUnit(curve.xName, curve.xUnit), curve.yUnit}};
    for (std::size_t i = 0; i < curve.x.size(); ++i) {
      bool const hasWord = std::isnan(curve.x[i]) && !curve.xWords.empty();
      bool const isRange = !curve.yHigh.empty() && !std::isnan(curve.yHigh[i]);
      std::string y = Short(curve.y[i]);
      if (isRange) y += " to " + Short(curve.yHigh[i]);
      if (!curve.estimated.empty() && curve.estimated[i]) y.insert(0, "~");
      lines.push_back({hasWord ? curve.xWords[i] : Short(curve.x[i]), y});
    }
    return lines;
  }
};

class TextWriter : public RowWriter {
 public:
  TextWriter(OutputOptions const& options, RowLayout const& layout, Sink& sink)
      : m_layout(layout), m_sink(sink), m_options(options), m_table(options, sink, Headings()) {
    if (options.format == Format::List) m_form = Form::Full;
  }

  void Write(Row const& row) override {
    if (m_form == Form::Table) return m_table.Add(CellsOf(row));
    if (m_form != Form::Open) return WriteList(row);
    m_held.push_back(row);
    if (m_held.size() == kHeldRows) Decide();
  }
  void End() override {
    if (m_form == Form::Open) Decide();
    m_table.End();
  }

 private:
  enum class Form { Open, Table, List, Full };

  std::vector<std::string> Headings() const {
    std::vector<std::string> headings;
    for (RowColumn const& column : m_layout.columns) {
      headings.push_back(m_layout.HeadingOf(column));
    }
    return headings;
  }

  std::vector<Json> CellsOf(Row const& row) const {
    std::vector<Json> cells;
    for (RowColumn const& column : m_layout.columns) cells.push_back(CellOf(row, column));
    return cells;
  }
  Json CellOf(Row const& row, RowColumn const& column) const {
    if (column.kind != Kind::Value) return m_layout.HeadCell(row, column);
    return ReadableCell(row.values[column.place], m_layout.AttributeOf(column).unit);
  }

  /// Whether the rows that there are fit on the terminal side by side.
  bool IsTooWide() const {
    std::size_t const most = m_sink.Screen().width;
    if (most == 0) return false;
    std::size_t width = 0;
    for (RowColumn const& column : m_layout.columns) {
      std::size_t widest = Width(m_layout.HeadingOf(column));
      for (Row const& row : m_held) {
        widest = std::max(widest, Width(CellText(CellOf(row, column))));
      }
      width += widest + 2;
    }
    return width > most + 2;
  }

  /// One record, and what is too wide for the terminal, an attribute a line.
  void Decide() {
    bool const hasValues =
        std::any_of(m_layout.columns.begin(), m_layout.columns.end(),
                    [](RowColumn const& column) { return column.kind == Kind::Value; });
    bool const isList = !m_options.isBare && hasValues && (m_held.size() == 1 || IsTooWide());
    m_form = isList ? Form::List : Form::Table;
    for (Row const& row : std::exchange(m_held, {})) Write(row);
  }

  void WriteList(Row const& row) {
    std::string text = m_count++ == 0 ? "" : "\n";
    bool const hasColor = m_sink.Screen().hasColor;
    text += (hasColor ? "\033[1m" : "") + OneLine(row.head.name) + (hasColor ? "\033[0m" : "");
    if (row.head.fullName != row.head.name) text += "  " + OneLine(row.head.fullName);
    text += '\n';
    std::size_t width = 0;
    for (RowColumn const& column : m_layout.columns) {
      if (IsShown(row, column)) width = std::max(width, Width(NameOf(column)));
    }
    width = std::min(width, kWidestName);
    for (RowColumn const& column : m_layout.columns) {
      if (IsShown(row, column)) text += LineOf(row, column, width);
    }
    m_sink.Write(text);
  }

  std::string NameOf(RowColumn const& column) const {
    return column.kind == Kind::Value ? m_layout.AttributeOf(column).name
                                      : m_layout.HeadingOf(column);
  }
  /// Names stand in the first line, and missing values nowhere.
  static bool IsShown(Row const& row, RowColumn const& column) {
    if (column.kind == Kind::Name || column.kind == Kind::FullName) return false;
    return column.kind != Kind::Value ||
           !std::holds_alternative<std::monostate>(row.values[column.place]);
  }

  std::string LineOf(Row const& row, RowColumn const& column, std::size_t width) const {
    std::string line = "  " + Padded(NameOf(column), width) + "  ";
    if (column.kind != Kind::Value) {
      return line + OneLine(CellText(m_layout.HeadCell(row, column))) + '\n';
    }
    lumo::Value const& value = row.values[column.place];
    std::string const& unit = m_layout.AttributeOf(column).unit;
    std::string const full = m_form == Form::Full ? std::visit(InFull{"      "}, value) : "";
    bool const isFigure = lumo::NumberIn(value) && lumo::UnitIn(value) == unit;
    line += OneLine(ReadableCell(value, unit)) + (isFigure && !unit.empty() ? " " + unit : "");
    return line.substr(0, line.find_last_not_of(' ') + 1) + '\n' + full;
  }

  RowLayout const& m_layout;
  Sink& m_sink;
  OutputOptions const& m_options;
  TableWriter m_table;
  Form m_form = Form::Open;
  std::vector<Row> m_held;
  std::size_t m_count = 0;
};

}  // namespace

std::unique_ptr<RowWriter> MakeTextWriter(OutputOptions const& options, RowLayout const& layout,
                                          Sink& sink) {
  return std::make_unique<TextWriter>(options, layout, sink);
}

}  // namespace cli

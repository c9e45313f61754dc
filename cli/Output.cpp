#include "cli/Output.h"

#include <algorithm>
#include <utility>

namespace cli {
namespace {

constexpr std::size_t kHeldRows = 500;
constexpr std::size_t kLeastWidth = 12;

/// What people read above a column; its key is that of JSON.
std::string HeadingOf(std::string const& key) { return key == "fullName" ? "full name" : key; }

}  // namespace

std::string CsvLine(std::vector<std::string> const& cells, char delimiter) {
  std::string const special = std::string("\"\r\n") + delimiter;
  std::string line;
  for (std::string const& cell : cells) {
    if (&cell != &cells.front()) line += delimiter;
    bool const isPlain = cell.find_first_of(special) == std::string::npos &&
                         cell.find_first_of(" \t") != 0 && !(cells.size() == 1 && cell.empty());
    if (isPlain) {
      line += cell;
      continue;
    }
    line += '"';
    for (char const c : cell) line += c == '"' ? std::string("\"\"") : std::string(1, c);
    line += '"';
  }
  return line + '\n';
}

std::string CellText(Json const& cell) {
  if (cell.is_null()) return "";
  return cell.is_string() ? cell.get<std::string>()
                          : cell.dump(-1, ' ', false, Json::error_handler_t::replace);
}

TableWriter::TableWriter(OutputOptions const& options, Sink& sink, std::vector<std::string> columns)
    : m_options(options), m_sink(sink), m_columns(std::move(columns)) {
  if (m_options.format == Format::Csv && !m_options.isBare) {
    m_sink.Write(CsvLine(m_columns, m_options.delimiter));
  }
}

void TableWriter::AddLine(std::string const& line) {
  ++m_count;
  m_sink.Write(line + '\n');
}

void TableWriter::Add(std::vector<Json> const& cells) {
  if (m_options.IsJson()) {
    Json object = Json::object();
    for (std::size_t i = 0; i < cells.size(); ++i) object[m_columns.at(i)] = cells[i];
    return AddObject(object);
  }
  std::vector<std::string> texts;
  texts.reserve(cells.size());
  for (Json const& cell : cells) texts.push_back(CellText(cell));
  ++m_count;
  if (m_options.format == Format::Csv) {
    return m_sink.Write(CsvLine(texts, m_options.delimiter));
  }
  for (std::string& text : texts) text = OneLine(text);
  m_held.push_back(std::move(texts));
  if (m_held.size() >= kHeldRows) FlushText();
}

void TableWriter::AddObject(Json const& object) {
  ++m_count;
  std::string const text = object.dump(-1, ' ', false, Json::error_handler_t::replace);
  if (m_options.format == Format::NdJson) return m_sink.Write(text + '\n');
  m_sink.Write((m_isBegun ? ",\n" : "[\n") + text);
  m_isBegun = true;
}

/// On a terminal the widest columns give way, as far as they can be read then.
void TableWriter::FitScreen() {
  std::size_t const screen = m_sink.Screen().width;
  if (screen == 0) return;
  std::size_t most = *std::max_element(m_widths.begin(), m_widths.end());
  auto const isTooWide = [&] {
    std::size_t all = 2 * (m_widths.size() - 1);
    for (std::size_t const width : m_widths) all += std::min(width, most);
    return all > screen;
  };
  while (most > kLeastWidth && isTooWide()) --most;
  for (std::size_t& width : m_widths) width = std::min(width, most);
}

void TableWriter::FlushText() {
  m_widths.resize(m_columns.size());
  std::vector<std::string> headings;
  for (std::string const& column : m_columns) headings.push_back(HeadingOf(column));
  if (!m_isBegun && !m_options.isBare) {
    for (std::size_t i = 0; i < headings.size(); ++i) m_widths[i] = Width(headings[i]);
  }
  for (auto const& row : m_held) {
    for (std::size_t i = 0; i < row.size(); ++i) m_widths[i] = std::max(m_widths[i], Width(row[i]));
  }
  FitScreen();
  auto const line = [this](std::vector<std::string> const& cells) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      std::string cell = Shortened(cells[i], m_widths[i]);
      text += i + 1 == cells.size() ? cell : Padded(std::move(cell), m_widths[i]) + "  ";
    }
    return text.substr(0, text.find_last_not_of(' ') + 1);
  };
  if (!m_isBegun && !m_options.isBare && !m_held.empty()) {
    bool const hasColor = m_sink.Screen().hasColor;
    m_sink.Write((hasColor ? "\033[1m" : "") + line(headings) + (hasColor ? "\033[0m\n" : "\n"));
  }
  m_isBegun = true;
  for (auto const& row : m_held) m_sink.Write(line(row) + '\n');
  m_held.clear();
}

void TableWriter::End() {
  if (m_options.format == Format::JsonArray) {
    m_sink.Write(m_isBegun ? "\n]\n" : "[]\n");
  } else if (!m_held.empty()) {
    FlushText();
  }
  m_sink.Flush();
}

}  // namespace cli

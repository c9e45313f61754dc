#include "cli/Output.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "cli/Interrupt.h"

namespace cli {
namespace {

constexpr std::size_t kBuffered = 65536;
constexpr int kPollMs = 100;
constexpr std::size_t kHeldRows = 500;
constexpr std::size_t kWidest = 60;

std::string Padded(std::string text, std::size_t width) {
  std::size_t const now = Width(text);
  return now < width ? text.append(width - now, ' ') : text;
}

/// The first characters of a text that is too wide for its column.
std::string Shortened(std::string text) {
  if (Width(text) <= kWidest) return text;
  std::size_t bytes = 0;
  for (std::size_t count = 0; count < kWidest; ++count) {
    do ++bytes;
    while (bytes < text.size() && (static_cast<unsigned char>(text[bytes]) & 0xC0U) == 0x80U);
  }
  return text.substr(0, bytes - 1) + "…";
}

}  // namespace

Sink::Sink(std::string const& file)
    : m_file(file.empty() ? STDOUT_FILENO
                          : open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)),
      m_name(file.empty() ? "standard output" : file) {
  if (m_file < 0) {
    throw UsageFailure("cannot write " + file + ": " + std::strerror(errno));
  }
}

Sink::~Sink() {
  try {
    Flush();
  } catch (Failure const&) {
    // Another failure is on its way, or nobody would read this one.
  }
  if (m_file != STDOUT_FILENO) close(m_file);
}

void Sink::Write(std::string const& text) {
  m_buffer += text;
  if (m_buffer.size() >= kBuffered) Flush();
}

void Sink::Flush() {
  std::size_t done = 0;
  while (done < m_buffer.size()) {
    // A pipe that is ready takes this much at once, so that writing never waits for its reader.
    std::size_t const count = std::min<std::size_t>(m_buffer.size() - done, PIPE_BUF);
    pollfd room{m_file, POLLOUT, 0};
    if (poll(&room, 1, IsInterrupted() ? 0 : kPollMs) <= 0) {
      if (!IsInterrupted()) continue;
      m_buffer.clear();
      StopWhenInterrupted();
    }
    ssize_t const written = write(m_file, m_buffer.data() + done, count);
    if (written < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (written < 0) {
      m_buffer.clear();
      // A reader that has seen enough is nothing to talk about.
      throw Failure(ExitCode::PartlyDone,
                    errno == EPIPE ? "" : "cannot write " + m_name + ": " + std::strerror(errno));
    }
    done += static_cast<std::size_t>(written);
  }
  m_buffer.clear();
}

bool Sink::HasColor() const {
  char const* const no = std::getenv("NO_COLOR");
  return isatty(m_file) == 1 && (no == nullptr || *no == '\0');
}

std::string CsvLine(std::vector<std::string> const& cells) {
  std::string line;
  for (std::string const& cell : cells) {
    if (&cell != &cells.front()) line += ',';
    bool const isPlain = cell.find_first_of(",\"\r\n") == std::string::npos &&
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
  if (m_options.format == Format::Csv && !m_options.isBare) m_sink.Write(CsvLine(m_columns));
}

void TableWriter::AddLine(std::string const& line) {
  ++m_count;
  m_sink.Write(line + '\n');
}

void TableWriter::Add(std::vector<Json> const& cells) {
  if (m_options.format == Format::JsonArray || m_options.format == Format::NdJson) {
    Json object = Json::object();
    for (std::size_t i = 0; i < cells.size(); ++i) object[m_columns.at(i)] = cells[i];
    return AddObject(object);
  }
  std::vector<std::string> texts;
  texts.reserve(cells.size());
  for (Json const& cell : cells) texts.push_back(CellText(cell));
  ++m_count;
  if (m_options.format == Format::Csv) return m_sink.Write(CsvLine(texts));
  for (std::string& text : texts) {
    bool const isLast = &text == &texts.back();  // which makes no other wider
    text = isLast && texts.size() == 2 ? OneLine(text) : Shortened(OneLine(text));
  }
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

void TableWriter::FlushText() {
  m_widths.resize(m_columns.size());
  if (!m_isBegun && !m_options.isBare) {
    for (std::size_t i = 0; i < m_columns.size(); ++i) m_widths[i] = Width(m_columns[i]);
  }
  for (auto const& row : m_held) {
    for (std::size_t i = 0; i < row.size(); ++i) m_widths[i] = std::max(m_widths[i], Width(row[i]));
  }
  auto const line = [this](std::vector<std::string> const& cells) {
    std::string text;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      text += i + 1 == cells.size() ? cells[i] : Padded(cells[i], m_widths[i]) + "  ";
    }
    return text.substr(0, text.find_last_not_of(' ') + 1);
  };
  if (!m_isBegun && !m_options.isBare && !m_held.empty()) {
    bool const hasColor = m_sink.HasColor();
    m_sink.Write((hasColor ? "\033[1m" : "") + line(m_columns) + (hasColor ? "\033[0m\n" : "\n"));
  }
  m_isBegun = true;
  for (auto const& row : m_held) m_sink.Write(line(row) + '\n');
  m_held.clear();
}

void TableWriter::Finish() {
  if (m_options.format == Format::Text) FlushText();
  if (m_options.format == Format::JsonArray) m_sink.Write(m_isBegun ? "\n]\n" : "[]\n");
  m_sink.Flush();
}

}  // namespace cli

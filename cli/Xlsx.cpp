#include "cli/Xlsx.h"

#include <zip.h>

#include <pugixml.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <string_view>

#include "cli/Failure.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/Value.h"

namespace cli {
namespace {

constexpr std::size_t kLargestPart = 256UL * 1024 * 1024;
constexpr std::size_t kMostColumns = 16384;
constexpr std::size_t kMostRows = 1'048'576;
constexpr double kDayOf1970 = 25569;
constexpr double kMicrosecondsOfDay = 86400e6;

/// The parts of a zip file in memory.
class Archive {
 public:
  explicit Archive(std::string const& bytes) {
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* const source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
    if (source != nullptr) m_zip.reset(zip_open_from_source(source, ZIP_RDONLY, &error));
    if (!m_zip && source != nullptr) zip_source_free(source);
    zip_error_fini(&error);
    if (!m_zip) Refuse("the file begins as xlsx and cannot be opened as that");
  }

  /// The XML of a part; an empty document when there is none.
  void Load(std::string const& name, pugi::xml_document& document) const {
    zip_stat_t about;
    zip_stat_init(&about);
    if (zip_stat(m_zip.get(), name.c_str(), ZIP_FL_NOCASE, &about) != 0) return;
    if (about.size > kLargestPart) Refuse("the xlsx file has a part that is too large");
    std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> const file(
        zip_fopen_index(m_zip.get(), about.index, 0), zip_fclose);
    std::string text(about.size, '\0');
    bool const isRead = file && zip_fread(file.get(), text.data(), text.size()) ==
                                    static_cast<zip_int64_t>(text.size());
    unsigned const kFlags = pugi::parse_default | pugi::parse_ws_pcdata;
    if (!isRead || !document.load_buffer(text.data(), text.size(), kFlags)) {
      Refuse("the part " + name + " of the xlsx file cannot be read");
    }
  }

 private:
  struct Discard {
    void operator()(zip_t* zip) const { zip_discard(zip); }
  };
  std::unique_ptr<zip_t, Discard> m_zip;
};

std::string_view PlainName(pugi::xml_node node) {
  std::string_view const name = node.name();
  return name.substr(name.find(':') == std::string_view::npos ? 0 : name.find(':') + 1);
}

/// The first child of that name, with whatever prefix.
pugi::xml_node Child(pugi::xml_node node, char const* name) {
  for (pugi::xml_node const child : node.children()) {
    if (PlainName(child) == name) return child;
  }
  return {};
}

template <class Use>
void ForChildren(pugi::xml_node node, char const* name, Use use) {
  for (pugi::xml_node const child : node.children()) {
    if (PlainName(child) == name) use(child);
  }
}

/// The text of a cell or shared string: of its runs too, but not of its phonetic hints.
std::string TextIn(pugi::xml_node node) {
  std::string text;
  ForChildren(node, "t", [&](pugi::xml_node part) { text += part.text().get(); });
  ForChildren(node, "r", [&](pugi::xml_node run) { text += TextIn(run); });
  return text;
}

/// "BC12" is column 54, counted from 0.
std::size_t ColumnOf(std::string_view reference) {
  std::size_t column = 0;
  for (char const c : reference) {
    if (c < 'A' || c > 'Z') break;
    column = column * 26 + static_cast<std::size_t>(c - 'A' + 1);
    if (column > kMostColumns) break;
  }
  return column - (column > 0 ? 1 : 0);
}

/// Whether a number format has one of the signs, not as a text.
bool HasSign(std::string const& code, std::string_view signs) {
  bool isQuoted = false;
  for (std::size_t i = 0; i < code.size(); ++i) {
    if (code[i] == '"') isQuoted = !isQuoted;
    if (code[i] == '\\') ++i;
    if (code[i] == '[') i = std::min(code.find(']', i), code.size() - 1);
    if (!isQuoted && i < code.size() && signs.find(code[i]) != std::string_view::npos) return true;
  }
  return false;
}

class Workbook {
 public:
  explicit Workbook(std::string const& bytes) : m_archive(bytes) {
    ReadTexts();
    ReadStyles();
  }

  std::vector<std::vector<std::string>> Rows() {
    pugi::xml_document sheet;
    m_archive.Load(FirstSheet(), sheet);
    std::vector<std::vector<std::string>> rows;
    pugi::xml_node const data = Child(Child(sheet, "worksheet"), "sheetData");
    if (!data) Refuse("the xlsx file has no sheet");
    ForChildren(data, "row", [&](pugi::xml_node row) {
      std::size_t const number = row.attribute("r").as_uint();
      if (number > kMostRows) Refuse("the xlsx file has a row that no sheet has");
      if (number > rows.size() + 1) rows.resize(number - 1);
      rows.push_back(CellsOf(row));
    });
    return rows;
  }

 private:
  void ReadTexts() {
    pugi::xml_document document;
    m_archive.Load("xl/sharedStrings.xml", document);
    ForChildren(Child(document, "sst"), "si",
                [&](pugi::xml_node text) { m_texts.push_back(TextIn(text)); });
  }

  void ReadStyles() {
    pugi::xml_document document;
    m_archive.Load("xl/styles.xml", document);
    pugi::xml_node const styles = Child(document, "styleSheet");
    std::set<unsigned> dates = {14, 15, 16, 17, 22};
    std::set<unsigned> percents = {9, 10};
    ForChildren(Child(styles, "numFmts"), "numFmt", [&](pugi::xml_node format) {
      std::string const code = format.attribute("formatCode").value();
      unsigned const id = format.attribute("numFmtId").as_uint();
      if (HasSign(code, "ydYD")) dates.insert(id);
      if (HasSign(code, "%")) percents.insert(id);
    });
    unsigned place = 0;
    ForChildren(Child(styles, "cellXfs"), "xf", [&](pugi::xml_node style) {
      unsigned const id = style.attribute("numFmtId").as_uint();
      if (dates.count(id) > 0) m_dates.insert(place);
      if (percents.count(id) > 0) m_percents.insert(place);
      ++place;
    });
  }

  std::string FirstSheet() {
    pugi::xml_document book;
    m_archive.Load("xl/workbook.xml", book);
    pugi::xml_node const workbook = Child(book, "workbook");
    m_countsFrom1904 = Child(workbook, "workbookPr").attribute("date1904").as_bool();
    std::string id;
    ForChildren(Child(workbook, "sheets"), "sheet", [&](pugi::xml_node sheet) {
      std::string_view const state = sheet.attribute("state").value();
      if (!id.empty() || (!state.empty() && state != "visible")) return;
      for (pugi::xml_attribute const one : sheet.attributes()) {
        std::string_view const name = one.name();
        if (name.size() > 3 && name.substr(name.size() - 3) == ":id") id = one.value();
      }
    });
    pugi::xml_document relations;
    m_archive.Load("xl/_rels/workbook.xml.rels", relations);
    std::string target;
    ForChildren(Child(relations, "Relationships"), "Relationship", [&](pugi::xml_node one) {
      if (id == one.attribute("Id").value()) target = one.attribute("Target").value();
    });
    if (target.empty()) Refuse("the xlsx file has no sheet that is visible");
    return target[0] == '/' ? target.substr(1) : "xl/" + target;
  }

  std::vector<std::string> CellsOf(pugi::xml_node row) const {
    std::vector<std::string> cells;
    ForChildren(row, "c", [&](pugi::xml_node cell) {
      std::string const reference = cell.attribute("r").value();
      std::size_t const column = reference.empty() ? cells.size() : ColumnOf(reference);
      if (column >= kMostColumns) Refuse("the xlsx file has a column that no sheet has");
      if (column >= cells.size()) cells.resize(column + 1);
      cells[column] = TextOf(cell);
    });
    return cells;
  }

  std::string TextOf(pugi::xml_node cell) const {
    std::string_view const type = cell.attribute("t").value();
    if (type == "inlineStr") return TextIn(Child(cell, "is"));
    pugi::xml_node const held = Child(cell, "v");
    if (!held && Child(cell, "f")) {
      Refuse("the cell " + std::string(cell.attribute("r").value()) +
             " has a formula that was never computed; save the file in a spreadsheet program");
    }
    std::string value = held.text().get();
    if (type == "s") {
      auto const place = static_cast<std::size_t>(std::strtoul(value.c_str(), nullptr, 10));
      return place < m_texts.size() ? m_texts[place] : "";
    }
    if (type == "b") return value == "1" ? "yes" : "no";
    if (type == "str" || type == "d" || type == "e") return value;
    double number = 0;
    if (!lumo::ReadNumber(value, number)) return value;
    unsigned const style = cell.attribute("s").as_uint();
    if (m_dates.count(style) > 0) return DateOf(number);
    return m_percents.count(style) > 0 ? lumo::TextOf(100 * number) + " %" : lumo::TextOf(number);
  }

  /// Sheets count days, from the end of 1899 or from 1904.
  std::string DateOf(double days) const {
    double const since1970 = days + (m_countsFrom1904 ? 1462 : 0) - kDayOf1970;
    if (!(std::fabs(since1970) < 3e6)) return lumo::TextOf(days);
    std::string const text =
        lumo::DateTime::FromMicroseconds(
            static_cast<std::int64_t>(std::llround(since1970 * kMicrosecondsOfDay / 1e6)) *
            1'000'000)
            .text;
    std::size_t const midnight = text.find("T00:00:00");
    return midnight == std::string::npos ? text : text.substr(0, midnight);
  }

  Archive m_archive;
  std::vector<std::string> m_texts;
  std::set<unsigned> m_dates;  ///< styles
  std::set<unsigned> m_percents;
  bool m_countsFrom1904 = false;
};

}  // namespace

bool IsXlsx(std::string const& bytes) { return bytes.compare(0, 4, "PK\x03\x04") == 0; }

std::vector<std::vector<std::string>> ReadXlsx(std::string const& bytes) {
  return Workbook(bytes).Rows();
}

}  // namespace cli

#include <xlsxwriter.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "cli/Options.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

using lumo::Attribute;
using lumo::AttributeType;

constexpr lxw_row_t kLastRow = 1000;  // down to which cells offer their words
constexpr double kWidth = 18;

struct TemplateChoice : TableChoice {
  std::vector<std::string> attributes;
};

/// Whether people can type such values into a cell.
bool CanBeTyped(Attribute const& attribute) {
  switch (attribute.type) {
    case AttributeType::Curve:
    case AttributeType::Grid:
    case AttributeType::Picture:
    case AttributeType::File:
    case AttributeType::Other: return false;
    default: return true;
  }
}

std::string ExampleOf(Attribute const& attribute) {
  switch (attribute.type) {
    case AttributeType::Integer: return "12";
    case AttributeType::Logical: return "yes or no";
    case AttributeType::Date: return "2026-03-17";
    case AttributeType::Discrete:
      return attribute.isMultiValued ? "one or more of the words, \";\" between them"
                                     : "one of the words";
    case AttributeType::Number: return "2.8; ~2.8 when it is estimated";
    case AttributeType::Range: return "2.8..2.9, 2.8, > 3 or < 3; ~ before it when it is estimated";
    case AttributeType::Link: return "https://www.example.com/";
    default: return "text";
  }
}

/// A column of the sheet and what is said of it.
struct Column {
  std::string heading;
  std::string what;
  std::string example;
  std::vector<std::string> words;
  bool isDate = false;
  bool offersWords = false;  ///< of which one is chosen
};

std::vector<Column> ColumnsOf(std::vector<Attribute> const& attributes) {
  std::vector<Column> columns = {
      {"Folder",
       "where a new record goes; may be empty for one that is there",
       "Metals/Steels",
       {}},
      {"Name", "of the record in the tree; one that is there is changed", "C45", {}},
      {"Full name", "may be empty", "Steel C45, normalised", {}}};
  for (Attribute const& attribute : attributes) {
    Column column{WithUnit(attribute.name, attribute.unit), lumo::NameOf(attribute.type),
                  ExampleOf(attribute), attribute.words};
    if (attribute.type == AttributeType::Logical) column.words = {"yes", "no"};
    column.isDate = attribute.type == AttributeType::Date;
    column.offersWords = !column.words.empty() && !attribute.isMultiValued;
    columns.push_back(std::move(column));
  }
  return columns;
}

void Check(lxw_error error) {
  if (error != LXW_NO_ERROR) {
    throw Failure(ExitCode::Usage, std::string("cannot write the sheet: ") + lxw_strerror(error));
  }
}

/// Writes the sheet to fill in, the words behind its lists, and the sheet that explains.
class Book {
 public:
  explicit Book(std::string const& file) : m_book(workbook_new(file.c_str())) {
    if (m_book == nullptr) throw Failure(ExitCode::Usage, "cannot write " + file);
    m_bold = workbook_add_format(m_book);
    format_set_bold(m_bold);
    m_date = workbook_add_format(m_book);
    format_set_num_format(m_date, "yyyy-mm-dd");
    m_text = workbook_add_format(m_book);
    format_set_num_format(m_text, "@");
  }
  ~Book() {
    if (m_book != nullptr) lxw_workbook_free(m_book);
  }
  Book(Book const&) = delete;
  Book& operator=(Book const&) = delete;

  void Fill(std::vector<Column> const& columns, std::string const& table) {
    lxw_worksheet* const sheet = Sheet("Data");
    lxw_worksheet* const help = Sheet("How to fill in");
    lxw_worksheet* const words = Sheet("Words");
    Explain(help, columns, table);
    worksheet_freeze_panes(sheet, 1, 2);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      auto const place = static_cast<lxw_col_t>(i);
      Put(sheet, 0, place, columns[i].heading, m_bold);
      // Cells are texts, or programs would make dates of "1-2" and cut figures.
      Check(worksheet_set_column(sheet, place, place, kWidth, columns[i].isDate ? m_date : m_text));
      for (std::size_t row = 0; row < columns[i].words.size(); ++row) {
        Put(words, static_cast<lxw_row_t>(row), place, columns[i].words[row], nullptr);
      }
      if (columns[i].offersWords) Offer(sheet, place, columns[i].words.size());
    }
    worksheet_hide(words);
  }

  void Close() { Check(workbook_close(std::exchange(m_book, nullptr))); }

 private:
  lxw_worksheet* Sheet(char const* name) {
    lxw_worksheet* const sheet = workbook_add_worksheet(m_book, name);
    if (sheet == nullptr) throw Failure(ExitCode::Usage, "cannot make a sheet");
    return sheet;
  }
  static void Put(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, std::string const& text,
                  lxw_format* format) {
    Check(worksheet_write_string(sheet, row, column, text.c_str(), format));
  }

  /// A list of the words in that column of the sheet of words.
  static void Offer(lxw_worksheet* sheet, lxw_col_t column, std::size_t count) {
    char from[LXW_MAX_CELL_NAME_LENGTH];
    char to[LXW_MAX_CELL_NAME_LENGTH];
    lxw_rowcol_to_cell_abs(from, 0, column, 1, 1);
    lxw_rowcol_to_cell_abs(to, static_cast<lxw_row_t>(count - 1), column, 1, 1);
    std::string formula = std::string("=Words!") + from + ":" + to;
    lxw_data_validation rule{};
    rule.validate = LXW_VALIDATION_TYPE_LIST_FORMULA;
    rule.value_formula = formula.data();
    Check(worksheet_data_validation_range(sheet, 1, column, kLastRow, column, &rule));
  }

  void Explain(lxw_worksheet* help, std::vector<Column> const& columns, std::string const& table) {
    Put(help, 0, 0, "Fill in the sheet \"Data\", a row for each record of " + table + ".", nullptr);
    Put(help, 1, 0, "An empty cell changes nothing. A figure may have another unit behind it.",
        nullptr);
    Put(help, 2, 0, "Then: lumo import DATABASE TABLE FILE --dry-run", nullptr);
    constexpr char const* kHeadings[] = {"column", "holds", "for example", "words"};
    for (lxw_col_t i = 0; i < 4; ++i) Put(help, 4, i, kHeadings[i], m_bold);
    lxw_row_t row = 5;
    for (Column const& column : columns) {
      Put(help, row, 0, column.heading, nullptr);
      Put(help, row, 1, column.what, nullptr);
      Put(help, row, 2, column.example, nullptr);
      Put(help, row, 3, lumo::Joined(column.words), nullptr);
      ++row;
    }
    Check(worksheet_set_column(help, 0, 3, 2 * kWidth, nullptr));
  }

  lxw_workbook* m_book;
  lxw_format* m_bold = nullptr;
  lxw_format* m_date = nullptr;
  lxw_format* m_text = nullptr;
};

void WriteTemplate(Context& context, TemplateChoice const& choice) {
  lumo::Table const table = context.Connect().OpenTable(choice.database, choice.table);
  std::vector<Attribute> attributes;
  for (std::string const& name : choice.attributes) attributes.push_back(table.FindAttribute(name));
  if (choice.attributes.empty()) {
    for (Attribute const& one : table.Attributes()) {
      if (CanBeTyped(one)) attributes.push_back(one);
    }
  }
  std::vector<Column> const columns = ColumnsOf(attributes);
  std::string const& file = context.output.file;
  bool const isSheet =
      lumo::EqualIgnoringCase(std::filesystem::path(file).extension().string(), ".xlsx");
  if (isSheet) {
    std::string const beside = file + ".new";
    Book book(beside);
    book.Fill(columns, choice.table);
    book.Close();
    std::filesystem::rename(beside, file);
    return;
  }
  std::vector<std::string> headings;
  headings.reserve(columns.size());
  for (Column const& column : columns) headings.push_back(column.heading);
  Sink sink(file);
  sink.Write(CsvLine(headings, context.output.delimiter));
  sink.Finish();
}

}  // namespace

void AddTemplate(CommandLine& line) {
  auto const choice = std::make_shared<TemplateChoice>();
  CLI::App& command =
      line.Add("template", "write a sheet to fill in for an import",
               "  $ lumo template ENG_MATERIALS Materials -a density -a price -o new.xlsx\n"
               "  $ lumo template ENG_MATERIALS Materials -o new.csv\n\n"
               "An xlsx file offers the words of discrete attributes as lists, and has a sheet\n"
               "that explains the columns. `lumo import` reads what was filled in.",
               [choice](Context& context) { WriteTemplate(context, *choice); });
  AddTable(command, *choice);
  command
      .add_option(
          "-a,--attribute", choice->attributes,
          "attribute that gets a column; give it once for each; all that can be typed by default")
      ->type_name("NAME")
      ->allow_extra_args(false);
  command
      .add_option("-o,--output", line.Shared().output.file,
                  "write to this file, a sheet when it ends in .xlsx, CSV otherwise")
      ->type_name("FILE");
}

}  // namespace cli

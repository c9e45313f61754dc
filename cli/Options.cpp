#include "cli/Options.h"

#include <filesystem>
#include <utility>

#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

/// The form that the ending of a file's name asks for, text for others.
Format FormatOf(std::string const& file,
                std::vector<std::pair<std::string, Format>> const& formats) {
  std::string const ending = lumo::Lower(std::filesystem::path(file).extension().string());
  for (auto const& [word, format] : formats) {
    if (ending == "." + word) return format;
  }
  if (ending != ".xlsx") return Format::Text;
  throw CLI::ValidationError("this command writes no spreadsheets; name a .csv file");
}

}  // namespace

CLI::Validator NotEmpty() {
  return CLI::Validator(
      [](std::string const& text) { return text.empty() ? std::string("is empty") : ""; }, "");
}

CLI::Validator Between(int least, int most) {
  return CLI::Validator(
      [least, most](std::string const& text) {
        int number = 0;
        bool const isFine = lumo::ReadInteger(text, number) && number >= least && number <= most;
        return isFine ? std::string()
                      : "takes a whole number from " + std::to_string(least) + " to " +
                            std::to_string(most);
      },
      "");
}

void AddDatabase(CLI::App& command, std::string& database) {
  command.add_option("DATABASE", database, "key or name of the database")
      ->required()
      ->type_name("");
}

void AddTable(CLI::App& command, TableChoice& table) {
  AddDatabase(command, table.database);
  command.add_option("TABLE", table.table, "name of the table")->required()->type_name("");
}

void AddConditions(CLI::App& command, RecordChoice& what) {
  command.add_option("-t,--text", what.text, "records that hold these words")
      ->type_name("TEXT")
      ->check(NotEmpty());
  command
      .add_option("-w,--where", what.conditions,
                  "records that meet this condition; when given again, all of them")
      ->type_name("CONDITION")
      ->allow_extra_args(false);
  std::vector<std::pair<std::string, bool>> const matches = {{"overlap", false}, {"all", true}};
  AddWords(command, "--match", what.matchesAll, matches,
           "how a range meets a condition: some part of it, or all of it (overlap)");
  command.add_option("--folder", what.folder, "records below a folder, \"/\" between the names")
      ->type_name("PATH")
      ->check(NotEmpty());
  command.add_option("--subset", what.subset, "records of a subset")
      ->type_name("NAME")
      ->check(NotEmpty());
}

void AddRecords(CLI::App& command, RecordChoice& what) {
  AddTable(command, what);
  CLI::Option* const records =
      command
          .add_option("RECORD", what.records,
                      "short or full name, path, identity such as id:69, or GUID of a record")
          ->type_name("");
  AddConditions(command, what);
  for (char const* const choice : {"--folder", "--text", "--where", "--subset"}) {
    records->excludes(command.get_option(choice));
  }
}

void AddUnits(CLI::App& command, UnitChoice& units) {
  command.add_option("--unit-system", units.unitSystem, "convert units into this system")
      ->type_name("NAME");
  command.add_option("--currency", units.currency, "convert prices into this currency")
      ->type_name("CODE");
}

void AddOutput(CLI::App& command, OutputOptions& output,
               std::vector<std::pair<std::string, Format>> const& more) {
  std::vector<std::pair<std::string, Format>> formats = {{"text", Format::Text},
                                                         {"csv", Format::Csv},
                                                         {"json", Format::JsonArray},
                                                         {"ndjson", Format::NdJson}};
  formats.insert(formats.end(), more.begin(), more.end());
  AddWords(command, "-f,--format", output.format, formats, "form of the output (text)");
  CLI::Option const* const format = command.get_option("--format");
  auto const name = [&output, format, formats](std::string const& file) {
    output.file = file == "-" ? "" : file;
    if (format->count() == 0) output.format = FormatOf(file, formats);
  };
  command
      .add_option_function<std::string>("-o,--output", name,
                                        "write to this file, in the format of its ending such as "
                                        ".csv; an older one is replaced at "
                                        "the end")
      ->type_name("FILE");
  command.add_flag("--no-headings", output.isBare, "leave the headings out");
  auto const choose = [&output](std::string const& text) {
    bool const isOne = text.size() == 1 && text.find_first_of("\"\r\n") != 0;
    if (text != "tab" && text != "\\t" && !isOne) {
      throw CLI::ValidationError(
          "--delimiter takes one character but no quotation mark, or \"tab\"");
    }
    output.delimiter = text.size() == 1 ? text[0] : '\t';
  };
  command.add_option_function<std::string>("--delimiter", choose, "between the cells of CSV (,)")
      ->type_name("CHARACTER");
}

bool RecordChoice::IsWholeTable() const {
  return records.empty() && name.empty() && folder.empty() && subset.empty() && text.empty() &&
         conditions.empty();
}

lumo::Selection RecordChoice::In(lumo::Table const& from) const {
  lumo::Selection selection = from.All();
  if (!ids.empty()) return selection.WithIds(ids);
  if (!records.empty()) return selection.Named(records);
  if (!name.empty()) selection = selection.Called(name);
  if (!folder.empty()) selection = selection.Below(folder);
  if (!subset.empty()) selection = selection.In(subset);
  if (!text.empty()) selection = selection.Text(text);
  auto const match = matchesAll ? lumo::Match::All : lumo::Match::Overlap;
  for (std::string const& condition : conditions) selection = selection.Where(condition, match);
  return selection;
}

void UnitChoice::Fill(lumo::ReadOptions& options, bool isForReading) const {
  options.digits = isForReading ? lumo::ConvertedDigits::Shown : lumo::ConvertedDigits::Enough;
  options.unitSystem = unitSystem;
  options.currency = currency;
}

std::string const& ConditionHelp() {
  static std::string const help =
      "\n\nConditions:\n"
      "  ATTRIBUTE < NUMBER UNIT       also with <=, >, >=, = and !=; the beginning of a name or\n"
      "                                some of its words will do when only one name has them\n"
      "  ATTRIBUTE between A and B UNIT\n"
      "                                A and B themselves fulfil it\n"
      "  A / B > NUMBER UNIT           also A * B and powers: \"young's modulus / density\"\n"
      "  ATTRIBUTE >= DATE             such as 2026-03-17, 2026-03 or 2026, with all comparisons\n"
      "  ATTRIBUTE = WORD|WORD         has one of the words; for yes or no: = yes\n"
      "  ATTRIBUTE contains TEXT       of a table: ATTRIBUTE[COLUMN] contains TEXT\n"
      "  ATTRIBUTE lacks TEXT          does not contain it\n"
      "  ATTRIBUTE exists              has a value\n"
      "  ATTRIBUTE is missing          has none\n"
      "  X and Y, X or Y, not X, (X)   joined conditions; names with \"and\" in them in quotes\n"
      "A range meets a condition when some part of it does; --match all asks it of the whole\n"
      "range. != is met when no part of the range is the number. In products temperatures are\n"
      "in K. Of a value that is missing nothing is known: only \"lacks\" and \"is missing\" hold.";
  return help;
}

}  // namespace cli

#include <unistd.h>

#include <fstream>
#include <iostream>
#include <iterator>

#include "cli/Read.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

using Kind = RowColumn::Kind;

constexpr std::size_t kMostOnTerminal = 100;

struct GetChoice : ReadChoice {
  bool withoutFiles = false;
  bool withIds = false;
  std::string longOf;     ///< the attribute whose long form is wanted
  std::string partition;  ///< a line, a file that holds one, or "-"
};

/// The line, from where it is.
std::string LineOf(std::string const& partition) {
  std::string line = partition;
  if (partition.compare(0, 5, "lumo/") == 0) return line;
  std::ifstream file;
  if (partition != "-") file.open(partition);
  if (!std::getline(partition == "-" ? std::cin : file, line)) {
    Refuse(lumo::Quoted(partition) + " is neither a partition nor a file that holds one");
  }
  return line;
}

/// Reads, and says so when a terminal gets only the beginning of a whole table.
void PutOutSome(Context& context, lumo::Table const& table, ReadChoice choice,
                std::vector<Kind> const& usual) {
  OutputOptions const& output = context.output;
  bool const isOnTerminal = output.file.empty() && Terminal::Of(STDOUT_FILENO).width > 0;
  bool const isCut = isOnTerminal && choice.IsWholeTable() && choice.ids.empty() &&
                     choice.limit == 0 && output.format != Format::Plot;
  if (isCut) choice.limit = kMostOnTerminal;
  std::size_t const count = PutOutRecords(context, table, choice, usual, true).written;
  if (count == 0) context.Note("0 records");
  if (isCut && count == kMostOnTerminal) {
    context.Note("these are the first " + Count(count, "record") +
                 "; --limit N prints more, -o FILE writes all to a file");
  }
}

void Get(Context& context, GetChoice choice) {
  OutputOptions& output = context.output;
  bool const isXlsx = output.format == Format::Xlsx;
  if (isXlsx && output.file.empty() && Terminal::Of(STDOUT_FILENO).width > 0) {
    Refuse("a spreadsheet goes into a file: -o FILE");
  }
  output.isLong = !choice.longOf.empty();
  if (output.isLong) {
    bool const isList = output.format == Format::Text || output.format == Format::Csv;
    if (!isList && !output.IsJson()) Refuse("--long takes -f text, csv, json or ndjson");
    choice.attributes = {choice.longOf};
  }
  bool const isForReading = output.format == Format::Text || output.format == Format::List;
  if (output.ranges != Ranges::Text && output.format != Format::Csv) {
    Refuse("--ranges goes with -f csv alone");
  }
  choice.withFiles =
      !choice.withoutFiles && !isForReading && !isXlsx && output.format != Format::Plot;
  std::vector<Kind> usual = {Kind::Name};
  if (output.format == Format::List) usual = {Kind::Folder};
  if (!isForReading) usual = {Kind::Folder, Kind::Name, Kind::FullName};
  if (output.IsJson() || choice.withIds) usual.push_back(Kind::Identity);
  if (choice.withIds) usual.push_back(Kind::Guid);
  if (choice.withRelations && (!output.IsJson() || output.isLong)) {
    Refuse("--relations takes -f json or ndjson, without --long");
  }
  if (choice.partition.empty()) {
    if (choice.table.empty()) Refuse("name a database and a table, or give --partition");
    lumo::Table const table = context.Connect().OpenTable(choice.database, choice.table);
    return PutOutSome(context, table, choice, usual);
  }
  auto const part = lumo::Partition::FromText(LineOf(choice.partition));
  if (!choice.database.empty()) Refuse("a partition names its table; leave DATABASE and TABLE out");
  std::string& server = context.server.server;
  if (server.empty() && !context.server.useSandbox) server = part.server;
  if (choice.attributes.empty()) choice.attributes = part.attributes;
  choice.ids = part.records;
  PutOutSome(context, context.Connect().OpenTable(part.database, part.table), choice, usual);
}

}  // namespace

void AddSearch(CommandLine& line) {
  auto const choice = std::make_shared<ReadChoice>();
  CLI::App& search = line.Add(
      "search", "find records by text, name or conditions",
      "  $ lumo search ENG_MATERIALS Materials aircraft\n"
      "  $ lumo search ENG_MATERIALS Materials -w \"density < 3000 kg/m^3\" --sort density\n"
      "  $ lumo search ENG_MATERIALS Materials --folder Polymers --columns \"name, price\"" +
          ConditionHelp(),
      [choice](Context& context) {
        if (choice->IsWholeTable()) {
          Refuse("say what to search for: words, --name, --where, --folder or --subset");
        }
        lumo::Table const table = context.Connect().OpenTable(choice->database, choice->table);
        Counts const counts = PutOutRecords(context, table, *choice,
                                            {Kind::Identity, Kind::Name, Kind::FullName}, false);
        bool const isAll = counts.written == counts.found;
        context.Note((isAll ? "" : std::to_string(counts.written) + " of ") +
                     Count(counts.found, "record"));
      });
  AddTable(search, *choice);
  CLI::Option* const words = search
                                 .add_option_function<std::vector<std::string>>(
                                     "WORDS",
                                     [choice](std::vector<std::string> const& all) {
                                       for (std::string const& word : all) {
                                         choice->text += (choice->text.empty() ? "" : " ") + word;
                                       }
                                     },
                                     "records that hold these words, as with --text")
                                 ->type_name("");
  search.add_option("--name", choice->name, "records with this short or full name, namesakes too")
      ->type_name("NAME")
      ->check(NotEmpty());
  AddConditions(search, *choice);
  words->excludes(search.get_option("--text"));
  AddReading(search, *choice);
  AddOutput(search, line.Shared().output, {{"list", Format::List}});
}

void AddGet(CommandLine& line) {
  auto const choice = std::make_shared<GetChoice>();
  CLI::App& get = line.Add("get", "print values of records, or of the whole table",
                           "  $ lumo get ENG_MATERIALS Materials AW-6061-T6 -a Density -a Price\n"
                           "  $ lumo get ENG_MATERIALS Materials -w \"density < 2 g/cm^3\" -f csv\n"
                           "  $ lumo get ENG_MATERIALS Materials 304 -f plot\n"
                           "  $ lumo get ENG_MATERIALS Materials --sort price --limit 10 -a price" +
                               ConditionHelp(),
                           [choice](Context& context) { Get(context, *choice); });
  AddRecords(get, *choice);
  get.get_option("DATABASE")->required(false);
  get.get_option("TABLE")->required(false);
  AddReading(get, *choice);
  get.add_flag("--ids", choice->withIds, "print identities and GUIDs, too")->excludes("--columns");
  get.add_flag("--relations", choice->withRelations,
               "print links to other records and the subsets, too; in JSON only");
  get.add_flag("--no-files", choice->withoutFiles,
               "write the addresses of files and pictures, not their contents");
  get.add_option("--long", choice->longOf,
                 "curves, points or tables of one attribute, a row for each point or row")
      ->type_name("NAME")
      ->excludes("--attribute")
      ->excludes("--columns");
  get.add_option("--partition", choice->partition,
                 "records of a part that lumo partitions printed: the line, a file, or -")
      ->type_name("PART");
  std::vector<std::pair<std::string, Ranges>> const ranges = {
      {"text", Ranges::Text}, {"split", Ranges::Split}, {"mean", Ranges::Mean}};
  AddWords(get, "--ranges", line.Shared().output.ranges, ranges,
           "ranges in CSV: as 2690..2730, in two columns, or by their middle (text)");
  AddWork(get, line.Shared());
  AddOutput(get, line.Shared().output,
            {{"list", Format::List}, {"plot", Format::Plot}, {"xlsx", Format::Xlsx}});
}

void AddPartitions(CommandLine& line) {
  struct Choice : RecordChoice {
    std::vector<std::string> attributes;
    std::size_t size = 1000;
  };
  auto const choice = std::make_shared<Choice>();
  CLI::App& partitions = line.Add(
      "partitions", "split a read into parts for other processes, a line for each",
      "  $ lumo partitions ENG_MATERIALS Materials -a Density --size 100 >parts\n"
      "  $ xargs -d \"\\n\" -n 1 -P 4 lumo get -f ndjson --partition <parts\n\n"
      "A part names server, table, records and attributes, and holds no password.",
      [choice](Context& context) {
        lumo::Table const table = context.Connect().OpenTable(choice->database, choice->table);
        std::vector<std::string> names;
        for (std::string const& one : choice->attributes) {
          names.push_back(table.FindAttribute(one).name);
        }
        Sink sink(context.output.file);
        for (auto const& part :
             choice->In(table).Partitions(choice->size, names, context.ReadOptions())) {
          sink.Write(part.ToText() + '\n');
        }
        sink.Finish();
      });
  AddRecords(partitions, *choice);
  partitions
      .add_option("-a,--attribute", choice->attributes,
                  "attribute to read; give it once for each; all by default")
      ->type_name("NAME")
      ->allow_extra_args(false);
  partitions.add_option("--size", choice->size, "records in a part (1000)")
      ->check(Between(1, 1'000'000))
      ->type_name("N");
  partitions.add_option("-o,--output", line.Shared().output.file, "write to this file")
      ->type_name("FILE");
}

}  // namespace cli

#include <algorithm>
#include <utility>

#include "cli/Cells.h"
#include "cli/Read.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

constexpr char kBest[] = "*";
constexpr char kWorst[] = "!";

struct CompareChoice : TableChoice {
  std::vector<std::string> records;
  std::vector<std::string> attributes;
  std::vector<std::string> low;  ///< of which less is better
  UnitChoice units;
};

/// Words of names whose figures are mostly wished to be small.
constexpr char const* kLowWords[] = {"density",  "price",     "cost",
                                     "embodied", "footprint", "expansion"};

bool IsLowBetter(std::string const& attribute, std::vector<std::string> const& low) {
  if (std::find(low.begin(), low.end(), attribute) != low.end()) return true;
  std::string const name = lumo::Lower(attribute);
  return std::any_of(std::begin(kLowWords), std::end(kLowWords),
                     [&](char const* word) { return name.find(word) != std::string::npos; });
}

/// One attribute of all records.
class Line {
 public:
  Line(lumo::Attribute const& attribute, std::vector<lumo::Record> const& records)
      : m_attribute(attribute) {
    for (lumo::Record const& record : records) m_values.push_back(record[attribute.name]);
  }

  bool IsEmpty() const {
    return std::all_of(m_values.begin(), m_values.end(), [](lumo::Value const& value) {
      return std::holds_alternative<std::monostate>(value);
    });
  }

  std::vector<Json> Cells(bool isLowBetter) const {
    std::vector<Json> cells = {m_attribute.name, m_attribute.unit};
    auto const [least, most] = Ends();
    bool const isMarked = least < most;
    for (lumo::Value const& value : m_values) {
      std::string cell = ReadableCell(value, m_attribute.unit);
      auto const number = lumo::NumberIn(value);
      if (isMarked && number == most) cell += std::string(" ") + (isLowBetter ? kWorst : kBest);
      if (isMarked && number == least) cell += std::string(" ") + (isLowBetter ? kBest : kWorst);
      cells.emplace_back(std::move(cell));
    }
    return cells;
  }
  std::vector<Json> Values() const {
    std::vector<Json> cells = {m_attribute.name, m_attribute.unit};
    for (lumo::Value const& value : m_values) cells.push_back(JsonOf(value));
    return cells;
  }
  /// Whether figures are marked.
  bool IsMarked() const { return Ends().first < Ends().second; }

 private:
  std::pair<std::optional<double>, std::optional<double>> Ends() const {
    std::pair<std::optional<double>, std::optional<double>> ends;
    for (lumo::Value const& value : m_values) {
      auto const number = lumo::NumberIn(value);
      if (!number) continue;
      ends.first = std::min(ends.first.value_or(*number), *number);
      ends.second = std::max(ends.second.value_or(*number), *number);
    }
    return ends;
  }

  lumo::Attribute const& m_attribute;
  std::vector<lumo::Value> m_values;
};

void Compare(Context& context, CompareChoice const& choice) {
  lumo::Table const table = context.Connect().OpenTable(choice.database, choice.table);
  std::vector<std::string> low;
  for (std::string const& name : choice.low) low.push_back(table.FindAttribute(name).name);
  lumo::ReadOptions options = context.ReadOptions();
  choice.units.Fill(options, context.output.IsForReading());
  lumo::RecordStream stream = table.All().Named(choice.records).Read(choice.attributes, options);
  std::vector<lumo::Attribute> const& attributes = stream.Attributes();
  std::vector<lumo::Record> records(stream.begin(), stream.end());
  std::vector<std::string> headings = {"Attribute", "Unit"};
  for (lumo::Record const& record : records) headings.push_back(record.Name());
  std::vector<std::string> lowMarked;
  bool isAnyMarked = false;
  bool const isForReading = context.output.format == Format::Text;
  PutOut(context.output, headings, [&](TableWriter& out) {
    for (lumo::Attribute const& attribute : attributes) {
      Line const line(attribute, records);
      if (line.IsEmpty()) continue;
      bool const isLow = IsLowBetter(attribute.name, low);
      out.Add(isForReading ? line.Cells(isLow) : line.Values());
      isAnyMarked = isAnyMarked || line.IsMarked();
      if (isLow && line.IsMarked()) lowMarked.push_back(attribute.name);
    }
  });
  if (!isForReading || !isAnyMarked) return;
  context.Note(std::string(kBest) + " best, " + kWorst + " worst: more is better" +
               (lowMarked.empty() ? "" : ", but less for " + lumo::Joined(lowMarked)) +
               "; --low NAME for others");
}

}  // namespace

void AddCompare(CommandLine& line) {
  auto const choice = std::make_shared<CompareChoice>();
  CLI::App& compare = line.Add(
      "compare", "set records beside each other, an attribute a line",
      "  $ lumo compare ENG_MATERIALS Materials 304 AW-6061-T6 Ti-6Al-4V\n"
      "  $ lumo compare ENG_MATERIALS Materials 304 316L -a density -a price --low price\n\n"
      "The best and the worst figure of a line are marked; of ranges the middles are compared.",
      [choice](Context& context) { Compare(context, *choice); });
  AddTable(compare, *choice);
  compare
      .add_option("RECORD", choice->records,
                  "short or full name, path, identity such as id:69, or GUID of a record")
      ->required()
      ->type_name("");
  compare
      .add_option("-a,--attribute", choice->attributes,
                  "attribute to compare, once for each; all by default")
      ->type_name("NAME")
      ->allow_extra_args(false);
  compare
      .add_option("--low", choice->low,
                  "attribute of which less is better, once for each; so it is with densities, "
                  "prices, footprints and expansion")
      ->type_name("NAME")
      ->allow_extra_args(false);
  AddUnits(compare, choice->units);
  AddOutput(compare, line.Shared().output);
}

}  // namespace cli

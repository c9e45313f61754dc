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
  std::vector<std::string> low;   ///< of which less is better
  std::vector<std::string> high;  ///< of which more is better
  UnitChoice units;
};

/// Which figure of an attribute is the best one.
enum class Best { Unknown, Low, High };

/// Words of names whose figures are wished to be small, or large, whatever is made of the material.
constexpr char const* kLowWords[] = {"density",  "price",     "cost",
                                     "embodied", "footprint", "expansion"};
constexpr char const* kHighWords[] = {"strength", "toughness", "modulus", "elongation"};

/// What names were given for, as the table has them.
class Wishes {
 public:
  Wishes(lumo::Table const& table, CompareChoice const& choice) {
    for (std::string const& name : choice.low) m_low.push_back(table.FindAttribute(name).name);
    for (std::string const& name : choice.high) m_high.push_back(table.FindAttribute(name).name);
  }

  /// Refuses what no line could show.
  void Check(std::vector<lumo::Attribute> const& compared) const {
    for (std::string const& name : m_low) {
      if (IsIn(m_high, name)) Refuse(lumo::Quoted(name) + " is given with both --low and --high");
    }
    for (auto const* const names : {&m_low, &m_high}) {
      for (std::string const& name : *names) {
        auto const one = std::find_if(compared.begin(), compared.end(),
                                      [&](auto const& other) { return other.name == name; });
        if (one == compared.end()) {
          Refuse(lumo::Quoted(name) + " is not compared; add -a " + lumo::Quoted(name));
        }
        bool const hasFigure = one->type == lumo::AttributeType::Number ||
                               one->type == lumo::AttributeType::Integer ||
                               one->type == lumo::AttributeType::Range;
        if (!hasFigure)
          Refuse(lumo::Quoted(name) + " (" + NameOf(one->type) + ") has no figure to compare");
      }
    }
  }

  Best BestOf(std::string const& attribute) const {
    if (IsIn(m_low, attribute)) return Best::Low;
    if (IsIn(m_high, attribute)) return Best::High;
    std::string const name = lumo::Lower(attribute);
    auto const isOneOf = [&](auto const& words) {
      return std::any_of(std::begin(words), std::end(words),
                         [&](char const* word) { return name.find(word) != std::string::npos; });
    };
    if (isOneOf(kLowWords)) return Best::Low;
    return isOneOf(kHighWords) ? Best::High : Best::Unknown;
  }

 private:
  static bool IsIn(std::vector<std::string> const& names, std::string const& attribute) {
    return std::find(names.begin(), names.end(), attribute) != names.end();
  }

  std::vector<std::string> m_low;
  std::vector<std::string> m_high;
};

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

  std::vector<Json> Cells(Best best) const {
    std::vector<Json> cells = {m_attribute.name, m_attribute.unit};
    auto const [least, most] = Ends();
    bool const isMarked = best != Best::Unknown && least < most;
    bool const isLowBetter = best == Best::Low;
    for (lumo::Value const& value : m_values) {
      std::string cell = ReadableCell(value, m_attribute.unit);
      auto const number = lumo::NumberIn(value);
      if (isMarked && number == most) cell += std::string(" ") + (isLowBetter ? kWorst : kBest);
      if (isMarked && number == least) cell += std::string(" ") + (isLowBetter ? kBest : kWorst);
      cells.emplace_back(std::move(cell));
    }
    return cells;
  }
  std::vector<Json> Values(bool isJson) const {
    std::vector<Json> cells = {m_attribute.name, m_attribute.unit};
    for (lumo::Value const& value : m_values) {
      cells.push_back(isJson ? JsonOf(value) : Json(CsvCell(value, m_attribute.unit)));
    }
    return cells;
  }
  /// Whether one figure is larger than another.
  bool Differs() const { return Ends().first < Ends().second; }

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

/// Those of the records are their names; namesakes have their identity behind it.
std::vector<std::string> HeadingsOf(std::vector<lumo::Record> const& records) {
  std::vector<std::string> headings = {"Attribute", "Unit"};
  for (lumo::Record const& record : records) {
    auto const isNamesake = [&](lumo::Record const& other) {
      return other.Name() == record.Name() && other.Id().identity != record.Id().identity;
    };
    bool const isAlone = std::none_of(records.begin(), records.end(), isNamesake);
    headings.push_back(record.Name() +
                       (isAlone ? "" : " (id:" + std::to_string(record.Id().identity) + ")"));
  }
  return headings;
}

void Compare(Context& context, CompareChoice const& choice) {
  lumo::Table const table = context.Connect().OpenTable(choice.database, choice.table);
  Wishes const wishes(table, choice);
  lumo::ReadOptions options = context.ReadOptions();
  choice.units.Fill(options, context.output.IsForReading());
  lumo::RecordStream stream = table.All().Named(choice.records).Read(choice.attributes, options);
  std::vector<lumo::Attribute> const& attributes = stream.Attributes();
  wishes.Check(attributes);
  std::vector<lumo::Record> records(stream.begin(), stream.end());
  std::vector<std::string> lowMarked;
  bool isAnyMarked = false;
  bool isAnyUnmarked = false;
  bool const isForReading = context.output.format == Format::Text;
  PutOut(context.output, HeadingsOf(records), [&](TableWriter& out) {
    for (lumo::Attribute const& attribute : attributes) {
      Line const line(attribute, records);
      if (line.IsEmpty()) continue;
      Best const best = wishes.BestOf(attribute.name);
      out.Add(isForReading ? line.Cells(best) : line.Values(context.output.IsJson()));
      if (!line.Differs()) continue;
      isAnyMarked = isAnyMarked || best != Best::Unknown;
      isAnyUnmarked = isAnyUnmarked || best == Best::Unknown;
      if (best == Best::Low) lowMarked.push_back(attribute.name);
    }
  });
  if (!isForReading) return;
  std::string const marks = std::string(kBest) + " best, " + kWorst + " worst";
  std::string const less =
      lowMarked.empty() ? "" : "; less is better for " + lumo::Joined(lowMarked);
  std::string const others = "--high NAME or --low NAME marks other attributes";
  if (isAnyMarked) {
    context.Note(marks + less + (isAnyUnmarked ? "; " + others : ""));
  } else if (isAnyUnmarked) {
    context.Note(others);
  }
}

}  // namespace

void AddCompare(CommandLine& line) {
  auto const choice = std::make_shared<CompareChoice>();
  CLI::App& compare = line.Add(
      "compare", "set records beside each other, an attribute a line",
      "  $ lumo compare ENG_MATERIALS Materials 304 AW-6061-T6 Ti-6Al-4V\n"
      "  $ lumo compare ENG_MATERIALS Materials 304 316L -a density -a price --low price\n\n"
      "The best (*) and the worst (!) figure of a line are marked where it is known which is\n"
      "better: more of a strength, toughness, modulus or elongation, less of a density, price,\n"
      "cost, footprint, expansion or embodied energy. --high and --low mark other attributes.\n"
      "Of ranges the middles are compared.",
      [choice](Context& context) { Compare(context, *choice); });
  AddTable(compare, *choice);
  compare
      .add_option("RECORD", choice->records,
                  "short or full name, path, identity such as id:69, or GUID of a record")
      ->required()
      ->type_name("");
  compare
      .add_option("-a,--attribute", choice->attributes,
                  "attribute to compare; give it once for each; all by default")
      ->type_name("NAME")
      ->allow_extra_args(false);
  compare
      .add_option("--low", choice->low, "attribute of which less is better; give it once for each")
      ->type_name("NAME")
      ->allow_extra_args(false);
  compare
      .add_option("--high", choice->high,
                  "attribute of which more is better; give it once for each")
      ->type_name("NAME")
      ->allow_extra_args(false);
  AddUnits(compare, choice->units);
  AddOutput(compare, line.Shared().output);
}

}  // namespace cli

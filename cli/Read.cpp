#include "cli/Read.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

#include "cli/Cells.h"
#include "cli/Progress.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

using Kind = RowColumn::Kind;

constexpr std::size_t kRelatedInCall = 200;

/// What the options say of columns, before the server is asked.
struct Wanted {
  struct Column {
    Kind kind;
    std::string attribute;
  };
  std::vector<Column> columns;
  std::vector<std::string> attributes;  ///< to read, each once; those of the columns first
};

Wanted::Column ColumnOf(std::string const& text) {
  constexpr std::pair<char const*, Kind> kHeads[] = {
      {"id", Kind::Identity},      {"identity", Kind::Identity}, {"guid", Kind::Guid},
      {"folder", Kind::Folder},    {"name", Kind::Name},         {"full name", Kind::FullName},
      {"fullName", Kind::FullName}};
  for (auto const& [word, kind] : kHeads) {
    if (lumo::EqualIgnoringCase(text, word)) return {kind, ""};
  }
  return {Kind::Value, text};
}

/// The names of a list with commas between them; one that has a comma stands in quotation marks.
std::vector<std::string> NamesIn(std::string const& list) {
  std::vector<std::string> names;
  if (list.empty()) return names;
  names.emplace_back();
  bool isQuoted = false;
  for (char const c : list) {
    if (c == '"') {
      isQuoted = !isQuoted;
    } else if (c == ',' && !isQuoted) {
      names.emplace_back();
    } else {
      names.back() += c;
    }
  }
  for (std::string& name : names) {
    name = std::string(lumo::Trimmed(name));
    if (name.empty()) Refuse("a name is missing in --columns " + lumo::Quoted(list));
  }
  return names;
}

Wanted WantedOf(lumo::Table const& table, ReadChoice const& choice, std::vector<Kind> const& usual,
                bool withAllAttributes) {
  Wanted wanted;
  std::vector<std::string> const texts = NamesIn(choice.columns);
  for (std::string const& text : texts) wanted.columns.push_back(ColumnOf(text));
  if (texts.empty()) {
    for (Kind const kind : usual) wanted.columns.push_back({kind, ""});
  }
  for (std::string const& name : choice.attributes) wanted.columns.push_back({Kind::Value, name});
  if (texts.empty() && choice.attributes.empty() && withAllAttributes) {
    for (auto const& one : table.Attributes()) wanted.columns.push_back({Kind::Value, one.name});
  }
  auto const add = [&](std::string& name) {
    name = table.FindAttribute(name).name;
    auto const& known = wanted.attributes;
    if (std::find(known.begin(), known.end(), name) != known.end()) return false;
    wanted.attributes.push_back(name);
    return true;
  };
  auto const isRepeated = [&](Wanted::Column& column) {
    return column.kind == Kind::Value && !add(column.attribute);
  };
  wanted.columns.erase(std::remove_if(wanted.columns.begin(), wanted.columns.end(), isRepeated),
                       wanted.columns.end());
  return wanted;
}

/// A value by which rows are sorted; those without one come last.
struct SortKey {
  std::optional<double> number;
  std::string text;
  bool IsEmpty() const { return !number && text.empty(); }
};

/// By the figures of a value, a range by its middle; words in the order in which the table has
/// them.
SortKey KeyOf(Row const& row, Wanted::Column const& by, lumo::Attribute const* attribute,
              std::size_t place) {
  switch (by.kind) {
    case Kind::Identity: return {row.head.id.identity, ""};
    case Kind::Guid: return {{}, row.head.id.guid};
    case Kind::Folder: return {{}, row.head.folder};
    case Kind::Name: return {{}, row.head.name};
    case Kind::FullName: return {{}, row.head.fullName};
    default: break;
  }
  lumo::Value const& value = row.values[place];
  if (auto const number = lumo::NumberIn(value)) return {number, ""};
  if (std::holds_alternative<lumo::Points>(value)) {
    Refuse("records cannot be sorted by " + lumo::Quoted(attribute->name) +
           ", which has several figures in a record");
  }
  if (auto const* const words = std::get_if<std::vector<std::string>>(&value)) {
    auto const& known = attribute->words;
    auto const found = std::find(known.begin(), known.end(), words->empty() ? "" : words->front());
    return {static_cast<double>(found - known.begin()), ""};
  }
  return {{}, lumo::Lower(CsvCell(value, ""))};
}

bool HasOrder(lumo::AttributeType type) {
  using Type = lumo::AttributeType;
  return type != Type::Curve && type != Type::Grid && type != Type::File && type != Type::Picture;
}

class Reading {
 public:
  Reading(Context& context, ReadChoice const& choice, Wanted wanted)
      : m_context(context), m_choice(choice), m_wanted(std::move(wanted)) {}

  void Run(lumo::Table const& table) {
    std::optional<Wanted::Column> by;
    if (!m_choice.sort.empty()) {
      by = ColumnOf(m_choice.sort);
      if (by->kind == Kind::Value) {
        m_sortBy = &table.FindAttribute(by->attribute);
        if (!HasOrder(m_sortBy->type)) {
          Refuse("records cannot be sorted by " + lumo::Quoted(m_sortBy->name) + " (" +
                 NameOf(m_sortBy->type) + ")");
        }
        m_sortPlace = PlaceOf(m_sortBy->name);
      }
    }
    lumo::ReadOptions options = m_context.ReadOptions();
    m_choice.units.Fill(options, m_context.output.IsForReading());
    options.withFiles = m_choice.withFiles;
    auto const isGuid = [](auto const& column) { return column.kind == Kind::Guid; };
    auto const& columns = m_wanted.columns;
    // Rows of long forms have them.
    options.withGuids = m_context.output.isLong || m_context.output.format == Format::Xlsx ||
                        std::any_of(columns.begin(), columns.end(), isGuid);
    // GUIDs come with values alone.
    if (options.withGuids && m_wanted.attributes.empty()) {
      m_wanted.attributes.push_back(table.Attributes().at(0).name);
    }
    lumo::Selection const selection = m_choice.In(table);
    RowLayout layout;
    if (m_wanted.attributes.empty()) {
      std::vector<lumo::RecordHead> heads = selection.Heads(options);
      m_counts.found = heads.size();
      Write(layout, by, [&](Take const& take) {
        for (std::size_t at = 0; at < heads.size(); at += kRelatedInCall) {
          std::vector<Row> rows;
          for (std::size_t i = at; i < std::min(heads.size(), at + kRelatedInCall); ++i) {
            rows.push_back({std::move(heads[i]), {}});
          }
          AddRelations(table, rows);
          for (Row& row : rows) {
            if (!take(std::move(row))) return;
          }
        }
      });
      return;
    }
    Progress progress("records", m_context.isQuiet);
    options.onProgress = [&](lumo::Progress const& at) {
      m_counts.found = at.recordsTotal;
      progress.Show(at);
    };
    lumo::RecordStream stream = selection.Read(m_wanted.attributes, options);
    layout.attributes = stream.Attributes();
    layout.units = table.Units();
    Write(layout, by, [&](Take const& take) {
      std::vector<lumo::Record> chunk;
      for (bool goOn = true; goOn && stream.NextChunk(chunk);) {
        progress.Clear();
        std::vector<Row> rows;
        rows.reserve(chunk.size());
        for (lumo::Record const& record : chunk) rows.push_back({record.Head(), record.Values()});
        AddRelations(table, rows);
        for (Row& row : rows) {
          if (goOn) goOn = take(std::move(row));
        }
        if (m_writer) m_writer->Flush();
      }
    });
  }

 private:
  using Take = std::function<bool(Row)>;

  void AddRelations(lumo::Table const& table, std::vector<Row>& rows) const {
    if (!m_choice.withRelations) return;
    std::vector<lumo::RecordHead> heads;
    heads.reserve(rows.size());
    for (Row const& row : rows) heads.push_back(row.head);
    auto relations = lumo::RelationsOf(table, heads);
    for (std::size_t i = 0; i < rows.size(); ++i) rows[i].relations = std::move(relations[i]);
  }

  std::size_t PlaceOf(std::string const& known) {
    auto& all = m_wanted.attributes;
    auto const found = std::find(all.begin(), all.end(), known);
    auto const place = static_cast<std::size_t>(found - all.begin());
    if (found == all.end()) all.push_back(known);
    return place;
  }

  /// Takes what `read` reads, sorts it where that is wanted, and puts it out.
  template <class Read>
  void Write(RowLayout& layout, std::optional<Wanted::Column> const& by, Read read) {
    for (Wanted::Column const& column : m_wanted.columns) {
      auto const found =
          std::find(m_wanted.attributes.begin(), m_wanted.attributes.end(), column.attribute);
      layout.columns.push_back(
          {column.kind, static_cast<std::size_t>(found - m_wanted.attributes.begin())});
    }
    OutputOptions const& output = m_context.output;
    Sink sink(output.file);
    m_writer = MakeRowWriter(output, layout, sink);
    std::size_t const most =
        m_choice.limit == 0 ? std::numeric_limits<std::size_t>::max() : m_choice.limit;
    std::size_t count = 0;
    try {
      if (by) {
        std::vector<Row> rows;
        read([&](Row row) {
          rows.push_back(std::move(row));
          return true;
        });
        Sort(rows, *by);
        for (; count < std::min(rows.size(), most); ++count) m_writer->Write(rows[count]);
      } else {
        read([&](Row const& row) {
          m_writer->Write(row);
          return ++count < most;
        });
      }
    } catch (lumo::Error const& error) {
      if (count == 0) throw;
      m_writer->End();
      throw After(error, Count(count, "record"));
    }
    m_writer->End();
    sink.Finish();
    m_writer.reset();
    m_counts = {count, std::max(count, m_counts.found)};
  }

  void Sort(std::vector<Row>& rows, Wanted::Column const& by) const {
    auto const comesFirst = [&](Row const& a, Row const& b) {
      SortKey const first = KeyOf(a, by, m_sortBy, m_sortPlace);
      SortKey const second = KeyOf(b, by, m_sortBy, m_sortPlace);
      if (first.IsEmpty() || second.IsEmpty()) return !first.IsEmpty() && second.IsEmpty();
      auto const isLess = [](SortKey const& x, SortKey const& y) {
        return x.number && y.number ? *x.number < *y.number : x.text < y.text;
      };
      return m_choice.isDescending ? isLess(second, first) : isLess(first, second);
    };
    std::stable_sort(rows.begin(), rows.end(), comesFirst);
  }

 public:
  Counts const& Told() const { return m_counts; }

 private:
  Context& m_context;
  ReadChoice const& m_choice;
  Wanted m_wanted;
  lumo::Attribute const* m_sortBy = nullptr;
  std::size_t m_sortPlace = 0;
  std::unique_ptr<RowWriter> m_writer;
  Counts m_counts;
};

}  // namespace

void AddReading(CLI::App& command, ReadChoice& choice) {
  command
      .add_option("-a,--attribute", choice.attributes, "attribute to print; give it once for each")
      ->type_name("NAME")
      ->allow_extra_args(false);
  command
      .add_option("--columns", choice.columns,
                  "what to print, with commas between: id, guid, folder, name, full name, and "
                  "attributes, in quotation marks where they have a comma")
      ->type_name("LIST")
      ->check(NotEmpty());
  command
      .add_option("--sort", choice.sort,
                  "order by this attribute or column, ranges by their middle; missing ones last")
      ->type_name("NAME")
      ->check(NotEmpty());
  command.add_flag("--descending", choice.isDescending, "the largest first")->needs("--sort");
  command.add_option("--limit", choice.limit, "records to print at most")
      ->check(Between(1, 1'000'000'000))
      ->type_name("N");
  AddUnits(command, choice.units);
}

void AddWork(CLI::App& command, Context& context) {
  command.add_option("-j,--jobs", context.jobs, "connections to read over (4)")
      ->check(Between(1, 64))
      ->type_name("N");
  command.add_option("--chunk", context.chunk, "records in a call (adapts to their size)")
      ->check(Between(1, 100'000))
      ->type_name("N");
}

Counts PutOutRecords(Context& context, lumo::Table const& table, ReadChoice const& choice,
                     std::vector<Kind> const& usual, bool withAllAttributes) {
  Reading reading(context, choice, WantedOf(table, choice, usual, withAllAttributes));
  reading.Run(table);
  return reading.Told();
}

}  // namespace cli

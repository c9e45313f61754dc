#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <utility>

#include "cli/Cells.h"
#include "cli/Csv.h"
#include "cli/Interrupt.h"
#include "cli/Options.h"
#include "cli/Progress.h"
#include "lumo/toolkit/DataValues.h"
#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/OpenedTable.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/Tree.h"

namespace cli {
namespace {

constexpr int kPollMs = 100;

/// A record as the file has it.
struct NewRecord {
  std::string where;  ///< "line 12" or "record 12", for complaints
  std::string folder;
  std::string name;
  std::string fullName;
  std::vector<std::pair<lumo::Attribute const*, lumo::Value>> values;
};

/// All of a file, without a byte order mark. Ctrl-C ends the wait for a writer that says nothing.
std::string ContentOf(std::string const& file) {
  auto const fail = [&file](int error) {
    StopWhenInterrupted();
    Refuse("cannot read " + file + ": " + std::strerror(error));
  };
  int const in = file == "-" ? STDIN_FILENO : open(file.c_str(), O_RDONLY | O_CLOEXEC);
  if (in < 0) fail(errno);
  std::string text;
  char bytes[65536];
  ssize_t got = 1;
  while (got != 0) {
    StopWhenInterrupted();
    pollfd ready{in, POLLIN, 0};
    if (poll(&ready, 1, kPollMs) <= 0) continue;
    got = read(in, bytes, sizeof bytes);
    if (got < 0 && errno != EINTR) fail(errno);
    if (got > 0) text.append(bytes, static_cast<std::size_t>(got));
  }
  if (in != STDIN_FILENO) close(in);
  return text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? text.substr(3) : text;
}

/// Does what may find fault with a record, and says where it was.
template <class Work>
void At(std::string const& where, Work work) {
  try {
    work();
  } catch (lumo::Error const& error) {
    if (error.Code() == lumo::ErrorCode::Cancelled) throw;
    Refuse(where + ": " + error.what(), error.Hint());
  }
}

/// Reads a table of which every line is a record and every column an attribute.
class CsvRecords {
 public:
  explicit CsvRecords(lumo::Table const& table) : m_table(table) {}

  std::vector<NewRecord> Read(std::string const& text) {
    ReadCsv(text, [this](std::vector<std::string> const& cells) {
      ++m_row;
      if (m_columns.empty()) {
        for (std::string const& heading : cells) AddColumn(heading);
      } else if (std::any_of(cells.begin(), cells.end(),
                             [](auto const& c) { return !c.empty(); })) {
        AddRecord(cells);
      }
    });
    return std::move(m_records);
  }

 private:
  struct Column {
    std::string NewRecord::*name = nullptr;
    lumo::Attribute const* attribute = nullptr;
    std::string unit;
  };

  void AddColumn(std::string const& heading) {
    Column const column = ColumnOf(heading);
    bool const isRepeated =
        std::any_of(m_columns.begin(), m_columns.end(), [&column](Column const& other) {
          return other.name == column.name && other.attribute == column.attribute;
        });
    if (isRepeated) Refuse("the heading " + lumo::Quoted(heading) + " comes twice");
    m_columns.push_back(column);
  }

  /// "Density [kg/m^3]" or "Density"; also a name that ends in brackets of its own.
  Column ColumnOf(std::string const& heading) {
    constexpr std::pair<char const*, std::string NewRecord::*> kNames[] = {
        {"Folder", &NewRecord::folder},
        {"Name", &NewRecord::name},
        {"Full name", &NewRecord::fullName}};
    for (auto const& [name, member] : kNames) {
      if (lumo::EqualIgnoringCase(heading, name)) return {member, nullptr, ""};
    }
    for (lumo::Attribute const& one : m_table.Attributes()) {
      if (lumo::EqualIgnoringCase(one.name, heading)) return {nullptr, &one, one.unit};
    }
    if (heading.find(';') != std::string::npos || heading.find('\t') != std::string::npos) {
      Refuse("the headings need commas between them");
    }
    std::size_t const bracket = heading.rfind(" [");
    bool const hasUnit = bracket != std::string::npos && heading.back() == ']';
    lumo::Attribute const& found = m_table.FindAttribute(heading.substr(0, bracket));
    if (!hasUnit) return {nullptr, &found, found.unit};
    return {nullptr, &found, heading.substr(bracket + 2, heading.size() - bracket - 3)};
  }

  void AddRecord(std::vector<std::string> const& cells) {
    StopWhenInterrupted();
    NewRecord record;
    record.where = "row " + std::to_string(m_row);
    if (cells.size() != m_columns.size()) {
      Refuse(record.where + ": " + std::to_string(cells.size()) + " cells under " +
             std::to_string(m_columns.size()) + " headings");
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
      Column const& column = m_columns[i];
      if (column.name != nullptr) {
        record.*column.name = cells[i];
        continue;
      }
      if (cells[i].empty()) continue;
      At(record.where + ", " + column.attribute->name, [&] {
        record.values.emplace_back(column.attribute,
                                   FromCsvCell(cells[i], *column.attribute, column.unit));
      });
    }
    m_records.push_back(std::move(record));
  }

  lumo::Table const& m_table;
  std::vector<Column> m_columns;
  std::vector<NewRecord> m_records;
  std::size_t m_row = 0;
};

NewRecord RecordOf(lumo::Table const& table, Json const& json, std::string const& where) {
  NewRecord record;
  record.where = where;
  if (!json.is_object()) Refuse(where + " is not an object");
  auto const text = [&](char const* name) {
    Json const value = json.value(name, Json(""));
    if (!value.is_string()) Refuse(where + ": " + lumo::Quoted(name) + " is not a text");
    return value.get<std::string>();
  };
  record.folder = text("folder");
  record.name = text("name");
  record.fullName = text("fullName");
  Json const values = json.value("values", Json::object());
  for (auto const& [name, value] : json.items()) {
    constexpr std::string_view kMembers[] = {"folder",   "name", "fullName",
                                             "identity", "guid", "values"};
    if (std::find(std::begin(kMembers), std::end(kMembers), name) == std::end(kMembers)) {
      Refuse(where + ": there is no member " + lumo::Quoted(name) + "; values stand in \"values\"");
    }
  }
  if (!values.is_object()) Refuse(where + ": \"values\" is not an object");
  for (auto const& [name, value] : values.items()) {
    auto const attributeName = name;
    auto const& attributeValue = value;
    At(where, [&] {
      lumo::Attribute const& attribute = table.FindAttribute(attributeName);
      record.values.emplace_back(&attribute, ValueOf(attributeValue, attribute));
    });
  }
  return record;
}

/// An array of objects, one object, or one object to a line.
std::vector<NewRecord> JsonRecords(lumo::Table const& table, std::string const& text) {
  std::vector<NewRecord> records;
  auto const add = [&](Json const& json, std::string const& where) {
    StopWhenInterrupted();
    records.push_back(RecordOf(table, json, where));
  };
  bool const isArray = text[text.find_first_not_of(" \t\r\n")] == '[';
  if (isArray || Json::accept(text)) {
    Json const all = ParseJson(text);
    if (!isArray) add(all, "the record");
    for (std::size_t i = 0; isArray && i < all.size(); ++i) {
      add(all[i], "record " + std::to_string(i + 1));
    }
    return records;
  }
  std::istringstream in(text);
  std::size_t number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    if (lumo::Trimmed(line).empty()) continue;
    std::string const where = "line " + std::to_string(number);
    At(where, [&] { add(ParseJson(line), where); });
  }
  return records;
}

/// "Metals//Steels/" means "Metals/Steels".
std::string Tidied(std::string const& folder) {
  std::string path;
  for (std::string const& name : lumo::PathParts(folder)) path = lumo::PathBelow(path, name);
  return path;
}

bool LooksLikeJson(std::string const& text) {
  std::size_t const begin = text.find_first_not_of(" \t\r\n");
  return begin != std::string::npos && (text[begin] == '[' || text[begin] == '{');
}

/// Whether there is something to write; what does not apply has no form in an import.
bool HoldsValue(lumo::Value const& value) {
  return !std::holds_alternative<std::monostate>(value) &&
         !std::holds_alternative<lumo::NotApplicable>(value);
}

/// Carries records into a table: makes the folders and records that are missing and changes the
/// others.
class Importer {
 public:
  Importer(Context& context, lumo::Table const& table)
      : m_context(context), m_table(table), m_connection(table.Opened()->pool->Lend()) {
    lumo::TableInfo const& info = table.Opened()->info;
    m_folders[""] = lumo::FolderTree(info).Root(*m_connection).id;
    lumo::TreeWalk walk(*m_connection, info, "", "");
    lumo::TreeWalk::Step step;
    while (walk.Next(*m_connection, step, std::numeric_limits<int>::max())) {
      std::string const path = lumo::PathBelow(step.record.folder, step.record.name);
      (step.isFolder ? m_folders : m_records).emplace(path, step.record.id);
    }
  }

  /// Finds fault before anything is sent.
  void Check(std::vector<NewRecord> const& records) const {
    std::map<std::string, std::string> places;
    for (NewRecord const& record : records) {
      StopWhenInterrupted();
      auto const refuse = [&record](std::string const& why) { Refuse(record.where + ": " + why); };
      if (record.name.empty()) refuse("the record has no name");
      if (!lumo::CanBeSent(record.name + record.fullName + record.folder)) {
        refuse("a name holds a character that cannot be sent");
      }
      auto const [first, isNew] = places.emplace(PathOf(record), record.where);
      if (!isNew) refuse("the record stands in " + first->second + " already");
      ForFolders(record.folder, [&](std::string const& path, std::string const& /*name*/) {
        if (m_records.count(path) > 0 && m_folders.count(path) == 0) {
          refuse(lumo::Quoted(path) + " is a record and holds no others");
        }
      });
      AddValues(record, *ImportRecord::CreateOne());
    }
  }

  /// Says what would be done.
  void Explain(std::vector<NewRecord> const& records, TableWriter& out) {
    std::map<std::string, bool> newFolders;
    for (NewRecord const& record : records) {
      ForFolders(record.folder, [&](std::string const& path, std::string const& name) {
        if (m_folders.count(path) > 0 || !newFolders.emplace(path, true).second) return;
        out.Add({"new folder", path, name, 0});
      });
      bool const isNew = m_records.count(PathOf(record)) == 0;
      out.Add({isNew ? "new record" : "change", record.folder, record.name, record.values.size()});
    }
  }

  void Import(std::vector<NewRecord> const& records) {
    Progress progress("records", m_context.isQuiet);
    std::size_t const chunk =
        m_context.chunk == 0 ? 100 : static_cast<std::size_t>(m_context.chunk);
    std::size_t done = 0;
    try {
      while (done < records.size()) {
        std::size_t const count = std::min(chunk, records.size() - done);
        ImportChunk(&records[done], count);
        done += count;
        progress.Show({done, records.size(), 0, 1, chunk});
      }
    } catch (lumo::Error const& error) {
      progress.Clear();
      if (m_hasWritten && done == 0) throw After(error, "part of the first records");
      if (done == 0) throw;
      throw After(error, std::to_string(done) + " of " + Count(records.size(), "record"));
    }
  }

 private:
  static std::string PathOf(NewRecord const& record) {
    return lumo::PathBelow(record.folder, record.name);
  }
  /// Calls `visit` with the path and the name of the folder and of all above it, from the top.
  template <class Visit>
  static void ForFolders(std::string const& folder, Visit visit) {
    std::string path;
    for (std::string const& name : lumo::PathParts(folder)) {
      path = lumo::PathBelow(path, name);
      visit(path, name);
    }
  }

  void ImportChunk(NewRecord const* records, std::size_t count) {
    auto const first = SetRecordAttributesRequest::CreateOne();
    std::vector<std::size_t> named;  // new records whose full name is another
    for (std::size_t i = 0; i < count; ++i) {
      NewRecord const& record = records[i];
      auto const known = m_records.find(PathOf(record));
      bool const isNew = known == m_records.end();
      auto const sent = isNew ? Sent(Folder(record.folder), record.name, ImportRecordModes::Create)
                              : Sent(known->second, record.fullName, ImportRecordModes::Update);
      AddValues(record, *sent);
      first->AddImportRecord(sent);
      if (isNew && !record.fullName.empty() && record.fullName != record.name) named.push_back(i);
    }
    std::vector<lumo::RecordId> const made = Send(first);
    for (std::size_t i = 0; i < count; ++i) m_records.emplace(PathOf(records[i]), made.at(i));
    if (named.empty()) return;
    // A record gets one name when it is made; the full name follows.
    auto const rename = SetRecordAttributesRequest::CreateOne();
    for (std::size_t const i : named) {
      rename->AddImportRecord(Sent(made.at(i), records[i].fullName, ImportRecordModes::Update));
    }
    Send(rename);
  }

  static SmartPtr<ImportRecord> Sent(lumo::RecordId const& id, std::string const& name,
                                     ImportRecordModes::eImportRecordMode mode,
                                     bool isFolder = false) {
    return {new ImportRecord(lumo::ReferenceTo(id), name, mode, isFolder)};
  }

  void AddValues(NewRecord const& record, ImportRecord& into) const {
    At(record.where, [&] {
      for (auto const& [attribute, value] : record.values) {
        if (!HoldsValue(value)) continue;
        into.AddImportAttributeValue(new ImportAttributeValue(
            lumo::ToDataValue(value, *attribute, m_table.Database(), m_table.Units()),
            m_table.Opened()->info.ReferenceTo(*attribute)));
      }
    });
  }

  /// The folder with that path, made when it is missing.
  lumo::RecordId Folder(std::string const& folder) {
    lumo::RecordId parent = m_folders.at("");
    ForFolders(folder, [&](std::string const& path, std::string const& name) {
      auto known = m_folders.find(path);
      if (known == m_folders.end()) {
        auto const request = SetRecordAttributesRequest::CreateOne();
        request->AddImportRecord(Sent(parent, name, ImportRecordModes::Create, true));
        known = m_folders.emplace(path, Send(request).at(0)).first;
      }
      parent = known->second;
    });
    return parent;
  }

  /// All or nothing of the request; gives the records in its order.
  std::vector<lumo::RecordId> Send(SmartPtr<SetRecordAttributesRequest> const& request) {
    request->SetImportErrorMode(ImportErrorModes::FaultAndRollbackOnAnyError);
    auto const done = m_connection->Write<SetRecordAttributesResponse>([&](auto* into) {
      m_connection->Import()->SetRecordAttributesImplPtr()->SetRecordAttributes_Request(request,
                                                                                        into);
    });
    m_hasWritten = true;
    std::vector<lumo::RecordId> records;
    for (auto const& record : done->AccessRecordsImported()) {
      auto const reference = record->GetRecordReference();
      records.push_back({m_table.Database(), reference->GetIdentity(), ""});
    }
    if (records.size() != request->AccessImportRecords().size()) {
      throw Failure(ExitCode::NotUnderstood, "the reply to an import names other records");
    }
    return records;
  }

  Context& m_context;
  lumo::Table const& m_table;
  std::shared_ptr<lumo::Connection> m_connection;
  std::map<std::string, lumo::RecordId> m_folders;  // by path
  std::map<std::string, lumo::RecordId> m_records;
  bool m_hasWritten = false;
};

struct ImportChoice : TableChoice {
  std::string file;
  bool isDryRun = false;
};

void Import(Context& context, ImportChoice const& choice) {
  lumo::Client const client = context.Connect();  // asks for the password before the file is read
  std::string const text = ContentOf(choice.file);
  lumo::Table const table = client.OpenTable(choice.database, choice.table);
  std::vector<NewRecord> records =
      LooksLikeJson(text) ? JsonRecords(table, text) : CsvRecords(table).Read(text);
  for (NewRecord& record : records) record.folder = Tidied(record.folder);
  Importer importer(context, table);
  importer.Check(records);
  if (!choice.isDryRun) {
    importer.Import(records);
    return context.Note(Count(records.size(), "record") + " imported");
  }
  PutOut(context.output, {"what", "folder", "name", "values"},
         [&](TableWriter& out) { importer.Explain(records, out); });
  context.Note("nothing was written");
}

}  // namespace

void AddImport(CommandLine& line) {
  auto const choice = std::make_shared<ImportChoice>();
  CLI::App& import =
      line.Add("import", "make and change records",
               "  $ lumo import ENG_MATERIALS Materials new.csv --dry-run\n"
               "  $ lumo get ... -f ndjson | lumo import ENG_MATERIALS Materials -\n\n"
               "A CSV file has a line of headings: Folder, Name, Full name and attributes\n"
               "such as \"Density [kg/m^3]\". A record that is there already is changed;\n"
               "an empty cell changes nothing. `lumo get` writes what this reads.",
               [choice](Context& context) { Import(context, *choice); });
  AddTable(import, *choice);
  import.add_option("FILE", choice->file, "CSV, JSON or NDJSON; - for standard input")
      ->required()
      ->type_name("");
  import.add_flag("-n,--dry-run", choice->isDryRun, "only say what would be done");
  import.add_option("--chunk", line.Shared().chunk, "records in a call (100)")
      ->check(Between(1, 100'000))
      ->type_name("N");
  AddOutput(import, line.Shared().output);
}

}  // namespace cli

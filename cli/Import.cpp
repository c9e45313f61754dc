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

#include "cli/Commands.h"
#include "cli/Csv.h"
#include "cli/Interrupt.h"
#include "cli/Names.h"
#include "cli/Progress.h"
#include "cli/Text.h"
#include "cli/Values.h"

namespace cli {
namespace {

constexpr int kPollMs = 100;

/// A record as the file has it.
struct NewRecord {
  std::string where;  ///< "line 12" or "record 12", for complaints
  std::string folder;
  std::string name;
  std::string fullName;
  std::vector<std::pair<SmartPtr<AttributeDetail>, Json>> values;
};

/// All of a file, without a byte order mark. Ctrl-C ends the wait for a writer that says nothing.
std::string ContentOf(std::string const& file) {
  auto const fail = [&file](int error) {
    StopWhenInterrupted();
    throw UsageFailure("cannot read " + file + ": " + std::strerror(error));
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

/// Whether there is something to write; what does not apply has no form in an import.
bool HoldsValue(Json const& json) {
  return !json.is_null() && !(json.is_object() && json.contains("notApplicable"));
}

[[noreturn]] void Refuse(std::string const& where, std::string const& why) {
  throw UsageFailure(where + ": " + why);
}

/// Does what may find fault with a record, and says where it was.
template <class Work>
void At(std::string const& where, Work work) {
  try {
    work();
  } catch (UsageFailure const& failure) {
    Refuse(where, failure.what());
  }
}

/// Reads a table of which every line is a record and every column an attribute.
class CsvRecords {
 public:
  explicit CsvRecords(TableOf& table) : m_table(table) {}

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
    SmartPtr<AttributeDetail> attribute;
    std::string unit;
  };

  void AddColumn(std::string const& heading) {
    Column const column = ColumnOf(heading);
    bool const isRepeated =
        std::any_of(m_columns.begin(), m_columns.end(), [&column](Column const& other) {
          return other.name == column.name && other.attribute == column.attribute;
        });
    if (isRepeated) throw UsageFailure("the heading \"" + heading + "\" comes twice");
    m_columns.push_back(column);
  }

  /// "Density [kg/m^3]" or "Density"; also a name that ends in brackets of its own.
  Column ColumnOf(std::string const& heading) {
    if (EqualIgnoringCase(heading, "Folder")) return {&NewRecord::folder, nullptr, ""};
    if (EqualIgnoringCase(heading, "Name")) return {&NewRecord::name, nullptr, ""};
    if (EqualIgnoringCase(heading, "Full name")) return {&NewRecord::fullName, nullptr, ""};
    for (auto const& attribute : m_table.Attributes()) {
      if (EqualIgnoringCase(attribute->GetName(), heading)) {
        return {nullptr, attribute, attribute->GetDatabaseUnit()};
      }
    }
    if (heading.find(';') != std::string::npos || heading.find('\t') != std::string::npos) {
      throw UsageFailure("the headings need commas between them");
    }
    std::size_t const bracket = heading.rfind(" [");
    if (bracket == std::string::npos || heading.back() != ']') {
      return {nullptr, m_table.Attribute(heading), ""};  // which complains
    }
    return {nullptr, m_table.Attribute(heading.substr(0, bracket)),
            heading.substr(bracket + 2, heading.size() - bracket - 3)};
  }

  void AddRecord(std::vector<std::string> const& cells) {
    StopWhenInterrupted();
    NewRecord record;
    record.where = "row " + std::to_string(m_row);
    if (cells.size() != m_columns.size()) {
      Refuse(record.where, std::to_string(cells.size()) + " cells under " +
                               std::to_string(m_columns.size()) + " headings");
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
      Column const& column = m_columns[i];
      if (column.name != nullptr) {
        record.*column.name = cells[i];
        continue;
      }
      if (cells[i].empty()) continue;
      At(record.where + ", " + column.attribute->GetName(), [&] {
        record.values.emplace_back(column.attribute,
                                   FromCsvCell(cells[i], *column.attribute, column.unit));
      });
    }
    m_records.push_back(std::move(record));
  }

  TableOf& m_table;
  std::vector<Column> m_columns;
  std::vector<NewRecord> m_records;
  std::size_t m_row = 0;
};

NewRecord RecordOf(TableOf& table, Json const& json, std::string const& where) {
  NewRecord record;
  record.where = where;
  if (!json.is_object()) Refuse(where, "is no object");
  auto const text = [&](char const* name) {
    Json const value = json.value(name, Json(""));
    if (!value.is_string()) Refuse(where, std::string("\"") + name + "\" is no text");
    return value.get<std::string>();
  };
  record.folder = text("folder");
  record.name = text("name");
  record.fullName = text("fullName");
  Json const values = json.value("values", Json::object());
  for (auto const& [name, value] : json.items()) {
    constexpr std::string_view kMembers[] = {"folder", "name", "fullName", "identity", "values"};
    if (std::find(std::begin(kMembers), std::end(kMembers), name) == std::end(kMembers)) {
      Refuse(where, "there is no member \"" + name + "\"; values stand in \"values\"");
    }
  }
  if (!values.is_object()) Refuse(where, "\"values\" is no object");
  for (auto const& [name, value] : values.items()) {
    auto const attributeName = name;
    auto const& attributeValue = value;
    At(where, [&] { record.values.emplace_back(table.Attribute(attributeName), attributeValue); });
  }
  return record;
}

/// An array of objects, one object, or one object to a line.
std::vector<NewRecord> JsonRecords(TableOf& table, std::string const& text) {
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
    if (Trimmed(line).empty()) continue;
    std::string const where = "line " + std::to_string(number);
    At(where, [&] { add(ParseJson(line), where); });
  }
  return records;
}

/// "Metals//Steels/" means "Metals/Steels".
std::string Tidied(std::string const& folder) {
  std::string path;
  for (std::string const& name : PathParts(folder)) path = PathBelow(path, name);
  return path;
}

bool LooksLikeJson(std::string const& text) {
  std::size_t const begin = text.find_first_not_of(" \t\r\n");
  return begin != std::string::npos && (text[begin] == '[' || text[begin] == '{');
}

/// Carries records into a table: makes the folders and records that are missing and changes the
/// others.
class Importer {
 public:
  Importer(Context& context, Connection& connection, TableOf& table)
      : m_context(context), m_connection(connection), m_table(table) {
    m_folders[""] = RootOf(connection, table);
    TreeWalk walk(connection, table, "", "");
    TreeWalk::Step step;
    while (walk.Next(step, std::numeric_limits<int>::max())) {
      std::string const path = PathBelow(step.entry.folder, step.entry.name);
      (step.isFolder ? m_folders : m_records).emplace(path, step.entry.record);
    }
  }

  /// Throws `UsageFailure` when a record is to lie in what is no folder.
  void Check(std::vector<NewRecord> const& records) const {
    for (NewRecord const& record : records) {
      std::string path;
      for (std::string const& name : PathParts(record.folder)) {
        path = PathBelow(path, name);
        if (m_records.count(path) > 0 && m_folders.count(path) == 0) {
          Refuse(record.where, "\"" + path + "\" is a record and holds no others");
        }
      }
    }
  }

  /// Says what would be done.
  void Explain(std::vector<NewRecord> const& records, TableWriter& out) {
    std::map<std::string, bool> newFolders;
    for (NewRecord const& record : records) {
      std::string path;
      for (std::string const& name : PathParts(record.folder)) {
        path = PathBelow(path, name);
        if (m_folders.count(path) > 0 || !newFolders.emplace(path, true).second) continue;
        out.Add({"new folder", path, name, 0});
      }
      bool const isNew = Existing(record) == nullptr;
      out.Add({isNew ? "new record" : "change", record.folder, record.name, record.values.size()});
    }
  }

  void Import(std::vector<NewRecord> const& records) {
    Progress progress("records", records.size(), m_context.isQuiet);
    auto const chunk = static_cast<std::size_t>(m_context.chunk);
    try {
      for (std::size_t at = 0; at < records.size(); at += chunk) {
        std::size_t const count = std::min(chunk, records.size() - at);
        ImportChunk(&records[at], count);
        progress.Add(count);
      }
    } catch (Failure const& failure) {
      progress.Clear();
      if (m_hasWritten && progress.Done() == 0) throw failure.After("part of the first records");
      if (progress.Done() == 0) throw;
      throw failure.After(std::to_string(progress.Done()) + " of " +
                          Count(records.size(), "record"));
    }
  }

 private:
  SmartPtr<RecordReference> Existing(NewRecord const& record) const {
    auto const found = m_records.find(PathBelow(record.folder, record.name));
    return found == m_records.end() ? nullptr : found->second;
  }

  void ImportChunk(NewRecord const* records, std::size_t count) {
    auto const first = SetRecordAttributesRequest::CreateOne();
    std::vector<std::size_t> named;  // new records whose full name is another
    for (std::size_t i = 0; i < count; ++i) {
      NewRecord const& record = records[i];
      SmartPtr<RecordReference> const existing = Existing(record);
      first->AddImportRecord(existing ? Change(record, existing) : Creation(record));
      bool const isOther = !record.fullName.empty() && record.fullName != record.name;
      if (!existing && isOther) named.push_back(i);
    }
    auto const made = Send(first);
    for (std::size_t i = 0; i < count; ++i) {
      m_records.emplace(PathBelow(records[i].folder, records[i].name), made.at(i));
    }
    if (named.empty()) return;
    // A record gets one name when it is made; the full name follows.
    auto const rename = SetRecordAttributesRequest::CreateOne();
    for (std::size_t const i : named) {
      rename->AddImportRecord(
          new ImportRecord(made.at(i), records[i].fullName, ImportRecordModes::Update, false));
    }
    Send(rename);
  }

  SmartPtr<ImportRecord> Change(NewRecord const& record,
                                SmartPtr<RecordReference> const& existing) {
    SmartPtr<ImportRecord> change(
        new ImportRecord(existing, record.fullName, ImportRecordModes::Update, false));
    AddValues(record, *change);
    return change;
  }

  SmartPtr<ImportRecord> Creation(NewRecord const& record) {
    SmartPtr<ImportRecord> made(
        new ImportRecord(Folder(record.folder), record.name, ImportRecordModes::Create, false));
    AddValues(record, *made);
    return made;
  }

  void AddValues(NewRecord const& record, ImportRecord& into) {
    At(record.where, [&] {
      for (auto const& [attribute, json] : record.values) {
        if (!HoldsValue(json)) continue;
        into.AddImportAttributeValue(new ImportAttributeValue(ValueOf(json, m_table, *attribute),
                                                              m_table.ReferenceTo(*attribute)));
      }
    });
  }

  /// The folder with that path, made when it is missing.
  SmartPtr<RecordReference> Folder(std::string const& path) {
    auto const known = m_folders.find(path);
    if (known != m_folders.end()) return known->second;
    SmartPtr<RecordReference> parent = m_folders.at("");
    std::string at;
    for (std::string const& name : PathParts(path)) {
      at = PathBelow(at, name);
      SmartPtr<RecordReference>& folder = m_folders[at];
      if (!folder) {
        auto const request = SetRecordAttributesRequest::CreateOne();
        request->AddImportRecord(new ImportRecord(parent, name, ImportRecordModes::Create, true));
        folder = Send(request).at(0);
      }
      parent = folder;
    }
    return parent;
  }

  /// All or nothing of the request; gives the records in its order.
  std::vector<SmartPtr<RecordReference>> Send(SmartPtr<SetRecordAttributesRequest> const& request) {
    StopWhenInterrupted();
    request->SetImportErrorMode(ImportErrorModes::FaultAndRollbackOnAnyError);
    auto const done = m_connection.Ask<SetRecordAttributesResponse>([&](auto* into) {
      m_connection.Import()->SetRecordAttributesImplPtr()->SetRecordAttributes_Request(request,
                                                                                       into);
    });
    m_hasWritten = true;
    std::vector<SmartPtr<RecordReference>> records;
    for (auto const& record : done->AccessRecordsImported()) {
      records.push_back(record->GetRecordReference());
    }
    if (records.size() != request->AccessImportRecords().size()) {
      throw Failure(ExitCode::NotUnderstood, "the reply to an import names other records");
    }
    return records;
  }

  Context& m_context;
  Connection& m_connection;
  TableOf& m_table;
  std::map<std::string, SmartPtr<RecordReference>> m_folders;  // by path
  std::map<std::string, SmartPtr<RecordReference>> m_records;
  bool m_hasWritten = false;
};

/// Finds fault before anything is sent.
void CheckAll(std::vector<NewRecord> const& records, TableOf& table) {
  std::map<std::string, std::string> places;
  for (NewRecord const& record : records) {
    StopWhenInterrupted();
    if (record.name.empty()) Refuse(record.where, "the record has no name");
    if (!CanBeSent(record.name + record.fullName + record.folder)) {
      Refuse(record.where, "a name holds a character that cannot be sent");
    }
    auto const [first, isNew] = places.emplace(PathBelow(record.folder, record.name), record.where);
    if (!isNew) Refuse(record.where, "the record stands in " + first->second + " already");
    At(record.where, [&] {
      for (auto const& [attribute, json] : record.values) {
        if (!HoldsValue(json)) continue;
        ValueOf(json, table, *attribute);
      }
    });
  }
}

}  // namespace

void Import(Context& context, ImportOptions const& options) {
  auto const connection = context.Connect();  // asks for the password before the file is read
  std::string const text = ContentOf(options.file);
  TableOf table(*connection, options.database, options.table);
  std::vector<NewRecord> records =
      LooksLikeJson(text) ? JsonRecords(table, text) : CsvRecords(table).Read(text);
  for (NewRecord& record : records) record.folder = Tidied(record.folder);
  CheckAll(records, table);
  Importer importer(context, *connection, table);
  importer.Check(records);
  if (!options.isDryRun) {
    importer.Import(records);
    context.Note(Count(records.size(), "record") + " imported");
    return;
  }
  Sink sink(context.output.file);
  TableWriter out(context.output, sink, {"what", "folder", "name", "values"});
  importer.Explain(records, out);
  out.Finish();
  context.Note("nothing was written");
}

}  // namespace cli

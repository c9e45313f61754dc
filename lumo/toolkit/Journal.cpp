#include "lumo/toolkit/Journal.h"

#include <cstdio>
#include <limits>
#include <map>
#include <utility>

#include "lumo/toolkit/Sqlite.h"
#include "lumo/toolkit/ValueBytes.h"

namespace lumo {
namespace {

using Query = SqliteFile::Query;
using Change = SqliteFile::Change;

constexpr char kSchema[] = R"(
CREATE TABLE run (key TEXT PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE folder (
  path TEXT PRIMARY KEY, name TEXT NOT NULL, parent_path TEXT NOT NULL, parent INTEGER NOT NULL,
  identity INTEGER NOT NULL DEFAULT 0, state INTEGER NOT NULL DEFAULT 0,
  why TEXT NOT NULL DEFAULT '');
CREATE TABLE step (
  number INTEGER PRIMARY KEY, source_row INTEGER NOT NULL, kind INTEGER NOT NULL,
  state INTEGER NOT NULL, folder TEXT NOT NULL, name TEXT NOT NULL,
  full_name_before TEXT NOT NULL, full_name TEXT NOT NULL, parent INTEGER NOT NULL,
  identity INTEGER NOT NULL, guid TEXT NOT NULL);
CREATE INDEX step_by_state ON step (state);
CREATE TABLE value (
  step INTEGER NOT NULL, attribute TEXT NOT NULL, before BLOB NOT NULL, after BLOB NOT NULL);
CREATE INDEX value_by_step ON value (step);
CREATE TABLE shown (
  step INTEGER NOT NULL, attribute TEXT NOT NULL, before TEXT NOT NULL, after TEXT NOT NULL);
CREATE TABLE fault (step INTEGER NOT NULL, attribute TEXT NOT NULL, why TEXT NOT NULL);
CREATE TABLE note (step INTEGER NOT NULL, text TEXT NOT NULL);
PRAGMA application_id = 1280658762;
PRAGMA user_version = 1;
)";
constexpr std::int64_t kApplication = 1280658762;
constexpr std::int64_t kVersion = 1;
constexpr std::size_t kAllSteps = std::numeric_limits<std::int32_t>::max();
constexpr char kStepColumns[] =
    "SELECT number, kind, state, source_row, folder, name, full_name_before, full_name, parent,"
    " identity, guid FROM step WHERE ";

std::int64_t NumberOf(StepState state) { return static_cast<std::int64_t>(state); }
std::int64_t NumberOf(RowVerdict::Kind kind) { return static_cast<std::int64_t>(kind); }

/// FNV-1a, which tells one file from another, and keeps no secrets.
class Hash {
 public:
  void Add(std::string const& text) {
    for (char const c : text + '\0') {
      m_hash = (m_hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
  }
  std::string Text() const {
    char text[20];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(m_hash));
    return text;
  }

 private:
  std::uint64_t m_hash = 14695981039346656037U;
};

std::string HashOf(ImportPlan const& plan) {
  Hash hash;
  for (PlannedRow const& row : plan.rows) {
    hash.Add(row.folder);
    hash.Add(row.row->name);
    for (PlannedValue const& value : row.values) {
      hash.Add(value.attribute->name);
      hash.Add(BytesOf(value.after));
    }
  }
  return hash.Text();
}

}  // namespace

class Journal::Database : public SqliteFile {
 public:
  using SqliteFile::SqliteFile;
};

Journal::Journal(std::unique_ptr<Database> database) : m_database(std::move(database)) {
  m_database->Run("PRAGMA locking_mode = EXCLUSIVE");
  m_database->Run("PRAGMA synchronous = FULL");
  m_database->Run("BEGIN EXCLUSIVE");  // and nobody else has it until it is closed
  m_database->Run("COMMIT");
}

Journal::~Journal() = default;

std::unique_ptr<Journal> Journal::Create(std::filesystem::path const& path, Head const& head,
                                         ImportPlan const& plan) {
  std::unique_ptr<Journal> journal(new Journal(std::make_unique<Database>(path, true)));
  journal->WritePlan(head, plan);
  return journal;
}

std::unique_ptr<Journal> Journal::Open(std::filesystem::path const& path) {
  std::unique_ptr<Journal> journal(new Journal(std::make_unique<Database>(path, false)));
  journal->ReadHead();
  return journal;
}

// ---- the plan

void Journal::WritePlan(Head const& head, ImportPlan const& plan) {
  m_head = head;
  m_head.hash = HashOf(plan);
  Change change(*m_database);
  m_database->Run(kSchema);
  Query put(*m_database, "INSERT INTO run VALUES (?, ?)");
  std::pair<char const*, std::string> const facts[] = {
      {"url", m_head.url},
      {"database", m_head.database},
      {"table", m_head.table},
      {"source", m_head.source},
      {"hash", m_head.hash},
      {"keepsGoing", m_head.keepsGoing ? "1" : "0"},
      {"chunkSize", std::to_string(m_head.chunkSize)}};
  for (auto const& [key, value] : facts) {
    put << std::string(key) << value;
    put.Run();
  }
  Query folder(*m_database,
               "INSERT INTO folder (path, name, parent_path, parent) VALUES (?, ?, ?, ?)");
  for (PlannedFolder const& one : plan.folders) {
    folder << one.path << one.name << one.parentPath << (one.parent ? one.parent->identity : 0);
    folder.Run();
  }
  for (PlannedRow const& row : plan.rows) WriteRow(row);
  change.Commit();
}

void Journal::WriteRow(PlannedRow const& row) {
  RowVerdict const& verdict = row.verdict;
  using Kind = RowVerdict::Kind;
  StepState const state = verdict.kind == Kind::Refused ? StepState::Refused
                          : verdict.kind == Kind::Same  ? StepState::Done
                                                        : StepState::Waiting;
  std::string const before = row.record ? row.record->fullName : row.row->name;
  std::string const& wanted = row.row->fullName;
  Query step(*m_database,
             "INSERT INTO step (source_row, kind, state, folder, name, full_name_before, full_name,"
             " parent, identity, guid) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?) RETURNING number");
  step << static_cast<std::int64_t>(verdict.row) << NumberOf(verdict.kind) << NumberOf(state)
       << row.folder << verdict.name << before << (wanted == before ? std::string() : wanted)
       << (row.parent ? row.parent->identity : 0) << verdict.id.identity << verdict.id.guid;
  step.Next();
  std::int64_t const number = step.Number(0);
  if (state == StepState::Waiting) {
    Query put(*m_database, "INSERT INTO value VALUES (?, ?, ?, ?)");
    for (PlannedValue const& value : row.values) {
      put << number << value.attribute->name;
      put.Bytes(BytesOf(value.before)).Bytes(BytesOf(value.after));
      put.Run();
    }
  }
  Query shown(*m_database, "INSERT INTO shown VALUES (?, ?, ?, ?)");
  for (ValueChange const& one : verdict.changes) {
    shown << number << one.attribute << one.before << one.after;
    shown.Run();
  }
  Query fault(*m_database, "INSERT INTO fault VALUES (?, ?, ?)");
  for (RowFault const& one : verdict.faults) {
    fault << number << one.attribute << one.why;
    fault.Run();
  }
  Query note(*m_database, "INSERT INTO note VALUES (?, ?)");
  for (std::string const& text : verdict.notes) {
    note << number << text;
    note.Run();
  }
}

void Journal::ReadHead() {
  auto const number = [&](char const* pragma) {
    Query query(*m_database, pragma);
    return query.Next() ? query.Number(0) : 0;
  };
  bool const isOurs = number("PRAGMA application_id") == kApplication;
  if (!isOurs || number("PRAGMA user_version") != kVersion) {
    throw Error(ErrorCode::InvalidArgument,
                isOurs ? "the journal was written by another version of this library"
                       : "the file is not a journal, or nothing was planned yet");
  }
  std::map<std::string, std::string> facts;
  for (Query query(*m_database, "SELECT key, value FROM run"); query.Next();) {
    facts[query.Text(0)] = query.Text(1);
  }
  m_head = {facts["url"],
            facts["database"],
            facts["table"],
            facts["source"],
            facts["hash"],
            facts["keepsGoing"] == "1",
            static_cast<std::size_t>(std::stoul("0" + facts["chunkSize"]))};
}

// ---- reading

std::vector<FolderStep> Journal::Folders() {
  std::vector<FolderStep> folders;
  Query query(*m_database,
              "SELECT path, name, parent_path, parent, identity, state, why FROM folder"
              " ORDER BY rowid");
  while (query.Next()) {
    FolderStep folder{query.Text(0), query.Text(1), query.Text(2)};
    folder.parent = {m_head.database, static_cast<int>(query.Number(3)), ""};
    folder.record = {m_head.database, static_cast<int>(query.Number(4)), ""};
    folder.state = static_cast<StepState>(query.Number(5));
    folder.why = query.Text(6);
    folders.push_back(std::move(folder));
  }
  return folders;
}

std::vector<Step> Journal::Load(std::string const& condition, std::int64_t argument,
                                std::size_t most) {
  std::vector<Step> steps;
  Query query(*m_database, kStepColumns + condition + " ORDER BY number LIMIT ?");
  query << argument << static_cast<std::int64_t>(most);
  while (query.Next()) {
    Step step;
    step.number = query.Number(0);
    step.kind = static_cast<RowVerdict::Kind>(query.Number(1));
    step.state = static_cast<StepState>(query.Number(2));
    step.row = static_cast<std::size_t>(query.Number(3));
    step.folder = query.Text(4);
    step.name = query.Text(5);
    step.fullNameBefore = query.Text(6);
    step.fullName = query.Text(7);
    step.parent = {m_head.database, static_cast<int>(query.Number(8)), ""};
    step.record = {m_head.database, static_cast<int>(query.Number(9)), query.Text(10)};
    steps.push_back(std::move(step));
  }
  return steps;
}

void Journal::LoadValues(std::vector<Step>& steps) {
  Query query(*m_database,
              "SELECT attribute, before, after FROM value WHERE step = ? ORDER BY rowid");
  for (Step& step : steps) {
    query << step.number;
    while (query.Next()) {
      step.values.push_back(
          {query.Text(0), ValueFromBytes(query.Text(1)), ValueFromBytes(query.Text(2))});
    }
    query.Reset();
  }
}

std::vector<Step> Journal::Next(StepState state, std::size_t most) {
  std::vector<Step> steps = Load("state = ?", NumberOf(state), most);
  LoadValues(steps);
  return steps;
}

std::vector<Step> Journal::All(RowVerdict::Kind kind, StepState state) {
  std::vector<Step> steps = Load("state = " + std::to_string(NumberOf(state)) + " AND kind = ?",
                                 NumberOf(kind), kAllSteps);
  LoadValues(steps);
  return steps;
}

std::size_t Journal::CountOf(StepState state) {
  Query query(*m_database, "SELECT count(*) FROM step WHERE state = ?");
  query << NumberOf(state);
  return query.Next() ? static_cast<std::size_t>(query.Number(0)) : 0;
}

std::chrono::system_clock::time_point Journal::LastSent() {
  Query query(*m_database, "SELECT value FROM run WHERE key = 'sent'");
  std::int64_t const sent = query.Next() ? query.Number(0) : 0;
  return std::chrono::system_clock::time_point(std::chrono::milliseconds(sent));
}

// ---- writing

void Journal::SetSent() {
  auto const now = std::chrono::system_clock::now().time_since_epoch();
  Query query(*m_database, "INSERT OR REPLACE INTO run VALUES ('sent', ?)");
  query << std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  query.Run();
}

void Journal::SetState(std::vector<Step> const& steps, StepState state) {
  Query query(*m_database,
              "UPDATE step SET state = ?, kind = ?, identity = ?, guid = ? WHERE number = ?");
  for (Step const& step : steps) {
    query << NumberOf(state) << NumberOf(step.kind) << step.record.identity << step.record.guid
          << step.number;
    query.Run();
  }
}

void Journal::SetState(std::vector<FolderStep> const& folders, StepState state) {
  Query query(*m_database, "UPDATE folder SET state = ?, identity = ?, why = ? WHERE path = ?");
  for (FolderStep const& folder : folders) {
    query << NumberOf(state) << folder.record.identity << folder.why << folder.path;
    query.Run();
  }
}

void Journal::NoteSent(std::vector<Step> const& steps) {
  Change change(*m_database);
  SetSent();
  SetState(steps, StepState::Sent);
  change.Commit();
}

void Journal::NoteSent(std::vector<FolderStep> const& folders) {
  Change change(*m_database);
  SetSent();
  SetState(folders, StepState::Sent);
  change.Commit();
}

void Journal::Note(std::vector<Step> const& steps, StepState state) {
  Change change(*m_database);
  SetState(steps, state);
  change.Commit();
}

void Journal::Note(std::vector<FolderStep> const& folders, StepState state) {
  Change change(*m_database);
  SetState(folders, state);
  change.Commit();
}

void Journal::NoteRefused(Step const& step, RowFault const& fault) {
  Change change(*m_database);
  SetState({step}, StepState::Refused);
  Query query(*m_database, "INSERT INTO fault VALUES (?, ?, ?)");
  query << step.number << fault.attribute << fault.why;
  query.Run();
  change.Commit();
}

// ---- the report

ImportReport Journal::Report() {
  ImportReport report;
  std::map<std::int64_t, std::size_t> places;
  for (Step& step : Load("number > ?", 0, kAllSteps)) {
    RowVerdict verdict;
    verdict.kind = step.state == StepState::Done || step.state == StepState::Made ? step.kind
                   : step.state == StepState::Refused ? RowVerdict::Kind::Refused
                                                      : RowVerdict::Kind::Waiting;
    if (step.state == StepState::Sent) verdict.notes.emplace_back(kSentNote);
    verdict.row = step.row;
    verdict.id = step.record;
    verdict.folder = std::move(step.folder);
    verdict.name = std::move(step.name);
    places[step.number] = report.rows.size();
    report.rows.push_back(std::move(verdict));
  }
  for (Query query(*m_database, "SELECT step, attribute, before, after FROM shown");
       query.Next();) {
    RowVerdict& row = report.rows.at(places.at(query.Number(0)));
    if (row.kind == RowVerdict::Kind::Same) continue;  // somebody else made the changes
    row.changes.push_back({query.Text(1), query.Text(2), query.Text(3)});
  }
  for (Query query(*m_database, "SELECT step, attribute, why FROM fault"); query.Next();) {
    report.rows.at(places.at(query.Number(0))).faults.push_back({query.Text(1), query.Text(2)});
  }
  for (Query query(*m_database, "SELECT step, text FROM note"); query.Next();) {
    report.rows.at(places.at(query.Number(0))).notes.push_back(query.Text(1));
  }
  for (FolderStep const& folder : Folders()) {
    if (folder.state == StepState::Done) report.newFolders.push_back(folder.path);
  }
  report.isWritten = true;
  return report;
}

}  // namespace lumo

#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lumo/toolkit/ImportPlan.h"

/// The file in which an import keeps what it does. Not installed.
namespace lumo {

/// How far a record has come. `Sent` is written before a request goes out, and left when its reply
/// is in; `Made` records wait for their full name and links, and never go out again. `Made` folders
/// were made by somebody else.
enum class StepState { Waiting, Sent, Made, Done, Refused };

/// Note on a row that is `Sent`.
constexpr char kSentNote[] = "was sent, and may have happened or not";

/// A record as the journal has it.
struct Step {
  struct Content {
    std::string attribute;
    Value before;
    Value after;
  };
  std::int64_t number = 0;  ///< in the journal
  RowVerdict::Kind kind = RowVerdict::Kind::Same;
  StepState state = StepState::Waiting;
  std::size_t row = 0;
  std::string folder = {};
  std::string name = {};
  std::string fullNameBefore = {};
  std::string fullName = {};  ///< empty to leave it
  RecordId parent = {};       ///< of a record to make; without identity when its folder is new
  RecordId record = {};       ///< without identity before it is made
  std::vector<Content> values = {};
};

/// A folder to make.
struct FolderStep {
  std::string path = {};
  std::string name = {};
  std::string parentPath = {};
  RecordId parent = {};  ///< without identity when it is new, too
  RecordId record = {};  ///< without identity before it is made
  StepState state = StepState::Waiting;
  std::string why = {};  ///< it was refused
};

/// SQLite, so that what was committed is on the disk and a process that was killed leaves nothing
/// half written. One process at a time has the file. All functions throw `Error` (InvalidArgument).
class Journal {
 public:
  struct Head {
    std::string url = {};
    std::string database = {};  ///< key
    std::string table = {};
    std::string source = {};
    std::string hash = {};  ///< of what was to be imported
    bool keepsGoing = false;
    std::size_t chunkSize = 100;
  };

  /// A new file with all of the plan.
  static std::unique_ptr<Journal> Create(std::filesystem::path const& path, Head const& head,
                                         ImportPlan const& plan);
  static std::unique_ptr<Journal> Open(std::filesystem::path const& path);
  ~Journal();
  Journal(Journal const&) = delete;
  Journal& operator=(Journal const&) = delete;

  Head const& About() const { return m_head; }
  std::vector<FolderStep> Folders();
  /// The next ones in that state, with their values; at most so many.
  std::vector<Step> Next(StepState state, std::size_t most);
  std::vector<Step> All(RowVerdict::Kind kind, StepState state);
  std::size_t CountOf(StepState state);
  /// When a request went out last.
  std::chrono::system_clock::time_point LastSent();

  /// On the disk before they return.
  void NoteSent(std::vector<Step> const& steps);
  void Note(std::vector<Step> const& steps, StepState state);  ///< with their kinds and records
  void NoteRefused(Step const& step, RowFault const& fault);
  void NoteSent(std::vector<FolderStep> const& folders);
  void Note(std::vector<FolderStep> const& folders, StepState state);

  /// What the journal says of all rows.
  ImportReport Report();

 private:
  class Database;
  explicit Journal(std::unique_ptr<Database> database);
  void ReadHead();
  std::vector<Step> Load(std::string const& condition, std::int64_t argument, std::size_t most);
  void LoadValues(std::vector<Step>& steps);
  void WritePlan(Head const& head, ImportPlan const& plan);
  void WriteRow(PlannedRow const& row);
  void SetState(std::vector<Step> const& steps, StepState state);
  void SetState(std::vector<FolderStep> const& folders, StepState state);
  void SetSent();

  std::unique_ptr<Database> m_database;
  Head m_head;
};

}  // namespace lumo

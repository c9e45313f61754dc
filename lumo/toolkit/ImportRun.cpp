#include "lumo/toolkit/ImportRun.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "lumo/toolkit/ImportLook.h"
#include "lumo/toolkit/ImportRequest.h"
#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

using SystemClock = std::chrono::system_clock;

constexpr int kTooLarge = 413;
constexpr int kGatewayTimeout = 504;
constexpr std::chrono::milliseconds kLook{50};

/// Whether the server may have acted on the request.
bool IsOpen(Error const& error) {
  bool const isOddStatus = error.Code() == ErrorCode::ServerFault && error.FaultCode().empty() &&
                           error.HttpStatus() != kTooLarge;
  return error.Code() == ErrorCode::OutcomeUnknown || error.Code() == ErrorCode::NotUnderstood ||
         isOddStatus;
}

/// Whether the server may still be at work on it, for as long as it likes.
bool MayStillHappen(Error const& error) {
  if (error.Code() != ErrorCode::OutcomeUnknown) return false;
  return error.HttpStatus() == kGatewayTimeout ||
         (!error.Attempts().empty() && error.Attempts().back().code == ErrorCode::Timeout);
}

bool IsRefusal(Error const& error) { return error.Code() == ErrorCode::ServerFault; }

/// Whether its links are all that there is to change, for which no record is sent.
bool HasLinksAlone(Step const& step) {
  return step.kind == RowVerdict::Kind::Change && step.fullName.empty() &&
         std::all_of(step.values.begin(), step.values.end(), [](Step::Content const& value) {
           return ImportFields::IsLinks(value.attribute);
         });
}

/// A record gets one name when it is made; the full name follows.
bool LacksName(Step const& step) {
  return step.kind == RowVerdict::Kind::Create && !step.fullName.empty();
}

/// How long the server wants to be left alone.
std::chrono::milliseconds AskedWait(Error const& error) {
  int seconds = 0;
  bool const asks = error.Hint().code == HintCode::WaitSeconds && !error.Hint().arguments.empty();
  if (asks && ReadInteger(error.Hint().arguments.front(), seconds)) {
    return std::chrono::seconds(seconds);
  }
  return {};
}

}  // namespace

ImportRun::ImportRun(std::shared_ptr<OpenedTable> table, Journal& journal, ImportOptions options)
    : m_table(std::move(table)),
      m_journal(journal),
      m_options(std::move(options)),
      m_connection(m_table->pool->Lend()),
      m_fields(m_table) {
  m_connection->Scope().cancel = m_options.cancel;
  for (FolderStep const& folder : m_journal.Folders()) {
    m_folders[folder.path] = folder;
    m_folderOrder.push_back(folder.path);
  }
  m_total = m_journal.CountOf(StepState::Waiting) + m_journal.CountOf(StepState::Sent);
}

ImportReport ImportRun::Go() {
  std::optional<Error> stopped;
  try {
    SettleLeftovers();
    SendAll();
  } catch (Error const& error) {
    stopped = error;
  }
  ImportReport report = m_journal.Report();
  report.stopped = std::move(stopped);
  return report;
}

void ImportRun::SettleLeftovers() {
  Folders sent;
  for (auto const& [path, folder] : m_folders) {
    if (folder.state == StepState::Sent) sent.push_back(folder);
  }
  if (!sent.empty()) {
    Settle(std::move(sent), [this](Folders const& left) { return LookForFolders(left); });
  }
  for (;;) {
    Steps left = m_journal.Next(StepState::Sent, m_journal.About().chunkSize);
    if (left.empty()) break;
    Settle(WithParents(std::move(left)), [this](Steps const& steps) { return Look(steps); });
  }
  for (;;) {
    Steps const made = m_journal.Next(StepState::Made, m_journal.About().chunkSize);
    if (made.empty()) break;
    Finish(made);
  }
}

void ImportRun::SendAll() {
  for (;;) {
    Tell();
    m_connection->Scope().ThrowWhenOver();
    Steps steps = m_journal.Next(StepState::Waiting, m_journal.About().chunkSize);
    if (steps.empty()) return;
    if (MakeFolders(steps)) Send(WithParents(std::move(steps)));
    if (m_hasRefused && !m_options.keepsGoing) {
      throw Error(ErrorCode::ServerFault, "the server refused rows; what follows was not sent");
    }
  }
}

void ImportRun::Tell() {
  if (!m_options.onProgress) return;
  Progress progress;
  progress.recordsTotal = m_total;
  progress.recordsDone = m_total - std::min(m_total, m_journal.CountOf(StepState::Waiting));
  progress.workers = 1;
  progress.chunk = m_journal.About().chunkSize;
  m_options.onProgress(progress);
}

void ImportRun::Wait(SystemClock::time_point until) {
  while (SystemClock::now() < until) {
    m_connection->Scope().ThrowWhenOver();
    std::this_thread::sleep_for(std::min<SystemClock::duration>(kLook, until - SystemClock::now()));
  }
}

/// Looks until all has happened, or until the server has had the time for it. What has not happened
/// then waits to be sent.
template <class List, class LookFor>
List ImportRun::Settle(List left, LookFor lookFor) {
  left = lookFor(left);
  if (!left.empty() && SystemClock::now() < m_journal.LastSent() + m_options.settleAfter) {
    Wait(m_journal.LastSent() + m_options.settleAfter);
    left = lookFor(left);
  }
  if (!left.empty()) m_journal.Note(left, StepState::Waiting);
  return left;
}

/// Sends, and again what a look-up does not find when the reply is lost or the server is busy.
/// `once` gives what is to be sent again after a refusal.
template <class List, class Once, class LookFor>
List ImportRun::Repeat(List left, Once once, LookFor lookFor) {
  RetryPolicy const& policy = m_connection->Options().retry;
  std::chrono::milliseconds backoff = policy.initialBackoff;
  for (int attempt = 1;; ++attempt) {
    try {
      return once(left);
    } catch (Error const& error) {
      if (!IsOpen(error)) m_journal.Note(left, StepState::Waiting);
      if (!IsOpen(error) && !error.IsRetryable()) throw;
      if (IsOpen(error)) left = Settle(std::move(left), lookFor);
      if (left.empty()) return left;
      bool const hasTime = AskedWait(error) <= policy.maxElapsed;
      if (MayStillHappen(error) || attempt >= policy.maxAttempts || !hasTime) throw;
      Wait(SystemClock::now() + std::max(backoff, AskedWait(error)));
      backoff = std::min(2 * backoff, policy.maxBackoff);
    }
  }
}

// ---- records

void ImportRun::Send(Steps steps) {
  auto const rest = std::stable_partition(steps.begin(), steps.end(),
                                          [](Step const& step) { return !HasLinksAlone(step); });
  if (rest != steps.end()) NoteDone({rest, steps.end()});
  steps.erase(rest, steps.end());
  if (steps.empty()) return;
  Steps const refused = Repeat(
      std::move(steps), [this](Steps const& left) { return SendOnce(left); },
      [this](Steps const& left) { return Look(left); });
  if (refused.empty()) return;
  auto const middle = refused.begin() + static_cast<std::ptrdiff_t>(refused.size() / 2);
  Send({refused.begin(), middle});
  Send({middle, refused.end()});
}

/// Those that the server refused together, to be sent in parts; one that it refused alone is noted.
ImportRun::Steps ImportRun::SendOnce(Steps const& steps) {
  m_connection->Scope().ThrowWhenOver();
  auto const request = RequestFor(steps, *m_table);
  m_journal.NoteSent(steps);
  std::vector<RecordId> records;
  try {
    records = WriteRecords(*m_connection, request, m_journal.About().database);
  } catch (Error const& error) {
    if (!IsRefusal(error) || IsOpen(error)) throw;
    return AfterFault(steps, error);
  }
  Steps done = steps;
  for (std::size_t i = 0; i < done.size(); ++i) {
    if (done[i].kind == RowVerdict::Kind::Create) done[i].record = records.at(i);
  }
  NoteDone(done);
  return {};
}

ImportRun::Steps ImportRun::AfterFault(Steps const& steps, Error const& error) {
  Steps left = steps;
  // A request is refused as a whole. That is seen once, and not taken on trust.
  if (!m_hasRefused || m_keepsWhatIsRefused) {
    left = Look(steps);
    m_keepsWhatIsRefused = m_keepsWhatIsRefused || left.size() < steps.size();
  }
  m_journal.Note(left, StepState::Waiting);
  m_hasRefused = true;
  if (left.size() != 1 || steps.size() != 1) return left;
  m_journal.NoteRefused(left[0], FaultOf(error, left[0]));
  return {};
}

void ImportRun::NoteDone(Steps const& steps) {
  Steps done;
  Steps made;
  for (Step const& step : steps) {
    (LacksName(step) || HasLinks(step) ? made : done).push_back(step);
  }
  m_journal.Note(made, StepState::Made);
  m_journal.Note(done, StepState::Done);
  Finish(made);
}

/// All of it may be done again without harm, so that steps stay `Made` until the end.
void ImportRun::Finish(Steps const& steps) {
  if (steps.empty()) return;
  Steps named;
  std::set<std::string> groups;
  for (Step const& step : steps) {
    if (LacksName(step)) named.push_back(step);
    for (Step::Content const& value : step.values) {
      bool const isLink = ImportFields::IsLinks(value.attribute);
      if (isLink) groups.insert(value.attribute);
    }
  }
  GiveFullNames(named);
  for (std::string const& group : groups) {
    Steps linked;
    for (Step const& step : steps) {
      if (HasLinks(step, group)) linked.push_back(step);
    }
    GiveLinks(linked, group);
  }
  Steps done;
  for (Step const& step : steps) {
    if (m_refusedLinks.count(step.number) == 0) done.push_back(step);
  }
  m_journal.Note(done, StepState::Done);
}

/// Only what is not linked so yet is sent, so that a call whose reply is lost is made again. A
/// refusal is of all links of the call; its halves tell which they are.
void ImportRun::GiveLinks(Steps const& steps, std::string const& group) {
  std::vector<std::pair<RecordId, Value>> records;
  for (Step const& step : steps) {
    for (Step::Content const& value : step.values) {
      if (value.attribute == group) records.emplace_back(step.record, value.after);
    }
  }
  for (int attempt = 1;; ++attempt) {
    try {
      return m_fields.WriteLinks(*m_connection, m_fields.Find(group), records);
    } catch (Error const& error) {
      bool const mayRepeat = IsOpen(error) || error.IsRetryable();
      if (!mayRepeat && IsRefusal(error)) {
        if (steps.size() > 1) break;
        m_hasRefused = true;
        m_refusedLinks.insert(steps[0].number);
        std::string const what = HasLinksAlone(steps[0]) ? "" : "all but the links is written: ";
        return m_journal.NoteRefused(steps[0],
                                     {ImportFields::ShownName(group), what + error.what()});
      }
      if (!mayRepeat || attempt >= m_connection->Options().retry.maxAttempts) throw;
      Wait(SystemClock::now() +
           std::max(m_connection->Options().retry.initialBackoff, AskedWait(error)));
    }
  }
  auto const middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
  GiveLinks({steps.begin(), middle}, group);
  GiveLinks({middle, steps.end()}, group);
}

void ImportRun::GiveFullNames(Steps const& steps) {
  if (steps.empty()) return;
  auto const look = [this](Steps const& left) {
    Steps done;
    Steps missing;
    LookForFullNames(*m_connection, left, done, missing);
    return missing;
  };
  Steps left = look(steps);
  for (int attempt = 1; !left.empty(); ++attempt) {
    try {
      WriteRecords(*m_connection, RequestForFullNames(left), m_journal.About().database);
      return;
    } catch (Error const& error) {
      bool const mayRepeat = IsOpen(error) || error.IsRetryable();
      if (!mayRepeat || attempt >= m_connection->Options().retry.maxAttempts) throw;
      Wait(SystemClock::now() +
           std::max(m_connection->Options().retry.initialBackoff, AskedWait(error)));
      left = look(left);
    }
  }
}

ImportRun::Steps ImportRun::Look(Steps const& steps) {
  Steps done;
  Steps missing;
  Steps changes;
  Steps creates;
  for (Step const& step : steps) {
    (step.kind == RowVerdict::Kind::Create ? creates : changes).push_back(step);
  }
  LookForRecords(*m_connection, creates, done, missing);
  LookForChanges(*m_table, m_fields, *m_connection, changes, done, missing);
  if (!done.empty()) NoteDone(done);
  return missing;
}

// ---- folders

/// Makes those that the steps need; refuses the steps whose folder the server refuses, and says
/// whether all are there.
bool ImportRun::MakeFolders(Steps const& steps) {
  std::set<std::string> needed;
  for (Step const& step : steps) {
    if (step.kind != RowVerdict::Kind::Create || step.parent.identity != 0) continue;
    std::string path;
    for (std::string const& part : PathParts(step.folder))
      needed.insert(path = PathBelow(path, part));
  }
  std::vector<FolderStep> waiting;
  for (std::string const& path : m_folderOrder) {  // each behind the one that it lies in
    FolderStep const& folder = m_folders.at(path);
    if (needed.count(path) > 0 && folder.state == StepState::Waiting) waiting.push_back(folder);
  }
  for (FolderStep& folder : waiting) {
    FolderStep const* const parent =
        folder.parent.identity != 0 ? nullptr : &m_folders.at(folder.parentPath);
    if (parent != nullptr) folder.parent = parent->record;
    if (parent != nullptr && parent->state == StepState::Refused) {
      folder.state = StepState::Refused;
      folder.why = parent->why;
      m_journal.Note({folder}, StepState::Refused);
      m_folders[folder.path] = folder;
    } else {
      SendFolder(folder);
    }
  }
  bool areAllThere = true;
  for (Step const& step : steps) {
    if (step.kind != RowVerdict::Kind::Create || step.parent.identity != 0) continue;
    FolderStep const& folder = m_folders.at(step.folder);
    if (folder.state != StepState::Refused) continue;
    areAllThere = false;
    m_hasRefused = true;
    m_journal.NoteRefused(step, {"", "the folder " + Quoted(folder.path) + ": " + folder.why});
  }
  return areAllThere;
}

void ImportRun::SendFolder(FolderStep const& folder) {
  auto const look = [this](Folders const& left) { return LookForFolders(left); };
  auto const send = [this](Folders const& left) {
    m_journal.NoteSent(left);
    FolderStep done = left.front();
    try {
      done.record = WriteRecords(*m_connection, RequestFor(done), m_journal.About().database).at(0);
      done.state = StepState::Done;
    } catch (Error const& error) {
      if (!IsRefusal(error) || IsOpen(error)) throw;
      done.state = StepState::Refused;
      done.why = error.what();
    }
    m_journal.Note({done}, done.state);
    m_folders[done.path] = done;
    return Folders();
  };
  Repeat(Folders{folder}, send, look);
}

ImportRun::Folders ImportRun::LookForFolders(Folders const& folders) {
  Folders missing;
  for (FolderStep folder : folders) {
    if (folder.parent.identity == 0) folder.parent = m_folders.at(folder.parentPath).record;
    auto const found = FindFolderIn(*m_connection, folder.parent, folder.name);
    if (!found) {
      folder.state = StepState::Waiting;
      m_folders[folder.path] = folder;
      missing.push_back(folder);
      continue;
    }
    folder.record = *found;
    folder.state = StepState::Done;
    m_journal.Note({folder}, StepState::Done);
    m_folders[folder.path] = folder;
  }
  return missing;
}

ImportRun::Steps ImportRun::WithParents(Steps steps) {
  for (Step& step : steps) {
    bool const isNew = step.kind == RowVerdict::Kind::Create && step.parent.identity == 0;
    if (isNew) step.parent = m_folders.at(step.folder).record;
  }
  return steps;
}

}  // namespace lumo

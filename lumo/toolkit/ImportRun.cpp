#include "lumo/toolkit/ImportRun.h"

#include <algorithm>
#include <ctime>
#include <optional>
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

/// "09:30:12 UTC".
std::string TimeText(SystemClock::time_point time) {
  std::time_t const seconds = SystemClock::to_time_t(time + std::chrono::seconds(1));
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char text[32];
  std::strftime(text, sizeof text, "%H:%M:%S UTC", &parts);
  return text;
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
  return ReportOf([this] { SendAll(); });
}

ImportReport ImportRun::Resume(std::chrono::milliseconds resendAfter) {
  return ReportOf([&] {
    SettleLeftovers(resendAfter);
    LookAtWaiting();
    SendAll();
  });
}

template <class Work>
ImportReport ImportRun::ReportOf(Work work) {
  std::optional<Error> stopped;
  try {
    work();
  } catch (Error const& error) {
    stopped = error;
  }
  ImportReport report = m_journal.Report();
  report.stopped = std::move(stopped);
  return report;
}

void ImportRun::SettleLeftovers(std::chrono::milliseconds resendAfter) {
  Folders sent;
  for (auto const& [path, folder] : m_folders) {
    if (folder.state == StepState::Sent) sent.push_back(folder);
  }
  SettleLeft(
      std::move(sent), [this](Folders const& left) { return LookForFolders(left); }, resendAfter);
  for (;;) {
    Steps left = m_journal.Next(StepState::Sent, m_journal.About().chunkSize);
    if (left.empty()) break;
    SettleLeft(
        WithParents(std::move(left)), [this](Steps const& steps) { return Look(steps); },
        resendAfter);
  }
  FinishMade();
}

/// The plan may be old: others may have made or changed since what it has. That is left to them.
void ImportRun::LookAtWaiting() {
  for (std::string const& path : m_folderOrder) {
    FolderStep folder = m_folders.at(path);
    if (folder.state != StepState::Waiting) continue;
    if (folder.parent.identity == 0) folder.parent = m_folders.at(folder.parentPath).record;
    if (folder.parent.identity == 0) continue;
    auto const found = FindFolderIn(*m_connection, folder.parent, folder.name);
    if (!found) continue;
    folder.record = *found;
    folder.state = StepState::Made;
    KeepFolder(folder);
  }
  Steps creates = WithParents(m_journal.All(RowVerdict::Kind::Create, StepState::Waiting));
  auto const isAlone = [](Step const& step) { return step.parent.identity == 0; };
  creates.erase(std::remove_if(creates.begin(), creates.end(), isAlone), creates.end());
  Steps const changes = m_journal.All(RowVerdict::Kind::Change, StepState::Waiting);
  for (Looked looked : {LookForRecords(*m_table, m_fields, *m_connection, creates, Depth::All),
                        LookForChanges(*m_table, m_fields, *m_connection, changes, Depth::All)}) {
    for (Step& step : looked.done) step.kind = RowVerdict::Kind::Same;
    m_journal.Note(looked.done, StepState::Done);
    for (auto const& [step, fault] : looked.others) m_journal.NoteRefused(step, fault);
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

/// Looks until all has happened, or until the server has had the time for it; gives the rest.
template <class List, class LookFor>
List ImportRun::Settle(List left, LookFor lookFor) {
  left = lookFor(left);
  if (!left.empty() && SystemClock::now() < m_journal.LastSent() + m_options.settleAfter) {
    Wait(m_journal.LastSent() + m_options.settleAfter);
    left = lookFor(left);
  }
  return left;
}

/// Settles what a run left behind. Nobody was there any more to hear how the call ended, so that
/// the server may have it for as long as calls take.
template <class List, class LookFor>
void ImportRun::SettleLeft(List left, LookFor lookFor, std::chrono::milliseconds resendAfter) {
  left = Settle(std::move(left), lookFor);
  if (left.empty()) return;
  SystemClock::time_point const end = m_journal.LastSent() + resendAfter;
  if (SystemClock::now() < end) {
    throw Error(ErrorCode::OutcomeUnknown,
                "what was sent last is not there, and the server may still be at work on it; "
                "nothing was sent again: repeat this after " +
                    TimeText(end));
  }
  m_journal.Note(left, StepState::Waiting);
}

/// Sends, and again what a look-up does not find when the reply is lost or the server is busy.
/// `once` makes the request and no more, as after any failure of it steps may wait again; it gives
/// those that were refused.
template <class List, class Once, class LookFor>
List ImportRun::Repeat(List left, Once once, LookFor lookFor) {
  RetryPolicy const& policy = m_connection->Options().retry;
  std::chrono::milliseconds backoff = policy.initialBackoff;
  for (int attempt = 1;; ++attempt) {
    try {
      return once(left);
    } catch (Error const& error) {
      if (IsOpen(error)) left = Settle(std::move(left), lookFor);
      if (left.empty()) return left;
      if (MayStillHappen(error)) throw;  // and it stays `Sent`
      m_journal.Note(left, StepState::Waiting);
      bool const mayRepeat = IsOpen(error) || error.IsRetryable();
      bool const hasTime = AskedWait(error) <= policy.maxElapsed;
      if (!mayRepeat || attempt >= policy.maxAttempts || !hasTime) throw;
      Wait(SystemClock::now() + std::max(backoff, AskedWait(error)));
      backoff = std::min(2 * backoff, policy.maxBackoff);
    }
  }
}

// ---- records

void ImportRun::Send(Steps steps) {
  auto const rest = std::stable_partition(steps.begin(), steps.end(),
                                          [](Step const& step) { return !HasLinksAlone(step); });
  NoteDone({rest, steps.end()});
  steps.erase(rest, steps.end());
  Steps done;
  std::optional<Error> fault;
  auto const write = [&](Steps const& waiting) {
    try {
      done = Written(waiting);
      return Steps();
    } catch (Error const& error) {
      if (!IsRefusal(error) || IsOpen(error)) throw;
      fault = error;
      return waiting;
    }
  };
  Steps refused;
  if (!steps.empty()) {
    refused = Repeat(std::move(steps), write, [this](Steps const& left) { return Look(left); });
  }
  NoteDone(done);
  if (!refused.empty()) refused = AfterFault(refused, *fault);
  FinishMade();
  if (refused.empty()) return;
  auto const middle = refused.begin() + static_cast<std::ptrdiff_t>(refused.size() / 2);
  Send({refused.begin(), middle});
  Send({middle, refused.end()});
}

/// The steps with the records that the server made.
ImportRun::Steps ImportRun::Written(Steps steps) {
  m_connection->Scope().ThrowWhenOver();
  auto const request = RequestFor(steps, *m_table);
  m_journal.NoteSent(steps);
  std::vector<RecordId> const records =
      WriteRecords(*m_connection, request, m_journal.About().database);
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (steps[i].kind == RowVerdict::Kind::Create) steps[i].record = records.at(i);
  }
  return steps;
}

/// Those that the server refused together, to be sent in parts; one that it refused alone is noted.
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
}

/// Gives records their full names and links. All of it may be done again without harm, so that
/// steps stay `Made` until the end, and never wait again.
void ImportRun::FinishMade() {
  for (;;) {
    Steps const made = m_journal.Next(StepState::Made, m_journal.About().chunkSize);
    if (made.empty()) return;
    Finish(made);
  }
}

void ImportRun::Finish(Steps const& steps) {
  Steps named;
  std::set<std::string> groups;
  for (Step const& step : steps) {
    if (LacksName(step)) named.push_back(step);
    for (Step::Content const& value : step.values) {
      bool const isLink = ImportFields::IsLinks(value.attribute);
      if (isLink) groups.insert(value.attribute);
    }
  }
  Give(named, "Full name", "full name", [this](Steps const& some) { GiveFullNames(some); });
  for (std::string const& group : groups) {
    Steps linked;
    for (Step const& step : steps) {
      if (HasLinks(step, group)) linked.push_back(step);
    }
    Give(linked, ImportFields::ShownName(group), "links",
         [&](Steps const& some) { GiveLinks(some, group); });
  }
  Steps done;
  for (Step const& step : steps) {
    if (m_refusedParts.count(step.number) == 0) done.push_back(step);
  }
  m_journal.Note(done, StepState::Done);
}

/// Writes a part of the records, as often as it takes. A refusal is of all of the call; its halves
/// tell which they are.
template <class Write>
void ImportRun::Give(Steps const& steps, std::string const& field, std::string const& part,
                     Write write) {
  if (steps.empty()) return;
  for (int attempt = 1;; ++attempt) {
    try {
      return write(steps);
    } catch (Error const& error) {
      bool const mayRepeat = IsOpen(error) || error.IsRetryable();
      if (!mayRepeat && IsRefusal(error)) {
        if (steps.size() > 1) break;
        m_hasRefused = true;
        m_refusedParts.insert(steps[0].number);
        std::string const what =
            HasLinksAlone(steps[0]) ? "" : "all but the " + part + " is written: ";
        return m_journal.NoteRefused(steps[0], {field, what + error.what()});
      }
      if (!mayRepeat || attempt >= m_connection->Options().retry.maxAttempts) throw;
      Wait(SystemClock::now() +
           std::max(m_connection->Options().retry.initialBackoff, AskedWait(error)));
    }
  }
  auto const middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
  Give({steps.begin(), middle}, field, part, write);
  Give({middle, steps.end()}, field, part, write);
}

/// Only what is not linked so yet is sent.
void ImportRun::GiveLinks(Steps const& steps, std::string const& group) {
  std::vector<std::pair<RecordId, Value>> records;
  for (Step const& step : steps) {
    for (Step::Content const& value : step.values) {
      if (value.attribute == group) records.emplace_back(step.record, value.after);
    }
  }
  m_fields.WriteLinks(*m_connection, m_fields.Find(group), records);
}

void ImportRun::GiveFullNames(Steps const& steps) {
  Steps done;
  Steps missing;
  LookForFullNames(*m_connection, steps, done, missing);
  if (missing.empty()) return;
  WriteRecords(*m_connection, RequestForFullNames(missing), m_journal.About().database);
}

ImportRun::Steps ImportRun::Look(Steps const& steps) {
  Steps changes;
  Steps creates;
  for (Step const& step : steps) {
    (step.kind == RowVerdict::Kind::Create ? creates : changes).push_back(step);
  }
  Steps missing;
  for (Looked const& looked :
       {LookForRecords(*m_table, m_fields, *m_connection, creates, Depth::Request),
        LookForChanges(*m_table, m_fields, *m_connection, changes, Depth::Request)}) {
    NoteDone(looked.done);
    for (auto const& [step, fault] : looked.others) m_journal.NoteRefused(step, fault);
    missing.insert(missing.end(), looked.missing.begin(), looked.missing.end());
  }
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
      KeepFolder(folder);
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
  std::optional<FolderStep> done;
  auto const send = [&](Folders const& left) {
    m_journal.NoteSent(left);
    FolderStep sent = left.front();
    try {
      sent.record = WriteRecords(*m_connection, RequestFor(sent), m_journal.About().database).at(0);
      sent.state = StepState::Done;
    } catch (Error const& error) {
      if (!IsRefusal(error) || IsOpen(error)) throw;
      sent.state = StepState::Refused;
      sent.why = error.what();
    }
    done = sent;
    return Folders();
  };
  Repeat(Folders{folder}, send, look);
  if (done) KeepFolder(*done);
}

void ImportRun::KeepFolder(FolderStep const& folder) {
  m_journal.Note({folder}, folder.state);
  m_folders[folder.path] = folder;
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
    KeepFolder(folder);
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

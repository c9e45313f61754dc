#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "lumo/toolkit/ImportFields.h"
#include "lumo/toolkit/Journal.h"
#include "lumo/toolkit/OpenedTable.h"

namespace lumo {

/// As long as a call may take.
constexpr std::chrono::milliseconds kResendAfter{300'000};

/// Sends what a journal holds, chunk by chunk. Each request is in the journal before it goes out.
/// One whose reply is lost is settled by a look-up, and only what is not there then is sent again.
/// Not installed.
class ImportRun {
 public:
  ImportRun(std::shared_ptr<OpenedTable> table, Journal& journal, ImportOptions options);

  /// The report says why it stopped, if it did.
  ImportReport Go();
  /// The same, behind what an earlier run left.
  ImportReport Resume(std::chrono::milliseconds resendAfter);
  /// Finds out what came of the last requests of a run that was ended. What is not there waits to
  /// be sent when it is so old; before, throws `Error` (OutcomeUnknown).
  void SettleLeftovers(std::chrono::milliseconds resendAfter);

 private:
  using Steps = std::vector<Step>;
  using Folders = std::vector<FolderStep>;

  template <class Work>
  ImportReport ReportOf(Work work);
  void LookAtWaiting();
  void SendAll();
  void Tell();
  void Wait(std::chrono::system_clock::time_point until);
  template <class List, class LookFor>
  List Settle(List left, LookFor lookFor);
  template <class List, class LookFor>
  void SettleLeft(List left, LookFor lookFor, std::chrono::milliseconds resendAfter);
  template <class List, class Once, class LookFor>
  List Repeat(List left, Once once, LookFor lookFor);

  void Send(Steps steps);
  Steps Written(Steps steps);
  Steps AfterFault(Steps const& steps, Error const& error);
  void NoteDone(Steps const& steps);
  /// What comes behind the request for a record: its full name, its links.
  void FinishMade();
  void Finish(Steps const& steps);
  template <class Write>
  void Give(Steps const& steps, std::string const& field, std::string const& part, Write write);
  void GiveFullNames(Steps const& steps);
  void GiveLinks(Steps const& steps, std::string const& group);
  /// Those of the steps that have not happened; notes the others, and refuses what is not ours.
  Steps Look(Steps const& steps);

  bool MakeFolders(Steps const& steps);
  void SendFolder(FolderStep const& folder);
  void KeepFolder(FolderStep const& folder);
  Folders LookForFolders(Folders const& folders);
  Steps WithParents(Steps steps);

  std::shared_ptr<OpenedTable> m_table;
  Journal& m_journal;
  ImportOptions m_options;
  std::shared_ptr<Connection> m_connection;
  ImportFields m_fields;
  std::map<std::string, FolderStep> m_folders;
  std::vector<std::string> m_folderOrder;
  std::size_t m_total = 0;
  bool m_hasRefused = false;
  std::set<std::int64_t> m_refusedParts;  ///< full names and links, by the steps' numbers
  bool m_keepsWhatIsRefused = false;      ///< the server does not undo all of a refused request
};

}  // namespace lumo

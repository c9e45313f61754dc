#include "lumo/toolkit/Import.h"

#include <algorithm>
#include <utility>

#include "lumo/toolkit/Client.h"
#include "lumo/toolkit/ImportParts.h"
#include "lumo/toolkit/ImportRun.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/Url.h"

namespace lumo {
namespace {

bool IsLocal(std::string const& url) {
  std::string const host = HostOf(url);
  return host == "127.0.0.1" || host == "localhost";
}

}  // namespace

ImportReport RunPlan(std::shared_ptr<OpenedTable> const& table, ImportPlan const& plan,
                     std::filesystem::path const& path, ImportOptions const& options) {
  Journal::Head head;
  head.url = table->pool->Settings().url;
  head.database = table->info.DatabaseKey();
  head.table = table->info.Name();
  head.source = options.source;
  head.keepsGoing = options.keepsGoing;
  head.chunkSize = std::max<std::size_t>(1, options.chunkSize);
  auto const journal = Journal::Create(path, head, plan);
  return ImportRun(table, *journal, options).Go();
}

std::shared_ptr<OpenedTable> OpenTableOf(Client const& client, Journal const& journal) {
  Journal::Head const& about = journal.About();
  // A server on this machine has another port each time, and is told by its records.
  bool const isOther = ServerOf(client.Url()) != ServerOf(about.url) &&
                       !(IsLocal(client.Url()) && IsLocal(about.url));
  if (isOther) {
    throw Error(ErrorCode::InvalidArgument,
                "the journal belongs to " + about.url + ", not to " + client.Url());
  }
  return std::make_shared<OpenedTable>(client.Pool(), about.database, about.table);
}

Import::Import(std::shared_ptr<OpenedTable> table) : m_parts(new Parts{std::move(table), {}, {}}) {}
Import::Import(Import&&) noexcept = default;
Import& Import::operator=(Import&&) noexcept = default;
Import::~Import() = default;

Import& Import::Add(ImportRow row) {
  m_parts->rows.push_back(std::move(row));
  return *this;
}

Import& Import::Add(std::string const& folder, std::string const& name,
                    std::vector<std::pair<std::string, Value>> const& values) {
  ImportRow row;
  row.folder = folder;
  row.name = name;
  for (auto const& [attribute, value] : values) row.values.push_back({attribute, value});
  return Add(std::move(row));
}

void Import::AddFault(RowFault fault) { m_parts->faults.push_back(std::move(fault)); }
std::size_t Import::Size() const { return m_parts->rows.size(); }

ImportReport Import::Preflight(ImportOptions const& options) const {
  ImportPlan plan = MakePlan(m_parts->table, m_parts->rows, options);
  plan.faults = m_parts->faults;
  return plan.Report();
}

ImportReport Import::Run(std::filesystem::path const& journal, ImportOptions const& options) const {
  std::error_code ignored;
  if (std::filesystem::exists(journal, ignored)) {
    throw Error(ErrorCode::InvalidArgument,
                "the journal " + Quoted(journal.string()) + " is there already");
  }
  ImportPlan plan = MakePlan(m_parts->table, m_parts->rows, options);
  plan.faults = m_parts->faults;
  ImportReport report = plan.Report();
  std::size_t const toSend =
      report.Count(RowVerdict::Kind::Create) + report.Count(RowVerdict::Kind::Change);
  bool const isRefused =
      !plan.faults.empty() || (report.Count(RowVerdict::Kind::Refused) > 0 && !options.keepsGoing);
  if (isRefused || toSend == 0) return report;
  return RunPlan(m_parts->table, plan, journal, options);
}

ImportReport Import::Resume(Client const& client, std::filesystem::path const& path,
                            ImportOptions const& options) {
  return Resume(client, path, options, kResendAfter);
}

ImportReport Import::Resume(Client const& client, std::filesystem::path const& path,
                            ImportOptions const& options, std::chrono::milliseconds resendAfter) {
  auto const journal = Journal::Open(path);
  auto const table = OpenTableOf(client, *journal);
  ImportOptions asBegun = options;
  asBegun.keepsGoing = options.keepsGoing || journal->About().keepsGoing;
  return ImportRun(table, *journal, asBegun).Resume(resendAfter);
}

char const* NameOf(RowVerdict::Kind kind) {
  switch (kind) {
    case RowVerdict::Kind::Create: return "create";
    case RowVerdict::Kind::Change: return "change";
    case RowVerdict::Kind::Same: return "same";
    case RowVerdict::Kind::Refused: return "refused";
    case RowVerdict::Kind::Waiting: break;
  }
  return "waiting";
}

bool MayBeDone(RowVerdict const& row) {
  return row.kind == RowVerdict::Kind::Waiting && !row.notes.empty() && row.notes[0] == kSentNote;
}

std::size_t ImportReport::Count(RowVerdict::Kind kind) const {
  return static_cast<std::size_t>(std::count_if(
      rows.begin(), rows.end(), [kind](RowVerdict const& row) { return row.kind == kind; }));
}

bool ImportReport::IsComplete() const {
  return faults.empty() && !stopped && Count(RowVerdict::Kind::Refused) == 0 &&
         Count(RowVerdict::Kind::Waiting) == 0;
}

}  // namespace lumo

#include <deque>
#include <map>
#include <set>
#include <utility>

#include "lumo/toolkit/Client.h"
#include "lumo/toolkit/ImportLook.h"
#include "lumo/toolkit/ImportParts.h"
#include "lumo/toolkit/ImportRun.h"
#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TreeCalls.h"
#include "lumo/toolkit/ValueBytes.h"

namespace lumo {
namespace {

/// Plans to write back what the steps of a run replaced.
class UndoPlanner {
 public:
  UndoPlanner(std::shared_ptr<OpenedTable> const& table, ImportOptions const& options)
      : m_table(table),
        m_options(options),
        m_connection(table->pool->Lend()),
        m_units(table->info.KnownUnits(*m_connection)) {
    m_plan.fields = std::make_shared<ImportFields>(table);
  }

  ImportPlan Make(std::vector<Step> const& steps) {
    std::vector<RecordHead> heads;
    std::set<Attribute const*> attributes;
    for (Step const& step : steps) {
      heads.push_back({step.record, step.name, "", step.folder});
      for (Step::Content const& value : step.values) {
        attributes.insert(&Fields().Find(value.attribute));
        Fields().NoteValue(value.before);
        Fields().NoteValue(value.after);
      }
    }
    std::vector<PlannedRow> restored(steps.size());
    std::vector<PlannedRow> cleared(steps.size());
    Fields().ReadPresent(
        heads, attributes, m_options.cancel,
        [&](std::size_t place, Attribute const& attribute, Value const& present) {
          for (Step::Content const& value : steps[place].values) {
            if (value.attribute != attribute.name) continue;
            bool const wasEmpty = MeansTheSame(value.before, {}, attribute, m_units);
            Judge(wasEmpty ? cleared[place] : restored[place], value, attribute, present);
          }
        });
    for (std::size_t i = 0; i < steps.size(); ++i) {
      if (!steps[i].fullName.empty()) NameBack(restored[i], steps[i]);
      Add(std::move(restored[i]), steps[i], true);
      Add(std::move(cleared[i]), steps[i], false);
    }
    return std::move(m_plan);
  }

 private:
  ImportFields& Fields() { return *m_plan.fields; }

  void Judge(PlannedRow& row, Step::Content const& value, Attribute const& attribute,
             Value const& present) {
    if (MeansTheSame(present, value.before, attribute, m_units)) return;
    auto const text = [&](Value const& one) { return Fields().TextOf(one, attribute); };
    std::string const name = ImportFields::ShownName(attribute.name);
    if (!MeansTheSame(present, value.after, attribute, m_units)) {
      row.Refuse("has been changed since, to " + Quoted(text(present)) + ", and is left alone",
                 name);
      return;
    }
    row.values.push_back({&attribute, present, value.before});
    row.verdict.changes.push_back({name, text(present), text(value.before)});
  }

  void NameBack(PlannedRow& row, Step const& step) {
    auto const found = TreeRecordsOf(*m_connection, {ReferenceTo(step.record)});
    std::string const present = found.empty() ? "" : found[0]->GetLongName();
    if (present == step.fullNameBefore) return;
    if (present != step.fullName) {
      return row.Refuse("has been changed since, to " + Quoted(present) + ", and is left alone",
                        "Full name");
    }
    m_rows.emplace_back();
    m_rows.back().fullName = step.fullNameBefore;
    row.row = &m_rows.back();
    row.verdict.changes.push_back({"Full name", present, step.fullNameBefore});
  }

  void Add(PlannedRow row, Step const& step, bool isMain) {
    bool const isIdle = row.verdict.changes.empty();
    if (isIdle && row.verdict.faults.empty() && !isMain) return;
    static ImportRow const kNothing;
    if (row.row == nullptr) row.row = &kNothing;
    row.folder = step.folder;
    row.record = RecordHead{step.record, step.name, step.fullName, step.folder};
    row.verdict.row = step.row;
    row.verdict.id = step.record;
    row.verdict.folder = step.folder;
    row.verdict.name = step.name;
    row.verdict.kind = !isIdle                      ? RowVerdict::Kind::Change
                       : row.verdict.faults.empty() ? RowVerdict::Kind::Same
                                                    : RowVerdict::Kind::Refused;
    m_plan.rows.push_back(std::move(row));
  }

  std::shared_ptr<OpenedTable> m_table;
  ImportOptions const& m_options;
  std::shared_ptr<Connection> m_connection;
  Units const& m_units;
  std::deque<ImportRow> m_rows;  // that stay where they are
  ImportPlan m_plan;
};

/// One verdict for each row of the import.
std::vector<RowVerdict> Merged(std::vector<RowVerdict> const& rows) {
  std::map<std::size_t, RowVerdict> merged;
  for (RowVerdict const& row : rows) {
    auto const [place, isNew] = merged.emplace(row.row, row);
    if (isNew) continue;
    RowVerdict& all = place->second;
    all.changes.insert(all.changes.end(), row.changes.begin(), row.changes.end());
    all.faults.insert(all.faults.end(), row.faults.begin(), row.faults.end());
    if (all.kind == RowVerdict::Kind::Same || row.kind == RowVerdict::Kind::Waiting) {
      all.kind = row.kind;
    }
  }
  std::vector<RowVerdict> list;
  for (auto& [number, row] : merged) {
    if (!row.faults.empty()) row.kind = RowVerdict::Kind::Refused;
    list.push_back(std::move(row));
  }
  return list;
}

std::filesystem::path FreePath(std::filesystem::path const& journal) {
  for (int number = 1;; ++number) {
    std::filesystem::path path = journal;
    path += number == 1 ? std::string(".undo") : ".undo" + std::to_string(number);
    if (!std::filesystem::exists(path)) return path;
  }
}

RowVerdict VerdictOnMade(Step const& step) {
  RowVerdict verdict;
  verdict.kind = RowVerdict::Kind::Refused;
  verdict.row = step.row;
  verdict.id = step.record;
  verdict.folder = step.folder;
  verdict.name = step.name;
  verdict.faults.push_back(
      {"", "was made by the import, and records cannot be deleted through these services"});
  return verdict;
}

}  // namespace

ImportReport Import::Undo(Client const& client, std::filesystem::path const& path,
                          ImportOptions const& options) {
  return Undo(client, path, options, kResendAfter);
}

ImportReport Import::Undo(Client const& client, std::filesystem::path const& path,
                          ImportOptions const& options, std::chrono::milliseconds resendAfter) {
  auto const journal = Journal::Open(path);
  auto const table = OpenTableOf(client, *journal);
  ImportRun(table, *journal, options).SettleLeftovers(resendAfter);
  UndoPlanner planner(table, options);
  std::vector<Step> steps = journal->All(RowVerdict::Kind::Change, StepState::Done);
  // The values of a record whose links were refused are written.
  for (Step& step : journal->All(RowVerdict::Kind::Change, StepState::Refused)) {
    if (HasLinks(step)) steps.push_back(std::move(step));
  }
  ImportPlan const plan = planner.Make(steps);
  ImportReport report = plan.Report();
  if (report.Count(RowVerdict::Kind::Change) > 0) {
    ImportOptions undo = options;
    undo.keepsGoing = true;
    undo.source = path.string();
    report = RunPlan(table, plan, FreePath(path), undo);
  }
  report.isWritten = true;
  report.rows = Merged(report.rows);
  for (StepState const state : {StepState::Done, StepState::Refused}) {
    for (Step const& step : journal->All(RowVerdict::Kind::Create, state)) {
      if (step.record.identity != 0) report.rows.push_back(VerdictOnMade(step));
    }
  }
  for (FolderStep const& folder : journal->Folders()) {
    if (folder.state == StepState::Done) report.newFolders.push_back(folder.path);
  }
  return report;
}

}  // namespace lumo

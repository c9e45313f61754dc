#include "lumo/toolkit/ImportPlan.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "lumo/toolkit/ImportCheck.h"
#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Source.h"
#include "lumo/toolkit/TypedText.h"
#include "lumo/toolkit/ValueBytes.h"

namespace lumo {
namespace {

/// "Metals//Steels/" means "Metals/Steels".
std::string Tidied(std::string const& folder) {
  std::string path;
  for (std::string const& name : PathParts(folder)) path = PathBelow(path, name);
  return path;
}

class Planner {
 public:
  Planner(std::shared_ptr<OpenedTable> const& table, ImportOptions const& options)
      : m_table(table),
        m_options(options),
        m_attributes(table->info.Attributes(*table->pool->Lend())),
        m_units(table->info.KnownUnits(*table->pool->Lend())),
        m_fields(std::make_shared<ImportFields>(table)),
        m_check(m_units, table->info.DatabaseKey(), options.longestText) {}

  ImportPlan Make(std::vector<ImportRow> const& rows) {
    m_plan.fields = m_fields;
    m_fields->LookUp(rows, m_options.cancel);
    for (ImportRow const& row : rows) m_plan.rows.push_back(Begin(row, m_plan.rows.size() + 1));
    MatchRows(*m_table, m_plan, m_options);
    ReadOldValues();
    for (PlannedRow& row : m_plan.rows) Judge(row);
    KeepUsedFolders();
    return std::move(m_plan);
  }

 private:
  /// All that can be told of a row without the records of the server.
  PlannedRow Begin(ImportRow const& from, std::size_t number) {
    PlannedRow row;
    row.row = &from;
    row.folder = Tidied(from.folder);
    row.verdict.row = from.number != 0 ? from.number : number;
    row.verdict.faults = from.faults;
    bool const hasId = from.id.identity != 0 || !from.id.guid.empty();
    bool const isRead = from.faults.empty();  // otherwise the name may be what could not be read
    if (!from.name.empty() || (!hasId && isRead)) {
      Try(row, "", [&] { m_check.CheckName(from.name); });
    }
    if (!from.fullName.empty()) {
      Try(row, "Full name", [&] { m_check.CheckName(from.fullName); });
    }
    std::set<Attribute const*> seen;
    for (ImportValue const& value : from.values) {
      Try(row, value.attribute, [&] { AddValue(row, value, seen); });
    }
    for (std::string const& name : from.clears) {
      Try(row, name, [&] { Add(row, NamedAttribute(m_attributes, name), {}, seen); });
    }
    for (ImportLinks const& links : from.links) {
      Try(row, "links: " + links.group, [&] {
        Attribute const& field = m_fields->FindLinks(links.group);
        Add(row, field, m_fields->LinksTo(field, links.records), seen);
      });
    }
    if (from.subsets) {
      Try(row, "subsets",
          [&] { Add(row, m_fields->Subsets(), m_fields->InSubsets(*from.subsets), seen); });
    }
    return row;
  }

  void AddValue(PlannedRow& row, ImportValue const& value, std::set<Attribute const*>& seen) {
    Attribute const& attribute = NamedAttribute(m_attributes, value.attribute);
    Value checked = m_check.Checked(value, attribute);
    if (MeansTheSame(checked, {}, attribute, m_units)) return;  // it does not take values away
    Add(row, attribute, std::move(checked), seen);
  }

  static void Add(PlannedRow& row, Attribute const& field, Value value,
                  std::set<Attribute const*>& seen) {
    if (!seen.insert(&field).second) {
      throw Error(ErrorCode::InvalidArgument, "has two values in this row");
    }
    row.values.push_back({&field, {}, std::move(value)});
  }

  template <class Work>
  static void Try(PlannedRow& row, std::string const& attribute, Work work) {
    try {
      work();
    } catch (Error const& error) {
      bool const isFault = error.Code() == ErrorCode::InvalidArgument ||
                           error.Code() == ErrorCode::NotFound ||
                           error.Code() == ErrorCode::Ambiguous;
      if (!isFault) throw;
      row.Refuse(WhyOf(error, attribute), attribute);
    }
  }

  /// Of the records that are there, for the attributes that rows have.
  void ReadOldValues() {
    std::vector<PlannedRow*> rows;
    std::vector<RecordHead> heads;
    for (PlannedRow& row : m_plan.rows) {
      if (!row.record || row.IsRefused() || row.values.empty()) continue;
      rows.push_back(&row);
      heads.push_back(*row.record);
    }
    auto const take = [&](std::size_t place, Attribute const& attribute, Value const& present) {
      for (PlannedValue& value : rows[place]->values) {
        if (value.attribute == &attribute) value.before = present;
      }
    };
    std::set<Attribute const*> used;
    for (PlannedRow const* const row : rows) {
      for (PlannedValue const& value : row->values) used.insert(value.attribute);
    }
    m_fields->ReadPresent(heads, used, m_options.cancel, take);
  }

  void Judge(PlannedRow& row) {
    RowVerdict& verdict = row.verdict;
    verdict.folder = row.folder;
    verdict.name = row.record ? row.record->name : row.row->name;
    if (row.record) verdict.id = row.record->id;
    if (row.IsRefused()) {
      verdict.kind = RowVerdict::Kind::Refused;
      return;
    }
    auto const isSame = [&](PlannedValue const& value) {
      return MeansTheSame(value.before, value.after, *value.attribute, m_units);
    };
    row.values.erase(std::remove_if(row.values.begin(), row.values.end(), isSame),
                     row.values.end());
    for (PlannedValue const& value : row.values) {
      auto const text = [&](Value const& one) { return m_fields->TextOf(one, *value.attribute); };
      std::string const name = ImportFields::ShownName(value.attribute->name);
      verdict.changes.push_back({name, text(value.before), text(value.after)});
      std::string const& fault = m_fields->FaultOf(*value.attribute);
      if (!fault.empty()) row.Refuse(fault, name);
    }
    if (row.IsRefused()) {
      verdict.kind = RowVerdict::Kind::Refused;
      return;
    }
    std::string const& fullName = row.row->fullName;
    std::string const before = row.record ? row.record->fullName : row.row->name;
    if (!fullName.empty() && fullName != before) {
      verdict.changes.push_back({"Full name", row.record ? before : "", fullName});
    }
    verdict.kind = !row.record               ? RowVerdict::Kind::Create
                   : verdict.changes.empty() ? RowVerdict::Kind::Same
                                             : RowVerdict::Kind::Change;
  }

  /// A folder is made only for a record that comes into it.
  void KeepUsedFolders() {
    std::set<std::string> used;
    for (PlannedRow const& row : m_plan.rows) {
      if (row.verdict.kind != RowVerdict::Kind::Create || row.parent) continue;
      std::string path;
      for (std::string const& part : PathParts(row.folder)) {
        path = PathBelow(path, part);
        used.insert(path);
      }
    }
    auto& folders = m_plan.folders;
    folders.erase(std::remove_if(folders.begin(), folders.end(),
                                 [&](auto const& folder) { return used.count(folder.path) == 0; }),
                  folders.end());
  }

  std::shared_ptr<OpenedTable> m_table;
  ImportOptions const& m_options;
  std::vector<Attribute> const& m_attributes;
  Units const& m_units;
  std::shared_ptr<ImportFields> m_fields;
  ImportCheck m_check;
  ImportPlan m_plan;
};

}  // namespace

void ReadPresent(std::shared_ptr<OpenedTable> const& table, std::vector<RecordHead> const& records,
                 std::set<Attribute const*> const& attributes, CancellationToken const& cancel,
                 std::function<void(std::size_t, Attribute const&, Value const&)> const& take) {
  if (records.empty() || attributes.empty()) return;
  std::vector<Attribute const*> const inOrder(attributes.begin(), attributes.end());
  std::vector<std::string> names;
  ReadOptions options;
  for (Attribute const* const attribute : inOrder) {
    names.push_back(attribute->name);
    options.withFiles = options.withFiles || attribute->type == AttributeType::File ||
                        attribute->type == AttributeType::Picture;
  }
  auto const connection = table->pool->Lend();
  connection->Scope().cancel = cancel;
  ReadValues(*connection, table, records, names, options,
             [&](std::size_t place, std::vector<Value> const& values) {
               for (std::size_t i = 0; i < values.size(); ++i) take(place, *inOrder[i], values[i]);
             });
}

ImportReport ImportPlan::Report() const {
  ImportReport report;
  report.faults = faults;
  for (PlannedRow const& row : rows) report.rows.push_back(row.verdict);
  for (PlannedFolder const& folder : folders) report.newFolders.push_back(folder.path);
  return report;
}

ImportPlan MakePlan(std::shared_ptr<OpenedTable> const& table, std::vector<ImportRow> const& rows,
                    ImportOptions const& options) {
  return Planner(table, options).Make(rows);
}

}  // namespace lumo

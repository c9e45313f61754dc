#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "lumo/toolkit/Import.h"
#include "lumo/toolkit/ImportFields.h"
#include "lumo/toolkit/OpenedTable.h"
#include "lumo/toolkit/RecordHead.h"

/// What an import is going to do, found out by reading alone. Not installed.
namespace lumo {

/// A value to write, with the one that is there.
struct PlannedValue {
  Attribute const* attribute = nullptr;
  Value before = {};
  Value after = {};  ///< nothing takes the value away
};

/// A row on its way to a verdict.
struct PlannedRow {
  ImportRow const* row = nullptr;
  std::string folder = {};  ///< tidied path; as the server spells it once the record is known
  std::optional<RecordHead> record = {};  ///< that is there already
  std::optional<RecordId> parent = {};    ///< of a new record; nothing when its folder is new, too
  std::vector<PlannedValue> values = {};
  RowVerdict verdict = {};

  void Refuse(std::string const& why, std::string const& attribute = "") {
    verdict.faults.push_back({attribute, why});
  }
  bool IsRefused() const { return !verdict.faults.empty(); }
};

/// A folder to make.
struct PlannedFolder {
  std::string path = {};
  std::string name = {};
  std::string parentPath = {};
  std::optional<RecordId> parent = {};  ///< nothing when that is new, too
};

struct ImportPlan {
  std::shared_ptr<ImportFields> fields = {};  ///< whose attributes the rows name
  std::vector<PlannedFolder> folders = {};    ///< each behind the one that it lies in
  std::vector<PlannedRow> rows = {};
  std::vector<RowFault> faults = {};

  ImportReport Report() const;
};

/// Looks at all rows; they must live as long as the plan. Throws `Error` when a call fails.
ImportPlan MakePlan(std::shared_ptr<OpenedTable> const& table, std::vector<ImportRow> const& rows,
                    ImportOptions const& options);

/// Reads what records have now of these attributes of the table, and hands over each value with the
/// place of its record in the list.
void ReadPresent(std::shared_ptr<OpenedTable> const& table, std::vector<RecordHead> const& records,
                 std::set<Attribute const*> const& attributes, CancellationToken const& cancel,
                 std::function<void(std::size_t, Attribute const&, Value const&)> const& take);

/// Tells the rows' records and parents, by as few calls as there can be, and adds the folders that
/// are to be made.
void MatchRows(OpenedTable& table, ImportPlan& plan, ImportOptions const& options);

}  // namespace lumo

#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "lumo/toolkit/ImportFields.h"
#include "lumo/toolkit/Journal.h"

/// What came of requests whose replies were lost. Not installed.
namespace lumo {

/// Whether links of that group change, or of any for none.
bool HasLinks(Step const& step, std::string const& group = "");

/// What a look at the server says of steps.
struct Looked {
  std::vector<Step> done;     ///< all that they write is there
  std::vector<Step> missing;  ///< what was there before
  /// Neither: somebody else made the record, or changed it. With what to tell.
  std::vector<std::pair<Step, RowFault>> others;
};

/// What is compared: only what goes out in one request with the record, or full names of new
/// records and links as well.
enum class Depth { Request, All };

/// Looks below the parents for records to make, by names and values. Those that are there get their
/// records.
Looked LookForRecords(OpenedTable& table, ImportFields& fields, Connection& connection,
                      std::vector<Step> const& steps, Depth depth);
/// Compares what the records have with what they were to get, and with what they had.
Looked LookForChanges(OpenedTable& table, ImportFields& fields, Connection& connection,
                      std::vector<Step> const& steps, Depth depth);
void LookForFullNames(Connection& connection, std::vector<Step> const& steps,
                      std::vector<Step>& done, std::vector<Step>& missing);
std::optional<RecordId> FindFolderIn(Connection& connection, RecordId const& parent,
                                     std::string const& name);

}  // namespace lumo

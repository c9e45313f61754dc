#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "lumo/toolkit/ImportFields.h"
#include "lumo/toolkit/Journal.h"

/// What came of requests whose replies were lost. Not installed.
namespace lumo {

/// Whether links of that group change, or of any for none.
bool HasLinks(Step const& step, std::string const& group = "");

/// Looks below the parents. Those that are there get their records; throws `Error` (Ambiguous) when
/// a name is there several times.
void LookForRecords(Connection& connection, std::vector<Step> const& steps, std::vector<Step>& done,
                    std::vector<Step>& missing);
/// Compares what the records have with what they were to get, but for their links.
void LookForChanges(OpenedTable& table, ImportFields& fields, Connection& connection,
                    std::vector<Step> const& steps, std::vector<Step>& done,
                    std::vector<Step>& missing);
void LookForFullNames(Connection& connection, std::vector<Step> const& steps,
                      std::vector<Step>& done, std::vector<Step>& missing);
std::optional<RecordId> FindFolderIn(Connection& connection, RecordId const& parent,
                                     std::string const& name);

}  // namespace lumo

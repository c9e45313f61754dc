#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "lumo/toolkit/Journal.h"
#include "lumo/toolkit/OpenedTable.h"

/// What came of requests whose replies were lost. Not installed.
namespace lumo {

/// Looks below the parents. Those that are there get their records; throws `Error` (Ambiguous) when
/// a name is there several times.
void LookForRecords(Connection& connection, std::vector<Step> const& steps, std::vector<Step>& done,
                    std::vector<Step>& missing);
/// Compares what the records have with what they were to get.
void LookForChanges(std::shared_ptr<OpenedTable> const& table, Connection& connection,
                    std::vector<Step> const& steps, std::vector<Step>& done,
                    std::vector<Step>& missing);
void LookForFullNames(Connection& connection, std::vector<Step> const& steps,
                      std::vector<Step>& done, std::vector<Step>& missing);
std::optional<RecordId> FindFolderIn(Connection& connection, RecordId const& parent,
                                     std::string const& name);

}  // namespace lumo

#pragma once

#include <memory>
#include <vector>

#include "lumo/toolkit/ImportPlan.h"
#include "lumo/toolkit/Journal.h"

namespace lumo {

/// What has been added to an import. Not installed.
struct Import::Parts {
  std::shared_ptr<OpenedTable> table;
  std::vector<ImportRow> rows;
  std::vector<RowFault> faults;
};

/// Writes the journal and sends what it holds.
ImportReport RunPlan(std::shared_ptr<OpenedTable> const& table, ImportPlan const& plan,
                     std::filesystem::path const& journal, ImportOptions const& options);
/// The table of a journal; throws `Error` (InvalidArgument) when it is another server's.
std::shared_ptr<OpenedTable> OpenTableOf(Client const& client, Journal const& journal);

}  // namespace lumo

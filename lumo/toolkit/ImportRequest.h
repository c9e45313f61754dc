#pragma once

#include <vector>

#include "lumo/toolkit/Journal.h"
#include "lumo/toolkit/OpenedTable.h"

/// The requests of an import. Not installed.
namespace lumo {

/// The steps' parents and records must be known. All or nothing of it is done.
SmartPtr<SetRecordAttributesRequest> RequestFor(std::vector<Step> const& steps, OpenedTable& table);
SmartPtr<SetRecordAttributesRequest> RequestForFullNames(std::vector<Step> const& steps);
SmartPtr<SetRecordAttributesRequest> RequestFor(FolderStep const& folder);

/// Sends it once; gives the records in its order. Throws `Error`, NotUnderstood for a reply that
/// names other records.
std::vector<RecordId> WriteRecords(Connection& connection,
                                   SmartPtr<SetRecordAttributesRequest> const& request,
                                   std::string const& dbKey);

/// What the server said of the only record of a request, with the attribute that it means where
/// that can be told.
RowFault FaultOf(Error const& error, Step const& step);

}  // namespace lumo

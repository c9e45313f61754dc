#include "lumo/session/OperationNames.h"

#include <algorithm>
#include <iterator>

namespace lumo {
namespace {

// clang-format off
constexpr OperationNames kOperations[] = {
    {"Browse", "GetDatabases", "GetDatabasesRequest", "GetDatabasesResponse"},
    {"Browse", "GetTables", "GetTables", "GetTablesResponse"},
    {"Browse", "GetSubsets", "GetSubsets", "GetSubsetsResponse"},
    {"Browse", "GetUnits", "GetUnitsRequest", "GetUnitsResponse"},
    {"Browse", "GetUnitSystems", "GetUnitSystems", "GetUnitSystemsResponse"},
    {"Browse", "GetCurrencies", "GetCurrenciesRequest", "GetCurrenciesResponse"},
    {"Browse", "GetUnitConversions", "GetUnitConversionsRequest", "GetUnitConversionsResponse"},
    {"Browse", "GetRootNode", "GetRootNode", "GetRootNodeResponse"},
    {"Browse", "GetChildNodes", "GetChildNodes", "GetChildNodesResponse"},
    {"Browse", "GetTreeRecords", "GetTreeRecords", "GetTreeRecordsResponse"},
    {"Browse", "GetRecordVersions", "GetRecordVersions", "GetRecordVersionsResponse"},
    {"Browse", "GetAttributeDetails", "GetAttributeDetails", "GetAttributeDetailsResponse"},
    {"Browse", "GetAttributeParameters", "GetAttributeParameters",
     "GetAttributeParametersResponse"},
    {"Browse", "GetParameterDetails", "GetParameterDetails", "GetParameterDetailsResponse"},
    {"Browse", "GetAttributeMinMax", "GetAttributeMinMax", "GetAttributeMinMaxResponse"},
    {"Browse", "GetMetaAttributes", "GetMetaAttributes", "GetMetaAttributesResponse"},
    {"Browse", "GetRecordAttributes", "GetRecordAttributes", "GetRecordAttributesResponse"},
    {"Browse", "GetRecordLinkGroups", "GetRecordLinkGroups", "GetRecordLinkGroupsResponse"},
    {"Browse", "GetLinkedRecords", "GetLinkedRecords", "GetLinkedRecordsResponse"},
    {"Search", "SimpleTextSearch", "SimpleTextSearch", "SimpleTextSearchResponse"},
    // All three searches answer with the element of the first.
    {"Search", "CriteriaSearch", "CriteriaSearch", "SimpleTextSearchResponse"},
    {"Search", "RecordNameSearch", "RecordNameSearch", "SimpleTextSearchResponse"},
    {"DataExport", "GetRecordAttributesByRef", "GetRecordAttributesByRef",
     "GetRecordAttributesByRefResponse"},
    {"DataImport", "SetRecordAttributes", "SetRecordAttributesRequest",
     "SetRecordAttributesResponse", true},
    {"DataImport", "GetUploadAddresses", "GetUploadAddressesRequest",
     "GetUploadAddressesResponse"},
    {"DataImport", "ModifyRecordLinks", "ModifyRecordLinksRequest", "ModifyRecordLinksResponse",
     true},
    {"EngineeringData", "GetAvailableExporters", "GetAvailableExporters",
     "GetAvailableExportersResponse"},
    {"EngineeringData", "ExportersForRecords", "ExportersForRecords",
     "ExportersForRecordsResponse"},
    {"EngineeringData", "GetExporterParameters", "GetExporterParameters",
     "GetExporterParametersResponse"},
    {"EngineeringData", "ExportRecordData", "ExportRecordData", "text"},
};
// clang-format on
static_assert(std::size(kOperations) == 30);

}  // namespace

OperationNames const* FindOperationNames(std::string_view operation) {
  auto const* const found = std::find_if(
      std::begin(kOperations), std::end(kOperations),
      [operation](OperationNames const& names) { return names.operation == operation; });
  return found == std::end(kOperations) ? nullptr : found;
}

}  // namespace lumo

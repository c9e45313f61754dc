#include "tests/support/EveryOperation.h"

namespace {

using Services = LumoServiceLayerServices;

template <class Response, class Count>
Called Counted(Response const& response, Count count) {
  auto const outcome = response.GetServiceLayerResponse();
  return {outcome, outcome->Succeeded() ? count(response) : 0};
}

}  // namespace

std::vector<OperationRow> EveryOperation() {
  return {
      {"Browse", "GetDatabases", "",
       "<GetDatabasesResponse><databaseDetails><database/></databaseDetails></"
       "GetDatabasesResponse>",
       [](Services& services) {
         GetDatabasesResponse response;
         services.GetBrowseService()->GetGetDatabaseImpl()->GetDatabases(&response);
         return Counted(response, [](auto const& r) { return r.AccessDatabases().size(); });
       }},
      {"Browse", "GetTables", "<brow:GetTables><brow:dbKey/></brow:GetTables>",
       "<GetTablesResponse><tableDetails><table/></tableDetails></GetTablesResponse>",
       [](Services& services) {
         GetTablesResponse response;
         services.GetBrowseService()->GetGetTablesImpl()->RequestTables(GetTables::CreateOne(),
                                                                        &response);
         return Counted(response, [](auto const& r) { return r.AccessTableDetails().size(); });
       }},
      {"Browse", "GetSubsets", "<brow:GetSubsets/>",
       "<GetSubsetsResponse><subsetDetails><subsetDetail/></subsetDetails></GetSubsetsResponse>",
       [](Services& services) {
         GetSubsetsResponse response;
         services.GetBrowseService()->GetGetSubsetsImpl()->GetSubsets(GetSubsets::CreateOne(),
                                                                      &response);
         return Counted(response, [](auto const& r) { return r.AccessSubsetDetails().size(); });
       }},
      {"Browse", "GetUnits", "<brow:GetUnitsRequest><brow:dbKey/></brow:GetUnitsRequest>",
       "<GetUnitsResponse><Databases><Database/></Databases></GetUnitsResponse>",
       [](Services& services) {
         GetUnitsResponse response;
         services.GetBrowseService()->GetGetUnitsImpl()->GetUnits(GetUnits::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessDatabases().size(); });
       }},
      {"Browse", "GetUnitSystems",
       "<brow:GetUnitSystems><brow:dbKey/><brow:excludeCurrencies>false</brow:excludeCurrencies></"
       "brow:GetUnitSystems>",
       "<GetUnitSystemsResponse><unitSystems><unitSystem/></unitSystems></GetUnitSystemsResponse>",
       [](Services& services) {
         GetUnitSystemsResponse response;
         services.GetBrowseService()->GetGetUnitSystemsImpl()->GetUnitSystems(
             GetUnitSystems::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessUnitSystems().size(); });
       }},
      {"Browse", "GetCurrencies", "", "<GetCurrenciesResponse><currency/></GetCurrenciesResponse>",
       [](Services& services) {
         GetCurrenciesResponse response;
         services.GetBrowseService()->GetGetCurrenciesImpl()->GetCurrencies(&response);
         return Counted(response, [](auto const& r) { return r.AccessCurrencies().size(); });
       }},
      {"Browse", "GetUnitConversions",
       "<brow:GetUnitConversionsRequest><brow:dbKey/><brow:unitConversionContexts/"
       "><brow:sourceUnits/></brow:GetUnitConversionsRequest>",
       "<GetUnitConversionsResponse><sourceUnits><sourceUnit/></sourceUnits></"
       "GetUnitConversionsResponse>",
       [](Services& services) {
         GetUnitConversionsResponse response;
         services.GetBrowseService()->GetGetUnitConversionsImpl()->GetUnitConversions(
             GetUnitConversions::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessSourceUnits().size(); });
       }},
      {"Browse", "GetRootNode", "<brow:GetRootNode/>",
       "<GetRootNodeResponse><rootNode><children><treeRecord/></children></rootNode></"
       "GetRootNodeResponse>",
       [](Services& services) {
         GetRootNodeResponse response;
         services.GetBrowseService()->GetGetRootNodeImpl()->RequestRootNode(
             GetRootNode::CreateOne(), &response);
         return Counted(response,
                        [](auto const& r) { return r.GetRootNode()->AccessChildren().size(); });
       }},
      {"Browse", "GetChildNodes",
       "<brow:GetChildNodes><brow:recurse>false</brow:recurse><brow:recurseMaxDepth>0</"
       "brow:recurseMaxDepth><brow:populateGUIDs>false</brow:populateGUIDs></brow:GetChildNodes>",
       "<GetChildNodesResponse><treeRecords><treeRecord/></treeRecords></GetChildNodesResponse>",
       [](Services& services) {
         GetChildNodesResponse response;
         services.GetBrowseService()->GetGetChildNodesImpl()->RequestChildNodes(
             GetChildNodes::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessTreeRecords().size(); });
       }},
      {"Browse", "GetTreeRecords",
       "<brow:GetTreeRecords><zbt:recordReferences/></brow:GetTreeRecords>",
       "<GetTreeRecordsResponse><treeRecords><treeRecord/></treeRecords></GetTreeRecordsResponse>",
       [](Services& services) {
         GetTreeRecordsResponse response;
         services.GetBrowseService()->GetGetTreeRecordsImpl()->RequestTreeNodes(
             GetTreeRecordsRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessTreeRecords().size(); });
       }},
      {"Browse", "GetRecordVersions",
       "<brow:GetRecordVersions><brow:versions>All</brow:versions><zbt:recordReferences/></"
       "brow:GetRecordVersions>",
       "<GetRecordVersionsResponse><recordVersionStates><recordVersionState/></"
       "recordVersionStates></GetRecordVersionsResponse>",
       [](Services& services) {
         GetRecordVersionsResponse response;
         services.GetBrowseService()->GetGetRecordVersionsImpl()->GetRecordVersions(
             GetRecordVersionsRequest::CreateOne(), &response);
         return Counted(response,
                        [](auto const& r) { return r.AccessRecordVersionStates().size(); });
       }},
      {"Browse", "GetAttributeDetails",
       "<brow:GetAttributeDetails><zbt:attributeReferences/></brow:GetAttributeDetails>",
       "<GetAttributeDetailsResponse><attributeDetails><attributeDetail/></attributeDetails></"
       "GetAttributeDetailsResponse>",
       [](Services& services) {
         GetAttributeDetailsResponse response;
         services.GetBrowseService()->GetGetAttributeDetailsImpl()->RequestAttributeDetails(
             GetAttributeDetailsRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessAttributeDetails().size(); });
       }},
      {"Browse", "GetAttributeParameters",
       "<brow:GetAttributeParameters><zbt:attributeReferences/></brow:GetAttributeParameters>",
       "<GetAttributeParametersResponse><parameterDetails><parameterDetail/></parameterDetails></"
       "GetAttributeParametersResponse>",
       [](Services& services) {
         GetAttributeParametersResponse response;
         services.GetBrowseService()->GetGetAttributeParametersImpl()->GetAttributeParameters(
             GetAttributeParametersRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessParameterDetails().size(); });
       }},
      {"Browse", "GetParameterDetails",
       "<brow:GetParameterDetails><zbt:parameterReferences/></brow:GetParameterDetails>",
       "<GetParameterDetailsResponse><parameterDetails><parameterDetail/></parameterDetails></"
       "GetParameterDetailsResponse>",
       [](Services& services) {
         GetParameterDetailsResponse response;
         services.GetBrowseService()->GetGetParameterDetailsImpl()->GetParameterDetails(
             GetParameterDetailsRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessParameterDetails().size(); });
       }},
      {"Browse", "GetAttributeMinMax",
       "<brow:GetAttributeMinMax><zbt:attributeReferences/></brow:GetAttributeMinMax>",
       "<GetAttributeMinMaxResponse><minMaxes><minMax/></minMaxes></GetAttributeMinMaxResponse>",
       [](Services& services) {
         GetAttributeMinMaxResponse response;
         services.GetBrowseService()->GetGetAttributeMinMaxImpl()->RequestAttributeMinMax(
             GetAttributeMinMaxRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessMinMaxes().size(); });
       }},
      {"Browse", "GetMetaAttributes",
       "<brow:GetMetaAttributes><zbt:attributeReferences/></brow:GetMetaAttributes>",
       "<GetMetaAttributesResponse><Attribute/></GetMetaAttributesResponse>",
       [](Services& services) {
         GetMetaAttributesResponse response;
         services.GetBrowseService()->GetGetMetaAttributesImpl()->GetMetaAttributes(
             GetMetaAttributesRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessAttributes().size(); });
       }},
      {"Browse", "GetRecordAttributes",
       "<brow:GetRecordAttributes><zbt:recordReferences/></brow:GetRecordAttributes>",
       "<GetRecordAttributesResponse><recordAttributes><recordAttribute/></recordAttributes></"
       "GetRecordAttributesResponse>",
       [](Services& services) {
         GetRecordAttributesResponse response;
         services.GetBrowseService()->GetGetRecordAttributesImpl()->RequestRecordAttributes(
             GetRecordAttributesRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessRecordAttributes().size(); });
       }},
      {"Browse", "GetRecordLinkGroups", "<brow:GetRecordLinkGroups/>",
       "<GetRecordLinkGroupsResponse><recordLinkGroupDetails><recordLinkGroup/></"
       "recordLinkGroupDetails></GetRecordLinkGroupsResponse>",
       [](Services& services) {
         GetRecordLinkGroupsResponse response;
         services.GetBrowseService()->GetGetRecordLinkGroupsImpl()->GetRecordLinkGroups(
             GetRecordLinkGroups::CreateOne(), &response);
         return Counted(response,
                        [](auto const& r) { return r.AccessRecordLinkGroupDetails().size(); });
       }},
      {"Browse", "GetLinkedRecords",
       "<brow:GetLinkedRecords><brow:populateGUIDs>0</brow:populateGUIDs></brow:GetLinkedRecords>",
       "<GetLinkedRecordsResponse><sourceRecords><sourceRecord/></sourceRecords></"
       "GetLinkedRecordsResponse>",
       [](Services& services) {
         GetLinkedRecordsResponse response;
         services.GetBrowseService()->GetGetLinkedRecordsImpl()->GetLinkedRecords(
             GetLinkedRecordsRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessSourceRecords().size(); });
       }},
      {"Search", "SimpleTextSearch",
       "<sear:SimpleTextSearch><sear:dbKey/><sear:searchValue/><sear:searchFilter>NoFilter</"
       "sear:searchFilter><sear:populateGUIDs>false</sear:populateGUIDs></sear:SimpleTextSearch>",
       "<SimpleTextSearchResponse><resultRecords/></SimpleTextSearchResponse>",
       [](Services& services) {
         SimpleTextSearchResponse response;
         services.GetSearchService()->GetSimpleTextSearchImpl()->Search(
             SimpleTextSearch::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessSearchResults().size(); });
       }},
      {"Search", "CriteriaSearch",
       "<sear:CriteriaSearch><sear:dbKey/><sear:searchFilter>NoFilter</"
       "sear:searchFilter><sear:populateGUIDs>false</sear:populateGUIDs></sear:CriteriaSearch>",
       "<SimpleTextSearchResponse><resultRecords/></SimpleTextSearchResponse>",
       [](Services& services) {
         SimpleTextSearchResponse response;
         services.GetSearchService()->GetCriteriaSearchImpl()->Search(CriteriaSearch::CreateOne(),
                                                                      &response);
         return Counted(response, [](auto const& r) { return r.AccessSearchResults().size(); });
       }},
      {"Search", "RecordNameSearch",
       R"(<sear:RecordNameSearch><sear:recordName/><sear:options sear:populateGUIDs="0" sear:searchFullNames="1" sear:searchShortNames="0" sear:caseSensitive="0"/></sear:RecordNameSearch>)",
       "<SimpleTextSearchResponse><resultRecords/></SimpleTextSearchResponse>",
       [](Services& services) {
         SimpleTextSearchResponse response;
         services.GetSearchService()->GetRecordNameSearchImpl()->RecordNameSearch(
             RecordNameSearchRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessSearchResults().size(); });
       }},
      {"DataExport", "GetRecordAttributesByRef",
       "<exp:GetRecordAttributesByRef><exp:populateGUIDs>false</"
       "exp:populateGUIDs><exp:useFallback>false</"
       "exp:useFallback><exp:binaryDataRepresentation>URL</exp:binaryDataRepresentation></"
       "exp:GetRecordAttributesByRef>",
       "<GetRecordAttributesByRefResponse><results><recordData/></results></"
       "GetRecordAttributesByRefResponse>",
       [](Services& services) {
         GetRecordAttributesByRefResponse response;
         services.GetDataExportService()
             ->GetRecordAttributesByRefImplPtr()
             ->RequestRecordAttributesByRef(GetRecordAttributesByRefRequest::CreateOne(),
                                            &response);
         return Counted(response, [](auto const& r) { return r.AccessRecordData().size(); });
       }},
      {"DataImport", "SetRecordAttributes",
       "<dat:SetRecordAttributesRequest><dat:importRecords/"
       "><dat:importErrorMode>LogAndContinueWherePossible</dat:importErrorMode></"
       "dat:SetRecordAttributesRequest>",
       "<SetRecordAttributesResponse><recordsImported><record/></recordsImported></"
       "SetRecordAttributesResponse>",
       [](Services& services) {
         SetRecordAttributesResponse response;
         services.GetDataImportService()->SetRecordAttributesImplPtr()->SetRecordAttributes_Request(
             SetRecordAttributesRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessRecordsImported().size(); });
       }},
      {"DataImport", "GetUploadAddresses",
       "<dat:GetUploadAddressesRequest><dat:records/><dat:attributes/></"
       "dat:GetUploadAddressesRequest>",
       "<GetUploadAddressesResponse><records><record/></records></GetUploadAddressesResponse>",
       [](Services& services) {
         GetUploadAddressesResponse response;
         services.GetDataImportService()->GetUploadAddressesImplPtr()->GetUploadAddresses(
             GetUploadAddressesRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) {
           return r.AccessRecordsWithAttributeAddresses().size();
         });
       }},
      {"DataImport", "ModifyRecordLinks",
       "<dat:ModifyRecordLinksRequest><dat:recordLinkGroup/"
       "><dat:importErrorMode>FaultAndRollbackOnAnyError</"
       "dat:importErrorMode><dat:recordLinkCheckMode>CheckOnlyForwardLinks</"
       "dat:recordLinkCheckMode><dat:recordLinkModifications/></dat:ModifyRecordLinksRequest>",
       "<ModifyRecordLinksResponse><linked><sourceRecord/></linked></ModifyRecordLinksResponse>",
       [](Services& services) {
         ModifyRecordLinksResponse response;
         services.GetDataImportService()->ModifyRecordLinksImplPtr()->ModifyRecordLinks(
             ModifyRecordLinksRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) {
           return r.GetRecordLinkChanges()->AccessLinked().size();
         });
       }},
      {"EngineeringData", "GetAvailableExporters", "<eng:GetAvailableExporters/>",
       "<GetAvailableExportersResponse><exporter/></GetAvailableExportersResponse>",
       [](Services& services) {
         GetAvailableExportersResponse response;
         services.GetEngineeringDataService()
             ->GetGetAvailableExportersImplPtr()
             ->GetAvailableExporters(GetAvailableExportersRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessExporters().size(); });
       }},
      {"EngineeringData", "ExportersForRecords",
       "<eng:ExportersForRecords><eng:packageAndModelRequired>false</"
       "eng:packageAndModelRequired><eng:specificAttributeExportersOnly>false</"
       "eng:specificAttributeExportersOnly><zbt:recordReferences/></eng:ExportersForRecords>",
       "<ExportersForRecordsResponse><records><record/></records></ExportersForRecordsResponse>",
       [](Services& services) {
         ExportersForRecordsResponse response;
         services.GetEngineeringDataService()
             ->GetGetExportersForRecordsImpl()
             ->GetExportersForRecords(ExportersForRecordsRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessRecords().size(); });
       }},
      {"EngineeringData", "GetExporterParameters",
       "<eng:GetExporterParameters><zbt:recordReferences/><eng:ExporterKey/"
       "><eng:populateGUIDs>false</eng:populateGUIDs></eng:GetExporterParameters>",
       "<GetExporterParametersResponse><Records><Record/></Records></"
       "GetExporterParametersResponse>",
       [](Services& services) {
         GetExporterParametersResponse response;
         services.GetEngineeringDataService()
             ->GetGetExporterParametersImpl()
             ->GetExporterParameters(GetExporterParametersRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.AccessRecords().size(); });
       }},
      {"EngineeringData", "ExportRecordData",
       "<eng:ExportRecordData><zbt:recordReferences/><eng:exporterKey/></eng:ExportRecordData>",
       "<text>1</text>",
       [](Services& services) {
         ExportRecordDataResponse response;
         services.GetEngineeringDataService()->GetExportRecordDataImpl()->ExportRecordData(
             ExportRecordDataRequest::CreateOne(), &response);
         return Counted(response, [](auto const& r) { return r.GetExportResult().size(); });
       }},
  };
}

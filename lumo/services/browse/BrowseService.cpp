#include "lumo/services/browse/BrowseService.h"

BrowseService::BrowseService(LumoSession* session)
    : m_getDatabase(new GetDatabaseImpl(session)),
      m_getTables(new GetTablesImpl(session)),
      m_getSubsets(new GetSubsetsImpl(session)),
      m_getUnits(new GetUnitsImpl(session)),
      m_getUnitSystems(new GetUnitSystemsImpl(session)),
      m_getCurrencies(new GetCurrenciesImpl(session)),
      m_getUnitConversions(new GetUnitConversionsImpl(session)),
      m_getRootNode(new GetRootNodeImpl(session)),
      m_getChildNodes(new GetChildNodesImpl(session)),
      m_getTreeRecords(new GetTreeRecordsImpl(session)),
      m_getRecordVersions(new GetRecordVersionsImpl(session)),
      m_getAttributeDetails(new GetAttributeDetailsImpl(session)),
      m_getAttributeParameters(new GetAttributeParametersImpl(session)),
      m_getParameterDetails(new GetParameterDetailsImpl(session)),
      m_getAttributeMinMax(new GetAttributeMinMaxImpl(session)),
      m_getMetaAttributes(new GetMetaAttributesImpl(session)),
      m_getRecordAttributes(new GetRecordAttributesImpl(session)),
      m_getRecordLinkGroups(new GetRecordLinkGroupsImpl(session)),
      m_getLinkedRecords(new GetLinkedRecordsImpl(session)) {}

std::string BrowseService::GetBrowseDefinition(std::string const& version) {
  return lumo::Endpoints::Browse.Namespace(version);
}

#pragma once

#include <string>

#include "lumo/services/browse/GetAttributeDetails.h"
#include "lumo/services/browse/GetAttributeMinMax.h"
#include "lumo/services/browse/GetAttributeParameters.h"
#include "lumo/services/browse/GetChildNodes.h"
#include "lumo/services/browse/GetCurrencies.h"
#include "lumo/services/browse/GetDatabases.h"
#include "lumo/services/browse/GetLinkedRecords.h"
#include "lumo/services/browse/GetMetaAttributes.h"
#include "lumo/services/browse/GetParameterDetails.h"
#include "lumo/services/browse/GetRecordAttributes.h"
#include "lumo/services/browse/GetRecordLinkGroups.h"
#include "lumo/services/browse/GetRecordVersions.h"
#include "lumo/services/browse/GetRootNode.h"
#include "lumo/services/browse/GetSubsets.h"
#include "lumo/services/browse/GetTables.h"
#include "lumo/services/browse/GetTreeRecords.h"
#include "lumo/services/browse/GetUnitConversions.h"
#include "lumo/services/browse/GetUnitSystems.h"
#include "lumo/services/browse/GetUnits.h"

/// Structure and contents of databases.
class LUMO_API BrowseService : public SmartPtrTarget_ts {
 public:
  /// The session must outlive the service and its operations.
  explicit BrowseService(LumoSession* session);
  /// Namespace of the service for an interface version such as "16/01".
  static std::string GetBrowseDefinition(std::string const& version);

  SmartPtr<GetDatabaseImpl> GetGetDatabaseImpl() const { return m_getDatabase; }
  SmartPtr<GetTablesImpl> GetGetTablesImpl() const { return m_getTables; }
  SmartPtr<GetSubsetsImpl> GetGetSubsetsImpl() const { return m_getSubsets; }
  SmartPtr<GetUnitsImpl> GetGetUnitsImpl() const { return m_getUnits; }
  SmartPtr<GetUnitSystemsImpl> GetGetUnitSystemsImpl() const { return m_getUnitSystems; }
  SmartPtr<GetCurrenciesImpl> GetGetCurrenciesImpl() const { return m_getCurrencies; }
  SmartPtr<GetUnitConversionsImpl> GetGetUnitConversionsImpl() const {
    return m_getUnitConversions;
  }
  SmartPtr<GetRootNodeImpl> GetGetRootNodeImpl() const { return m_getRootNode; }
  SmartPtr<GetChildNodesImpl> GetGetChildNodesImpl() const { return m_getChildNodes; }
  SmartPtr<GetTreeRecordsImpl> GetGetTreeRecordsImpl() const { return m_getTreeRecords; }
  SmartPtr<GetRecordVersionsImpl> GetGetRecordVersionsImpl() const { return m_getRecordVersions; }
  SmartPtr<GetAttributeDetailsImpl> GetGetAttributeDetailsImpl() const {
    return m_getAttributeDetails;
  }
  SmartPtr<GetAttributeParametersImpl> GetGetAttributeParametersImpl() const {
    return m_getAttributeParameters;
  }
  SmartPtr<GetParameterDetailsImpl> GetGetParameterDetailsImpl() const {
    return m_getParameterDetails;
  }
  SmartPtr<GetAttributeMinMaxImpl> GetGetAttributeMinMaxImpl() const {
    return m_getAttributeMinMax;
  }
  SmartPtr<GetMetaAttributesImpl> GetGetMetaAttributesImpl() const { return m_getMetaAttributes; }
  SmartPtr<GetRecordAttributesImpl> GetGetRecordAttributesImpl() const {
    return m_getRecordAttributes;
  }
  SmartPtr<GetRecordLinkGroupsImpl> GetGetRecordLinkGroupsImpl() const {
    return m_getRecordLinkGroups;
  }
  SmartPtr<GetLinkedRecordsImpl> GetGetLinkedRecordsImpl() const { return m_getLinkedRecords; }

 private:
  SmartPtr<GetDatabaseImpl> m_getDatabase;
  SmartPtr<GetTablesImpl> m_getTables;
  SmartPtr<GetSubsetsImpl> m_getSubsets;
  SmartPtr<GetUnitsImpl> m_getUnits;
  SmartPtr<GetUnitSystemsImpl> m_getUnitSystems;
  SmartPtr<GetCurrenciesImpl> m_getCurrencies;
  SmartPtr<GetUnitConversionsImpl> m_getUnitConversions;
  SmartPtr<GetRootNodeImpl> m_getRootNode;
  SmartPtr<GetChildNodesImpl> m_getChildNodes;
  SmartPtr<GetTreeRecordsImpl> m_getTreeRecords;
  SmartPtr<GetRecordVersionsImpl> m_getRecordVersions;
  SmartPtr<GetAttributeDetailsImpl> m_getAttributeDetails;
  SmartPtr<GetAttributeParametersImpl> m_getAttributeParameters;
  SmartPtr<GetParameterDetailsImpl> m_getParameterDetails;
  SmartPtr<GetAttributeMinMaxImpl> m_getAttributeMinMax;
  SmartPtr<GetMetaAttributesImpl> m_getMetaAttributes;
  SmartPtr<GetRecordAttributesImpl> m_getRecordAttributes;
  SmartPtr<GetRecordLinkGroupsImpl> m_getRecordLinkGroups;
  SmartPtr<GetLinkedRecordsImpl> m_getLinkedRecords;
};

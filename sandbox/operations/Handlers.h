#pragma once

#include <pugixml.hpp>

#include "sandbox/store/Store.h"
#include "sandbox/wire/Checker.h"

namespace sandbox {

/// Each operation is answered by a function of its name, in the file of its name: it reads and
/// checks the request's element and fills the response's. It throws `Fault` when the request makes
/// no sense.
using Handler = void (*)(Store& store, Checker& request, pugi::xml_node response);

void GetDatabases(Store& store, Checker& request, pugi::xml_node response);
void GetTables(Store& store, Checker& request, pugi::xml_node response);
void GetSubsets(Store& store, Checker& request, pugi::xml_node response);
void GetUnits(Store& store, Checker& request, pugi::xml_node response);
void GetUnitSystems(Store& store, Checker& request, pugi::xml_node response);
void GetCurrencies(Store& store, Checker& request, pugi::xml_node response);
void GetUnitConversions(Store& store, Checker& request, pugi::xml_node response);
void GetRootNode(Store& store, Checker& request, pugi::xml_node response);
void GetChildNodes(Store& store, Checker& request, pugi::xml_node response);
void GetTreeRecords(Store& store, Checker& request, pugi::xml_node response);
void GetRecordVersions(Store& store, Checker& request, pugi::xml_node response);
void GetAttributeDetails(Store& store, Checker& request, pugi::xml_node response);
void GetAttributeParameters(Store& store, Checker& request, pugi::xml_node response);
void GetParameterDetails(Store& store, Checker& request, pugi::xml_node response);
void GetAttributeMinMax(Store& store, Checker& request, pugi::xml_node response);
void GetMetaAttributes(Store& store, Checker& request, pugi::xml_node response);
void GetRecordAttributes(Store& store, Checker& request, pugi::xml_node response);
void GetRecordLinkGroups(Store& store, Checker& request, pugi::xml_node response);
void GetLinkedRecords(Store& store, Checker& request, pugi::xml_node response);
void SimpleTextSearch(Store& store, Checker& request, pugi::xml_node response);
void CriteriaSearch(Store& store, Checker& request, pugi::xml_node response);
void RecordNameSearch(Store& store, Checker& request, pugi::xml_node response);
void GetRecordAttributesByRef(Store& store, Checker& request, pugi::xml_node response);
void SetRecordAttributes(Store& store, Checker& request, pugi::xml_node response);
void GetUploadAddresses(Store& store, Checker& request, pugi::xml_node response);
void ModifyRecordLinks(Store& store, Checker& request, pugi::xml_node response);
void GetAvailableExporters(Store& store, Checker& request, pugi::xml_node response);
void ExportersForRecords(Store& store, Checker& request, pugi::xml_node response);
void GetExporterParameters(Store& store, Checker& request, pugi::xml_node response);
void ExportRecordData(Store& store, Checker& request, pugi::xml_node response);

}  // namespace sandbox

#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "Checker.h"
#include "Soap.h"
#include "Store.h"

namespace sandbox {

/// Answers one operation: reads and checks the request's element, fills the response's. Throws
/// `Fault` when the request makes no sense.
using Handler = void (*)(Store& store, Checker& request, pugi::xml_node response);

/// An operation of the service layer.
struct Operation {
  std::string_view service;
  std::string_view name;
  std::string_view rootTag;  ///< empty: the body must be empty
  Handler handler;

  /// Name of the reply's element.
  std::string ResponseTag() const;
  /// The SOAPAction by which it is called.
  std::string Action(Namespaces const& namespaces) const;
};

std::vector<Service> const& Services();
std::vector<Operation> const& Operations();
/// The operation of that name; null when there is none.
Operation const* FindOperation(std::string_view name);
/// The operation that a SOAPAction calls; null when the service has no such one.
Operation const* FindByAction(Service const& service, Namespaces const& namespaces,
                              std::string const& action);

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

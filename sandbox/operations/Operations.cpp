#include "sandbox/operations/Operations.h"

#include <algorithm>

namespace sandbox {

std::vector<Service> const& Services() {
  static std::vector<Service> const kServices = {{"Browse", "brow"},
                                                 {"Search", "sear"},
                                                 {"DataExport", "exp"},
                                                 {"DataImport", "dat"},
                                                 {"EngineeringData", "eng"}};
  return kServices;
}

std::vector<Operation> const& Operations() {
  static std::vector<Operation> const kOperations = {
      {"Browse", "GetDatabases", "", GetDatabases},
      {"Browse", "GetTables", "GetTables", GetTables},
      {"Browse", "GetSubsets", "GetSubsets", GetSubsets},
      {"Browse", "GetUnits", "GetUnitsRequest", GetUnits},
      {"Browse", "GetUnitSystems", "GetUnitSystems", GetUnitSystems},
      {"Browse", "GetCurrencies", "", GetCurrencies},
      {"Browse", "GetUnitConversions", "GetUnitConversionsRequest", GetUnitConversions},
      {"Browse", "GetRootNode", "GetRootNode", GetRootNode},
      {"Browse", "GetChildNodes", "GetChildNodes", GetChildNodes},
      {"Browse", "GetTreeRecords", "GetTreeRecords", GetTreeRecords},
      {"Browse", "GetRecordVersions", "GetRecordVersions", GetRecordVersions},
      {"Browse", "GetAttributeDetails", "GetAttributeDetails", GetAttributeDetails},
      {"Browse", "GetAttributeParameters", "GetAttributeParameters", GetAttributeParameters},
      {"Browse", "GetParameterDetails", "GetParameterDetails", GetParameterDetails},
      {"Browse", "GetAttributeMinMax", "GetAttributeMinMax", GetAttributeMinMax},
      {"Browse", "GetMetaAttributes", "GetMetaAttributes", GetMetaAttributes},
      {"Browse", "GetRecordAttributes", "GetRecordAttributes", GetRecordAttributes},
      {"Browse", "GetRecordLinkGroups", "GetRecordLinkGroups", GetRecordLinkGroups},
      {"Browse", "GetLinkedRecords", "GetLinkedRecords", GetLinkedRecords},
      {"Search", "SimpleTextSearch", "SimpleTextSearch", SimpleTextSearch},
      {"Search", "CriteriaSearch", "CriteriaSearch", CriteriaSearch},
      {"Search", "RecordNameSearch", "RecordNameSearch", RecordNameSearch},
      {"DataExport", "GetRecordAttributesByRef", "GetRecordAttributesByRef",
       GetRecordAttributesByRef},
      {"DataImport", "SetRecordAttributes", "SetRecordAttributesRequest", SetRecordAttributes},
      {"DataImport", "GetUploadAddresses", "GetUploadAddressesRequest", GetUploadAddresses},
      {"DataImport", "ModifyRecordLinks", "ModifyRecordLinksRequest", ModifyRecordLinks},
      {"EngineeringData", "GetAvailableExporters", "GetAvailableExporters", GetAvailableExporters},
      {"EngineeringData", "ExportersForRecords", "ExportersForRecords", ExportersForRecords},
      {"EngineeringData", "GetExporterParameters", "GetExporterParameters", GetExporterParameters},
      {"EngineeringData", "ExportRecordData", "ExportRecordData", ExportRecordData},
  };
  return kOperations;
}

Operation const* FindOperation(std::string_view name) {
  std::vector<Operation> const& all = Operations();
  auto const found = std::find_if(
      all.begin(), all.end(), [&](Operation const& operation) { return operation.name == name; });
  return found == all.end() ? nullptr : &*found;
}

Operation const* FindByAction(Service const& service, Namespaces const& namespaces,
                              std::string const& action) {
  // The action ends in "/", the name and "Request".
  constexpr std::size_t kEnd = std::string_view("Request").size();
  std::string const name = action.substr(action.rfind('/') + 1);
  if (name.size() <= kEnd) return nullptr;
  Operation const* const operation = FindOperation(name.substr(0, name.size() - kEnd));
  bool const isThis = operation != nullptr && operation->service == service.name &&
                      operation->Action(namespaces) == action;
  return isThis ? operation : nullptr;
}

// All searches answer alike, and an export with nothing but its text.
std::string Operation::ResponseTag() const {
  if (service == "Search") return "SimpleTextSearchResponse";
  if (name == "ExportRecordData") return "text";
  return std::string(name) + "Response";
}

std::string Operation::Action(Namespaces const& namespaces) const {
  return namespaces.Versioned(service) + "/" + std::string(name) + "Request";
}

}  // namespace sandbox

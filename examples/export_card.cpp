// Prints what an exporter makes of a record.
//
//     export-card DATABASE TABLE NAME EXPORTER http://server/service_layer
//
// The record is found by its short name, the exporter by its key.

#include <iostream>
#include <string>

#include "Common.h"

namespace {

/// The record of that name; null when there is none.
SmartPtr<RecordReference> RecordOf(SearchService& search, SmartPtr<TableReference> const& table,
                                   std::string const& name) {
  auto const request = RecordNameSearchRequest::CreateOne();
  request->SetTable(table);
  request->SetRecordName(name);
  request->SetSearchShortNames(true);
  SimpleTextSearchResponse response;
  search.GetRecordNameSearchImpl()->RecordNameSearch(request, &response);
  if (!Succeeded(response)) return nullptr;
  if (!response.AccessSearchResults().empty()) {
    return response.AccessSearchResults()[0]->GetRecordReference();
  }
  std::cerr << "There is no record " << name << ".\n";
  return nullptr;
}

bool PrintExport(EngineeringDataService& engineering, SmartPtr<RecordReference> const& record,
                 std::string const& exporter) {
  auto const request = ExportRecordDataRequest::CreateOne();
  request->AddRecord(record);
  request->SetExporterKey(exporter);
  ExportRecordDataResponse response;
  engineering.GetExportRecordDataImpl()->ExportRecordData(request, &response);
  if (!Succeeded(response)) return false;
  std::cout << response.GetExportResult();
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) {
    std::cerr << "usage: export-card DATABASE TABLE NAME EXPORTER URL\n";
    return 2;
  }
  return RunExample(argv[5], "", "", [&](LumoServiceLayerServices& services) {
    auto const record =
        RecordOf(*services.GetSearchService(), TableNamed(argv[1], argv[2]), argv[3]);
    return record && PrintExport(*services.GetEngineeringDataService(), record, argv[4]);
  });
}

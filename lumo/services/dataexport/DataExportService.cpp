#include "lumo/services/dataexport/DataExportService.h"

#include "lumo/session/ServiceOperation.h"

DataExportService::DataExportService(LumoSession* /*session*/) {}

std::string DataExportService::GetDataExportDefinition(std::string const& version) {
  return lumo::Endpoints::DataExport.Namespace(version);
}

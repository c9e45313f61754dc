#include "lumo/services/dataimport/DataImportService.h"

#include "lumo/session/ServiceOperation.h"

DataImportService::DataImportService(LumoSession* /*session*/) {}

std::string DataImportService::GetDataImportDefinition(std::string const& version) {
  return lumo::Endpoints::DataImport.Namespace(version);
}

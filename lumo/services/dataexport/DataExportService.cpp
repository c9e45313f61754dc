#include "lumo/services/dataexport/DataExportService.h"

DataExportService::DataExportService(LumoSession* session)
    : m_getRecordAttributesByRef(new GetRecordAttributesByRefImpl(session)) {}

std::string DataExportService::GetDataExportDefinition(std::string const& version) {
  return lumo::Endpoints::DataExport.Namespace(version);
}

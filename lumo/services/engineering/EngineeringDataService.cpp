#include "lumo/services/engineering/EngineeringDataService.h"

EngineeringDataService::EngineeringDataService(LumoSession* session)
    : m_exportersForRecords(new ExportersForRecordsImpl(session)),
      m_getAvailableExporters(new GetAvailableExportersImpl(session)),
      m_exportRecordData(new ExportRecordDataImpl(session)),
      m_getExporterParameters(new GetExporterParametersImpl(session)) {}

std::string EngineeringDataService::GetEngineeringDataDefinition(std::string const& version) {
  return lumo::Endpoints::EngineeringData.Namespace(version);
}

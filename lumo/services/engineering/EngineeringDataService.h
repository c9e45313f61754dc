#pragma once

#include <string>

#include "lumo/services/engineering/ExportRecordData.h"
#include "lumo/services/engineering/ExportersForRecords.h"
#include "lumo/services/engineering/GetAvailableExporters.h"
#include "lumo/services/engineering/GetExporterParameters.h"

/// Input of engineering tools, made by exporters on the server.
class LUMO_API EngineeringDataService : public SmartPtrTarget_ts {
 public:
  /// The session must outlive the service and its operations.
  explicit EngineeringDataService(LumoSession* session);
  /// Namespace of the service for an interface version such as "16/01".
  static std::string GetEngineeringDataDefinition(std::string const& version);

  SmartPtr<ExportersForRecordsImpl> GetGetExportersForRecordsImpl() const {
    return m_exportersForRecords;
  }
  SmartPtr<GetAvailableExportersImpl> GetGetAvailableExportersImplPtr() const {
    return m_getAvailableExporters;
  }
  SmartPtr<ExportRecordDataImpl> GetExportRecordDataImpl() const { return m_exportRecordData; }
  SmartPtr<GetExporterParametersImpl> GetGetExporterParametersImpl() const {
    return m_getExporterParameters;
  }

 private:
  SmartPtr<ExportersForRecordsImpl> m_exportersForRecords;
  SmartPtr<GetAvailableExportersImpl> m_getAvailableExporters;
  SmartPtr<ExportRecordDataImpl> m_exportRecordData;
  SmartPtr<GetExporterParametersImpl> m_getExporterParameters;
};

#pragma once

#include <string>

#include "lumo/services/browse/BrowseService.h"
#include "lumo/services/dataexport/DataExportService.h"
#include "lumo/services/dataimport/DataImportService.h"
#include "lumo/services/engineering/EngineeringDataService.h"
#include "lumo/services/search/SearchService.h"

/// The library's front door: a session and its five services.
class LUMO_API LumoServiceLayerServices : public SmartPtrTarget_ts {
 public:
  /// Opens a session without a logger. Never fails: an unreachable server shows in the calls.
  static SmartPtr<LumoServiceLayerServices> CreateOne(std::string const& url,
                                                      SmartPtr<ILumoSLAuthModule> const& auth);
  /// For a session with a logger, an application name or a reader's rights: set them before, the
  /// operation objects copy them now.
  explicit LumoServiceLayerServices(SmartPtr<LumoSession> const& session);

  /// Null when there is none.
  SmartPtr<LumoSession> GetSession() const { return m_session; }
  /// The five services:
  SmartPtr<BrowseService> GetBrowseService() const { return m_browse; }
  SmartPtr<SearchService> GetSearchService() const { return m_search; }
  SmartPtr<DataExportService> GetDataExportService() const { return m_dataExport; }
  SmartPtr<DataImportService> GetDataImportService() const { return m_dataImport; }
  SmartPtr<EngineeringDataService> GetEngineeringDataService() const { return m_engineeringData; }
  /// See `LumoSession::SetTimeouts`.
  void SetTimeouts(int resolve, int connect, int send, int receive);

 private:
  SmartPtr<LumoSession> m_session;
  SmartPtr<BrowseService> m_browse;
  SmartPtr<SearchService> m_search;
  SmartPtr<DataExportService> m_dataExport;
  SmartPtr<DataImportService> m_dataImport;
  SmartPtr<EngineeringDataService> m_engineeringData;
};

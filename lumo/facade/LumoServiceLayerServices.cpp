#include "lumo/facade/LumoServiceLayerServices.h"

SmartPtr<LumoServiceLayerServices> LumoServiceLayerServices::CreateOne(
    std::string const& url, SmartPtr<ILumoSLAuthModule> const& auth) {
  return {new LumoServiceLayerServices(LumoSession::CreateOne(url, auth))};
}

LumoServiceLayerServices::LumoServiceLayerServices(SmartPtr<LumoSession> const& session)
    : m_session(session),
      m_browse(new BrowseService(session.get())),
      m_search(new SearchService(session.get())),
      m_dataExport(new DataExportService(session.get())),
      m_dataImport(new DataImportService(session.get())),
      m_engineeringData(new EngineeringDataService(session.get())) {}

void LumoServiceLayerServices::SetTimeouts(int resolve, int connect, int send, int receive) {
  if (m_session) m_session->SetTimeouts(resolve, connect, send, receive);
}

#include "lumo/services/browse/BrowseService.h"

BrowseService::BrowseService(LumoSession* session)
    : m_getDatabase(new GetDatabaseImpl(session)),
      m_getTables(new GetTablesImpl(session)),
      m_getSubsets(new GetSubsetsImpl(session)) {}

std::string BrowseService::GetBrowseDefinition(std::string const& version) {
  return lumo::Endpoints::Browse.Namespace(version);
}

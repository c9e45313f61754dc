#include "lumo/services/search/SearchService.h"

#include "lumo/session/ServiceOperation.h"

SearchService::SearchService(LumoSession* /*session*/) {}

std::string SearchService::GetSearchDefinition(std::string const& version) {
  return lumo::Endpoints::Search.Namespace(version);
}

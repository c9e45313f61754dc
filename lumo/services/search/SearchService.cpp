#include "lumo/services/search/SearchService.h"

SearchService::SearchService(LumoSession* session)
    : m_simpleTextSearch(new SimpleTextSearchImpl(session)),
      m_criteriaSearch(new CriteriaSearchImpl(session)),
      m_recordNameSearch(new RecordNameSearchImpl(session)) {}

std::string SearchService::GetSearchDefinition(std::string const& version) {
  return lumo::Endpoints::Search.Namespace(version);
}

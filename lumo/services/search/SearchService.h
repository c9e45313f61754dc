#pragma once

#include <string>

#include "lumo/services/search/CriteriaSearch.h"
#include "lumo/services/search/RecordNameSearch.h"
#include "lumo/services/search/SimpleTextSearch.h"

/// Finding records.
class LUMO_API SearchService : public SmartPtrTarget_ts {
 public:
  /// The session must outlive the service and its operations.
  explicit SearchService(LumoSession* session);
  /// Namespace of the service for an interface version such as "16/01".
  static std::string GetSearchDefinition(std::string const& version);

  SmartPtr<SimpleTextSearchImpl> GetSimpleTextSearchImpl() const { return m_simpleTextSearch; }
  SmartPtr<CriteriaSearchImpl> GetCriteriaSearchImpl() const { return m_criteriaSearch; }
  SmartPtr<RecordNameSearchImpl> GetRecordNameSearchImpl() const { return m_recordNameSearch; }

 private:
  SmartPtr<SimpleTextSearchImpl> m_simpleTextSearch;
  SmartPtr<CriteriaSearchImpl> m_criteriaSearch;
  SmartPtr<RecordNameSearchImpl> m_recordNameSearch;
};

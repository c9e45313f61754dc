#pragma once

#include <string>
#include <vector>

#include "lumo/services/search/RecordSearchCriterion.h"
#include "lumo/services/search/SimpleTextSearch.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/RecordFilter.h"
#include "lumo/types/SearchModes.h"
#include "lumo/types/TableFilters.h"

/// Searches a database for the records that meet all of some conditions.
class LUMO_API CriteriaSearch : public lumo::Request<CriteriaSearch> {
 public:
  /// Key of the database; sent even when empty.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  std::vector<SmartPtr<RecordSearchCriterion>>& AccessSearchCriterion() {
    return m_searchCriterion;
  }
  std::vector<SmartPtr<RecordSearchCriterion>> const& AccessSearchCriterion() const {
    return m_searchCriterion;
  }
  void AddSearchCriterion(SmartPtr<RecordSearchCriterion> const& criterion) {
    m_searchCriterion.push_back(criterion);
  }
  /// Restricts the search to one class of tables; `NoFilter`, the default, is sent too.
  TableFilters::eTablesFilter GetSearchFilter() const { return m_searchFilter; }
  void SetSearchFilter(TableFilters::eTablesFilter searchFilter) { m_searchFilter = searchFilter; }
  /// Not sent by default.
  SearchModes::eSearchMode GetSearchMode() const { return m_searchMode; }
  void SetSearchMode(SearchModes::eSearchMode searchMode) { m_searchMode = searchMode; }
  /// Whether the records come with their GUIDs.
  bool GetPopulateGUIDs() const { return m_populateGUIDs; }
  void SetPopulateGUIDs(bool populateGUIDs) { m_populateGUIDs = populateGUIDs; }
  /// Restricts the records; not sent when null.
  SmartPtr<RecordFilter> GetRecordFilter() const { return m_recordFilter; }
  void SetRecordFilter(SmartPtr<RecordFilter> const& recordFilter) {
    m_recordFilter = recordFilter;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_dbKey;
  std::vector<SmartPtr<RecordSearchCriterion>> m_searchCriterion;
  TableFilters::eTablesFilter m_searchFilter = TableFilters::NoFilter;
  SearchModes::eSearchMode m_searchMode = SearchModes::NotSet;
  bool m_populateGUIDs = false;
  SmartPtr<RecordFilter> m_recordFilter;
};

/// Searches a database by conditions on attributes. Makes its calls as `Operation.h` says.
class LUMO_API CriteriaSearchImpl
    : public lumo::SearchOperation<CriteriaSearchImpl, CriteriaSearch, SimpleTextSearchResponse> {
 public:
  static inline std::string const Name = "CriteriaSearch";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void Search(SmartPtr<CriteriaSearch> const& request, SimpleTextSearchResponse* response) {
    Call(request, response);
  }
};

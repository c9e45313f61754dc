#pragma once

#include <string>

#include "lumo/session/IRequest.h"
#include "lumo/types/RecordFilter.h"
#include "lumo/types/SearchModes.h"
#include "lumo/types/TableFilters.h"
#include "lumo/xml/NodeWriter.h"

namespace lumo {

/// Base of the searches of a whole database.
template <class T>
class SearchRequest : public Request<T> {
 public:
  /// Key of the database; sent even when empty.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  /// Restricts the search to one class of tables; `NoFilter`, the default, is sent too.
  TableFilters::eTablesFilter GetSearchFilter() const { return m_searchFilter; }
  void SetSearchFilter(TableFilters::eTablesFilter filter) { m_searchFilter = filter; }
  /// Not sent by default.
  SearchModes::eSearchMode GetSearchMode() const { return m_searchMode; }
  void SetSearchMode(SearchModes::eSearchMode mode) { m_searchMode = mode; }
  /// Whether the records come with their GUIDs.
  bool GetPopulateGUIDs() const { return m_populateGUIDs; }
  void SetPopulateGUIDs(bool populateGUIDs) { m_populateGUIDs = populateGUIDs; }
  /// Restricts the records; not sent when null.
  SmartPtr<RecordFilter> GetRecordFilter() const { return m_recordFilter; }
  void SetRecordFilter(SmartPtr<RecordFilter> const& filter) { m_recordFilter = filter; }

 protected:
  /// Writes what follows the text or the conditions to search for.
  void WriteRestrictions(NodeWriter& out) const {
    out.Child("sear:searchFilter", m_searchFilter, TableFilters::ToString);
    if (m_searchMode != SearchModes::NotSet) {
      out.Child("sear:searchMode", m_searchMode, SearchModes::ToString);
    }
    out.Child("sear:populateGUIDs", m_populateGUIDs);
    out.Child("sear:recordFilter", m_recordFilter);
  }

 private:
  std::string m_dbKey;
  TableFilters::eTablesFilter m_searchFilter = TableFilters::NoFilter;
  SearchModes::eSearchMode m_searchMode = SearchModes::NotSet;
  bool m_populateGUIDs = false;
  SmartPtr<RecordFilter> m_recordFilter;
};

}  // namespace lumo

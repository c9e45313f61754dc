#pragma once

#include <string>

#include "lumo/services/search/SimpleTextSearch.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/RecordFilter.h"
#include "lumo/types/TableReference.h"

/// Searches a table for records of a name.
class LUMO_API RecordNameSearchRequest : public lumo::Request<RecordNameSearchRequest> {
 public:
  /// Not sent when null.
  SmartPtr<TableReference> GetTable() const { return m_table; }
  void SetTable(SmartPtr<TableReference> const& table) { m_table = table; }
  /// The name to search for; sent even when empty.
  std::string const& GetRecordName() const { return m_recordName; }
  void SetRecordName(std::string const& recordName) { m_recordName = recordName; }
  /// Restricts the records; not sent when null.
  SmartPtr<RecordFilter> GetFilter() const { return m_filter; }
  void SetFilter(SmartPtr<RecordFilter> const& filter) { m_filter = filter; }
  /// Whether the records come with their GUIDs.
  bool GetPopulateGUIDs() const { return m_populateGUIDs; }
  void SetPopulateGUIDs(bool populateGUIDs) { m_populateGUIDs = populateGUIDs; }
  /// Whether full names are searched; true by default.
  bool GetSearchFullNames() const { return m_searchFullNames; }
  void SetSearchFullNames(bool searchFullNames) { m_searchFullNames = searchFullNames; }
  /// Whether short names are searched.
  bool GetSearchShortNames() const { return m_searchShortNames; }
  void SetSearchShortNames(bool searchShortNames) { m_searchShortNames = searchShortNames; }
  /// Whether case counts.
  bool GetCaseSensitiveNames() const { return m_caseSensitiveNames; }
  void SetCaseSensitiveNames(bool caseSensitiveNames) { m_caseSensitiveNames = caseSensitiveNames; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  SmartPtr<TableReference> m_table;
  std::string m_recordName;
  SmartPtr<RecordFilter> m_filter;
  bool m_populateGUIDs = false;
  bool m_searchFullNames = true;
  bool m_searchShortNames = false;
  bool m_caseSensitiveNames = false;
};

/// Searches a table for records of a name. Makes its calls as `Operation.h` says.
class LUMO_API RecordNameSearchImpl
    : public lumo::SearchOperation<RecordNameSearchImpl, RecordNameSearchRequest,
                                   SimpleTextSearchResponse> {
 public:
  static constexpr char Name[] = "RecordNameSearch";
  using ServiceOperation::ServiceOperation;
  std::string GetResponseTagName() const override { return "SimpleTextSearchResponse"; }
  /// Fills `response`; a null request is logged and not sent.
  void RecordNameSearch(SmartPtr<RecordNameSearchRequest> const& request,
                        SimpleTextSearchResponse* response) {
    Call(request, response);
  }
};

#pragma once

#include <string>
#include <vector>

#include "lumo/services/search/SearchRequest.h"
#include "lumo/services/search/SearchResult.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/PartialTableReference.h"

/// Searches a database for a text.
class LUMO_API SimpleTextSearch : public lumo::SearchRequest<SimpleTextSearch> {
 public:
  /// The text to search for; sent even when empty.
  std::string const& GetSearchValue() const { return m_searchValue; }
  void SetSearchValue(std::string const& searchValue) { m_searchValue = searchValue; }
  /// The tables to search; not sent when there are none.
  std::vector<SmartPtr<PartialTableReference>>& AccessRestrictToTables() {
    return m_restrictToTables;
  }
  std::vector<SmartPtr<PartialTableReference>> const& AccessRestrictToTables() const {
    return m_restrictToTables;
  }
  void AddRestrictToTables(SmartPtr<PartialTableReference> const& table) {
    m_restrictToTables.push_back(table);
  }
  void SetRestrictToTables(std::vector<SmartPtr<PartialTableReference>> const& tables) {
    m_restrictToTables = tables;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_searchValue;
  std::vector<SmartPtr<PartialTableReference>> m_restrictToTables;
};

/// The records that a search of any of the three kinds found.
class LUMO_API SimpleTextSearchResponse : public lumo::Response<SimpleTextSearchResponse> {
 public:
  SimpleTextSearchResponse() = default;
  explicit SimpleTextSearchResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<SearchResult>>& AccessSearchResults() { return m_searchResults; }
  std::vector<SmartPtr<SearchResult>> const& AccessSearchResults() const { return m_searchResults; }
  void AddSearchResult(SmartPtr<SearchResult> const& result) { m_searchResults.push_back(result); }

 private:
  std::vector<SmartPtr<SearchResult>> m_searchResults;
};

/// Searches a database for a text. Makes its calls as `Operation.h` says.
class LUMO_API SimpleTextSearchImpl
    : public lumo::SearchOperation<SimpleTextSearchImpl, SimpleTextSearch,
                                   SimpleTextSearchResponse> {
 public:
  static constexpr char Name[] = "SimpleTextSearch";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void Search(SmartPtr<SimpleTextSearch> const& request, SimpleTextSearchResponse* response) {
    Call(request, response);
  }
};

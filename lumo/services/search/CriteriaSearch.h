#pragma once

#include <vector>

#include "lumo/services/search/RecordSearchCriterion.h"
#include "lumo/services/search/SimpleTextSearch.h"
#include "lumo/session/ServiceOperation.h"

/// Searches a database by conditions on the values of attributes. How several conditions go
/// together is the server's affair.
class LUMO_API CriteriaSearch : public lumo::SearchRequest<CriteriaSearch> {
 public:
  std::vector<SmartPtr<RecordSearchCriterion>>& AccessSearchCriterion() { return m_criteria; }
  std::vector<SmartPtr<RecordSearchCriterion>> const& AccessSearchCriterion() const {
    return m_criteria;
  }
  void AddSearchCriterion(SmartPtr<RecordSearchCriterion> const& criterion) {
    m_criteria.push_back(criterion);
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<RecordSearchCriterion>> m_criteria;
};

/// Searches a database by conditions on attributes. Makes its calls as `Operation.h` says.
class LUMO_API CriteriaSearchImpl
    : public lumo::SearchOperation<CriteriaSearchImpl, CriteriaSearch, SimpleTextSearchResponse> {
 public:
  static constexpr char Name[] = "CriteriaSearch";
  using ServiceOperation::ServiceOperation;
  std::string GetResponseTagName() const override { return "SimpleTextSearchResponse"; }
  /// Fills `response`; a null request is logged and not sent.
  void Search(SmartPtr<CriteriaSearch> const& request, SimpleTextSearchResponse* response) {
    Call(request, response);
  }
};

#pragma once

#include <string>
#include <vector>

#include "lumo/services/browse/SubsetDetail.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"

/// Asks for the subsets of a table, or for single subsets.
class LUMO_API GetSubsets : public lumo::Request<GetSubsets> {
 public:
  /// The table whose subsets are wanted; not sent when null.
  SmartPtr<TableReference> GetTable() const { return m_table; }
  void SetTable(SmartPtr<TableReference> const& table) { m_table = table; }
  /// The subsets that are wanted; not sent when there are none.
  std::vector<SmartPtr<SubsetReference>>& AccessSubsetReferences() { return m_subsetReferences; }
  std::vector<SmartPtr<SubsetReference>> const& AccessSubsetReferences() const {
    return m_subsetReferences;
  }
  void AddSubsetRefernece(SmartPtr<SubsetReference> const& subset) {
    m_subsetReferences.push_back(subset);
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  SmartPtr<TableReference> m_table;
  std::vector<SmartPtr<SubsetReference>> m_subsetReferences;
};

/// The subsets that were found.
class LUMO_API GetSubsetsResponse : public lumo::Response<GetSubsetsResponse> {
 public:
  GetSubsetsResponse() = default;
  explicit GetSubsetsResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<SubsetDetail>>& AccessSubsetDetails() { return m_subsetDetails; }
  std::vector<SmartPtr<SubsetDetail>> const& AccessSubsetDetails() const { return m_subsetDetails; }
  void AddSubsetDetail(SmartPtr<SubsetDetail> const& subset) { m_subsetDetails.push_back(subset); }

 private:
  std::vector<SmartPtr<SubsetDetail>> m_subsetDetails;
};

/// Lists the subsets of a table. Makes its calls as `Operation.h` says.
class LUMO_API GetSubsetsImpl
    : public lumo::BrowseOperation<GetSubsetsImpl, GetSubsets, GetSubsetsResponse> {
 public:
  static constexpr char Name[] = "GetSubsets";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent. The method hides the request class of
  /// the same name, which callers name as usual.
  void GetSubsets(SmartPtr<::GetSubsets> const& request, GetSubsetsResponse* response) {
    Call(request, response);
  }
};

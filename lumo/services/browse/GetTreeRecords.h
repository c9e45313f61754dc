#pragma once

#include <vector>

#include "lumo/services/browse/TreeRecordsResponse.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/RecordReference.h"

/// Asks for the places of records in the tree.
class LUMO_API GetTreeRecordsRequest : public lumo::Request<GetTreeRecordsRequest> {
 public:
  std::vector<SmartPtr<RecordReference>>& AccessRecordReferences() { return m_recordReferences; }
  std::vector<SmartPtr<RecordReference>> const& AccessRecordReferences() const {
    return m_recordReferences;
  }
  void AddRecord(SmartPtr<RecordReference> const& record) { m_recordReferences.push_back(record); }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<RecordReference>> m_recordReferences;
};

/// Records as the tree shows them.
class LUMO_API GetTreeRecordsResponse : public lumo::TreeRecordsResponse<GetTreeRecordsResponse> {
 public:
  using TreeRecordsResponse::TreeRecordsResponse;
};

/// Finds records in the tree. Makes its calls as `Operation.h` says.
class LUMO_API GetTreeRecordsImpl
    : public lumo::BrowseOperation<GetTreeRecordsImpl, GetTreeRecordsRequest,
                                   GetTreeRecordsResponse> {
 public:
  static constexpr char Name[] = "GetTreeRecords";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void RequestTreeNodes(SmartPtr<GetTreeRecordsRequest> const& request,
                        GetTreeRecordsResponse* response) {
    Call(request, response);
  }
};

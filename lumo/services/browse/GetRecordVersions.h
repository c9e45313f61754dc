#pragma once

#include <vector>

#include "lumo/services/browse/RecordVersionState.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/VersionPolicies.h"
#include "lumo/types/WithRecordReferences.h"

/// Asks for versions of records and their states.
class LUMO_API GetRecordVersionsRequest
    : public lumo::WithRecordReferences<lumo::Request<GetRecordVersionsRequest>> {
 public:
  /// Which versions are wanted; `All` by default.
  VersionPolicies::eVersionPolicy GetVersionPolicy() const { return m_versionPolicy; }
  void SetVersionPolicy(VersionPolicies::eVersionPolicy versionPolicy) {
    m_versionPolicy = versionPolicy;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  VersionPolicies::eVersionPolicy m_versionPolicy = VersionPolicies::All;
};

/// Versions of records and their states.
class LUMO_API GetRecordVersionsResponse : public lumo::Response<GetRecordVersionsResponse> {
 public:
  GetRecordVersionsResponse() = default;
  explicit GetRecordVersionsResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<RecordVersionState>>& AccessRecordVersionStates() {
    return m_recordVersionStates;
  }
  std::vector<SmartPtr<RecordVersionState>> const& AccessRecordVersionStates() const {
    return m_recordVersionStates;
  }
  void AddRecordVersionState(SmartPtr<RecordVersionState> const& state) {
    m_recordVersionStates.push_back(state);
  }

 private:
  std::vector<SmartPtr<RecordVersionState>> m_recordVersionStates;
};

/// Lists versions of records. Makes its calls as `Operation.h` says.
class LUMO_API GetRecordVersionsImpl
    : public lumo::BrowseOperation<GetRecordVersionsImpl, GetRecordVersionsRequest,
                                   GetRecordVersionsResponse> {
 public:
  static constexpr char Name[] = "GetRecordVersions";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void GetRecordVersions(SmartPtr<GetRecordVersionsRequest> const& request,
                         GetRecordVersionsResponse* response) {
    Call(request, response);
  }
};

#pragma once

#include <vector>

#include "lumo/services/browse/AttributesRequest.h"
#include "lumo/services/browse/ParameterDetail.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"

/// Asks for the parameters of attributes.
class LUMO_API GetAttributeParametersRequest
    : public lumo::AttributesRequest<GetAttributeParametersRequest> {};

/// Parameters of attributes.
class LUMO_API GetAttributeParametersResponse
    : public lumo::Response<GetAttributeParametersResponse> {
 public:
  GetAttributeParametersResponse() = default;
  explicit GetAttributeParametersResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<ParameterDetail>>& AccessParameterDetails() { return m_parameterDetails; }
  std::vector<SmartPtr<ParameterDetail>> const& AccessParameterDetails() const {
    return m_parameterDetails;
  }
  void AddParameterDetail(SmartPtr<ParameterDetail> const& detail) {
    m_parameterDetails.push_back(detail);
  }

 private:
  std::vector<SmartPtr<ParameterDetail>> m_parameterDetails;
};

/// Describes the parameters of attributes. Makes its calls as `Operation.h` says.
class LUMO_API GetAttributeParametersImpl
    : public lumo::BrowseOperation<GetAttributeParametersImpl, GetAttributeParametersRequest,
                                   GetAttributeParametersResponse> {
 public:
  static inline std::string const Name = "GetAttributeParameters";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void GetAttributeParameters(SmartPtr<GetAttributeParametersRequest> const& request,
                              GetAttributeParametersResponse* response) {
    Call(request, response);
  }
};

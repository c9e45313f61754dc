#pragma once

#include <vector>

#include "lumo/services/browse/AttributesRequest.h"
#include "lumo/services/browse/WithParameterDetails.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"

/// Asks for the parameters of attributes.
class LUMO_API GetAttributeParametersRequest
    : public lumo::AttributesRequest<GetAttributeParametersRequest> {};

/// Parameters of attributes.
class LUMO_API GetAttributeParametersResponse
    : public lumo::WithParameterDetails<lumo::Response<GetAttributeParametersResponse>> {
 public:
  GetAttributeParametersResponse() = default;
  explicit GetAttributeParametersResponse(XmlNode<char> const* node) : WithParameterDetails(node) {}
};

/// Describes the parameters of attributes. Makes its calls as `Operation.h` says.
class LUMO_API GetAttributeParametersImpl
    : public lumo::BrowseOperation<GetAttributeParametersImpl, GetAttributeParametersRequest,
                                   GetAttributeParametersResponse> {
 public:
  static constexpr char Name[] = "GetAttributeParameters";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void GetAttributeParameters(SmartPtr<GetAttributeParametersRequest> const& request,
                              GetAttributeParametersResponse* response) {
    Call(request, response);
  }
};

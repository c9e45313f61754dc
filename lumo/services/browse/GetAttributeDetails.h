#pragma once

#include <vector>

#include "lumo/services/browse/AttributeDetail.h"
#include "lumo/services/browse/AttributesRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"

/// Asks for the definitions of attributes.
class LUMO_API GetAttributeDetailsRequest
    : public lumo::AttributesRequest<GetAttributeDetailsRequest> {};

/// Definitions of attributes.
class LUMO_API GetAttributeDetailsResponse : public lumo::Response<GetAttributeDetailsResponse> {
 public:
  GetAttributeDetailsResponse() = default;
  explicit GetAttributeDetailsResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<AttributeDetail>>& AccessAttributeDetails() { return m_attributeDetails; }
  std::vector<SmartPtr<AttributeDetail>> const& AccessAttributeDetails() const {
    return m_attributeDetails;
  }
  void AddAttributeDetail(SmartPtr<AttributeDetail> const& detail) {
    m_attributeDetails.push_back(detail);
  }

 private:
  std::vector<SmartPtr<AttributeDetail>> m_attributeDetails;
};

/// Describes attributes. Makes its calls as `Operation.h` says.
class LUMO_API GetAttributeDetailsImpl
    : public lumo::BrowseOperation<GetAttributeDetailsImpl, GetAttributeDetailsRequest,
                                   GetAttributeDetailsResponse> {
 public:
  static constexpr char Name[] = "GetAttributeDetails";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void RequestAttributeDetails(SmartPtr<GetAttributeDetailsRequest> const& request,
                               GetAttributeDetailsResponse* response) {
    Call(request, response);
  }
};

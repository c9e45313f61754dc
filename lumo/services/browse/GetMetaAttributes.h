#pragma once

#include <vector>

#include "lumo/services/browse/AttributeMetaAttributes.h"
#include "lumo/services/browse/AttributesRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"

/// Asks for the attributes that describe others.
class LUMO_API GetMetaAttributesRequest : public lumo::AttributesRequest<GetMetaAttributesRequest> {
};

/// Attributes with those that describe them.
class LUMO_API GetMetaAttributesResponse : public lumo::Response<GetMetaAttributesResponse> {
 public:
  GetMetaAttributesResponse() = default;
  explicit GetMetaAttributesResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<AttributeMetaAttributes>>& AccessAttributes() { return m_attributes; }
  std::vector<SmartPtr<AttributeMetaAttributes>> const& AccessAttributes() const {
    return m_attributes;
  }
  void AddAttribute(SmartPtr<AttributeMetaAttributes> const& attribute) {
    m_attributes.push_back(attribute);
  }

 private:
  std::vector<SmartPtr<AttributeMetaAttributes>> m_attributes;
};

/// Lists the attributes that describe others. Makes its calls as `Operation.h` says.
class LUMO_API GetMetaAttributesImpl
    : public lumo::BrowseOperation<GetMetaAttributesImpl, GetMetaAttributesRequest,
                                   GetMetaAttributesResponse> {
 public:
  static constexpr char Name[] = "GetMetaAttributes";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void GetMetaAttributes(SmartPtr<GetMetaAttributesRequest> const& request,
                         GetMetaAttributesResponse* response) {
    Call(request, response);
  }
};

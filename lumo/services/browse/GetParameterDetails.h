#pragma once

#include <vector>

#include "lumo/services/browse/WithParameterDetails.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/AttributeReference.h"
#include "lumo/types/ParameterReference.h"
#include "lumo/types/RecordReference.h"

/// Asks for the definitions of parameters.
class LUMO_API GetParameterDetailsRequest : public lumo::Request<GetParameterDetailsRequest> {
 public:
  std::vector<SmartPtr<ParameterReference>>& AccessParameterReferences() {
    return m_parameterReferences;
  }
  std::vector<SmartPtr<ParameterReference>> const& AccessParameterReferences() const {
    return m_parameterReferences;
  }
  void AddParameterReference(SmartPtr<ParameterReference> const& parameter) {
    m_parameterReferences.push_back(parameter);
  }
  /// The attribute for which the parameters are wanted; not sent when null.
  SmartPtr<AttributeReference> GetFunctionalAttribute() const { return m_functionalAttribute; }
  void SetFunctionalAttribute(SmartPtr<AttributeReference> const& functionalAttribute) {
    m_functionalAttribute = functionalAttribute;
  }
  /// The record for which the parameters are wanted; not sent when null.
  SmartPtr<RecordReference> GetRecordReference() const { return m_recordReference; }
  void SetRecordReference(SmartPtr<RecordReference> const& recordReference) {
    m_recordReference = recordReference;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<ParameterReference>> m_parameterReferences;
  SmartPtr<AttributeReference> m_functionalAttribute;
  SmartPtr<RecordReference> m_recordReference;
};

/// Definitions of parameters.
class LUMO_API GetParameterDetailsResponse
    : public lumo::WithParameterDetails<lumo::Response<GetParameterDetailsResponse>> {
 public:
  GetParameterDetailsResponse() = default;
  explicit GetParameterDetailsResponse(XmlNode<char> const* node) : WithParameterDetails(node) {}
};

/// Describes parameters. Makes its calls as `Operation.h` says.
class LUMO_API GetParameterDetailsImpl
    : public lumo::BrowseOperation<GetParameterDetailsImpl, GetParameterDetailsRequest,
                                   GetParameterDetailsResponse> {
 public:
  static constexpr char Name[] = "GetParameterDetails";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void GetParameterDetails(SmartPtr<GetParameterDetailsRequest> const& request,
                           GetParameterDetailsResponse* response) {
    Call(request, response);
  }
};

#pragma once

#include <vector>

#include "lumo/services/browse/RecordAttribute.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/WithRecordReferences.h"

/// Asks which attributes records have.
class LUMO_API GetRecordAttributesRequest
    : public lumo::WithRecordReferences<lumo::Request<GetRecordAttributesRequest>> {
 public:
  /// Whether attributes that describe others are listed; as the other flags sent only when set.
  bool GetIncludeMetaAttributes() const { return m_includeMetaAttributes; }
  void SetIncludeMetaAttributes(bool includeMetaAttributes) {
    m_includeMetaAttributes = includeMetaAttributes;
  }
  /// Whether attributes without data are listed.
  bool GetIncludeEmptyAttributes() const { return m_includeEmptyAttributes; }
  void SetIncludeEmptyAttributes(bool includeEmptyAttributes) {
    m_includeEmptyAttributes = includeEmptyAttributes;
  }
  /// Whether attributes come with their parameters.
  bool GetIncludeParameterDetails() const { return m_includeParameterDetails; }
  void SetIncludeParameterDetails(bool includeParameterDetails) {
    m_includeParameterDetails = includeParameterDetails;
  }
  /// Whether attributes come with all that is known of their data.
  bool GetIncludeFullAttributeDetail() const { return m_includeFullAttributeDetail; }
  void SetIncludeFullAttributeDetail(bool includeFullAttributeDetail) {
    m_includeFullAttributeDetail = includeFullAttributeDetail;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  bool m_includeMetaAttributes = false;
  bool m_includeEmptyAttributes = false;
  bool m_includeParameterDetails = false;
  bool m_includeFullAttributeDetail = false;
};

/// Attributes of records.
class LUMO_API GetRecordAttributesResponse : public lumo::Response<GetRecordAttributesResponse> {
 public:
  GetRecordAttributesResponse() = default;
  explicit GetRecordAttributesResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<RecordAttribute>>& AccessRecordAttributes() { return m_recordAttributes; }
  std::vector<SmartPtr<RecordAttribute>> const& AccessRecordAttributes() const {
    return m_recordAttributes;
  }
  void AddRecordAttribute(SmartPtr<RecordAttribute> const& attribute) {
    m_recordAttributes.push_back(attribute);
  }

 private:
  std::vector<SmartPtr<RecordAttribute>> m_recordAttributes;
};

/// Lists the attributes of records. Makes its calls as `Operation.h` says.
class LUMO_API GetRecordAttributesImpl
    : public lumo::BrowseOperation<GetRecordAttributesImpl, GetRecordAttributesRequest,
                                   GetRecordAttributesResponse> {
 public:
  static constexpr char Name[] = "GetRecordAttributes";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void RequestRecordAttributes(SmartPtr<GetRecordAttributesRequest> const& request,
                               GetRecordAttributesResponse* response) {
    Call(request, response);
  }
  /// The same for these records, without meta-attributes, empty attributes and details.
  void RequestRecordAttributes(std::vector<SmartPtr<RecordReference>> const& records,
                               GetRecordAttributesResponse* response);
  /// The same with the four flags of the request.
  void RequestRecordAttributes(std::vector<SmartPtr<RecordReference>> const& records,
                               GetRecordAttributesResponse* response, bool includeMeta,
                               bool includeEmpty, bool includeParameterDetails,
                               bool includeFullDetail);
};

#pragma once

#include <vector>

#include "lumo/services/dataimport/AttributeAddress.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/AttributeReference.h"
#include "lumo/types/RecordReference.h"

/// Asks where the data of files and pictures is to be sent.
class LUMO_API GetUploadAddressesRequest : public lumo::Request<GetUploadAddressesRequest> {
 public:
  std::vector<SmartPtr<RecordReference>>& AccessRecords() { return m_records; }
  std::vector<SmartPtr<RecordReference>> const& AccessRecords() const { return m_records; }
  void AddRecord(SmartPtr<RecordReference> const& record) { m_records.push_back(record); }
  std::vector<SmartPtr<AttributeReference>>& AccessAttributes() { return m_attributes; }
  std::vector<SmartPtr<AttributeReference>> const& AccessAttributes() const { return m_attributes; }
  void AddAttributeReference(SmartPtr<AttributeReference> const& attribute) {
    m_attributes.push_back(attribute);
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<RecordReference>> m_records;
  std::vector<SmartPtr<AttributeReference>> m_attributes;
};

/// Upload addresses, record by record.
class LUMO_API GetUploadAddressesResponse : public lumo::Response<GetUploadAddressesResponse> {
 public:
  GetUploadAddressesResponse() = default;
  explicit GetUploadAddressesResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<RecordWithAttributeAddresses>>& AccessRecordsWithAttributeAddresses() {
    return m_recordsWithAttributeAddresses;
  }
  std::vector<SmartPtr<RecordWithAttributeAddresses>> const& AccessRecordsWithAttributeAddresses()
      const {
    return m_recordsWithAttributeAddresses;
  }
  void AddRecordWithAttributeAddresses(SmartPtr<RecordWithAttributeAddresses> const& record) {
    m_recordsWithAttributeAddresses.push_back(record);
  }

 private:
  std::vector<SmartPtr<RecordWithAttributeAddresses>> m_recordsWithAttributeAddresses;
};

/// Finds upload addresses. Makes its calls as `Operation.h` says.
class LUMO_API GetUploadAddressesImpl
    : public lumo::DataImportOperation<GetUploadAddressesImpl, GetUploadAddressesRequest,
                                       GetUploadAddressesResponse> {
 public:
  static constexpr char Name[] = "GetUploadAddresses";
  using ServiceOperation::ServiceOperation;
  std::string GetRootTagName() const override { return "GetUploadAddressesRequest"; }
  /// Fills `response`; a null request is logged and not sent.
  void GetUploadAddresses(SmartPtr<GetUploadAddressesRequest> const& request,
                          GetUploadAddressesResponse* response) {
    Call(request, response);
  }
};

#pragma once

#include <vector>

#include "lumo/services/dataimport/ImportRecord.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/ImportErrorModes.h"
#include "lumo/types/NamedRecord.h"

/// Creates, changes and copies records with their values.
class LUMO_API SetRecordAttributesRequest : public lumo::Request<SetRecordAttributesRequest> {
 public:
  std::vector<SmartPtr<ImportRecord>>& AccessImportRecords() { return m_importRecords; }
  std::vector<SmartPtr<ImportRecord>> const& AccessImportRecords() const { return m_importRecords; }
  void AddImportRecord(SmartPtr<ImportRecord> const& record) { m_importRecords.push_back(record); }
  /// What the server does when a record cannot be imported.
  ImportErrorModes::eImportErrorMode GetImportErrorMode() const { return m_importErrorMode; }
  void SetImportErrorMode(ImportErrorModes::eImportErrorMode importErrorMode) {
    m_importErrorMode = importErrorMode;
  }
  /// After how many records the server commits; not sent when 0 or less.
  int GetCommitThreshold() const { return m_commitThreshold; }
  void SetCommitThreshold(int commitThreshold) { m_commitThreshold = commitThreshold; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<ImportRecord>> m_importRecords;
  ImportErrorModes::eImportErrorMode m_importErrorMode =
      ImportErrorModes::LogAndContinueWherePossible;
  int m_commitThreshold = -1;
};

/// The records that were imported.
class LUMO_API SetRecordAttributesResponse : public lumo::Response<SetRecordAttributesResponse> {
 public:
  SetRecordAttributesResponse() = default;
  explicit SetRecordAttributesResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<NamedRecord>>& AccessRecordsImported() { return m_recordsImported; }
  std::vector<SmartPtr<NamedRecord>> const& AccessRecordsImported() const {
    return m_recordsImported;
  }
  void AddRecordImported(SmartPtr<NamedRecord> const& record) {
    m_recordsImported.push_back(record);
  }

 private:
  std::vector<SmartPtr<NamedRecord>> m_recordsImported;
};

/// Writes records and their values. Makes its calls as `Operation.h` says.
class LUMO_API SetRecordAttributesImpl
    : public lumo::DataImportOperation<SetRecordAttributesImpl, SetRecordAttributesRequest,
                                       SetRecordAttributesResponse> {
 public:
  static constexpr char Name[] = "SetRecordAttributes";
  static constexpr bool Writes = true;
  using ServiceOperation::ServiceOperation;
  std::string GetRootTagName() const override { return "SetRecordAttributesRequest"; }
  /// Fills `response`; a null request is logged and not sent.
  void SetRecordAttributes_Request(SmartPtr<SetRecordAttributesRequest> const& request,
                                   SetRecordAttributesResponse* response) {
    Call(request, response);
  }
};

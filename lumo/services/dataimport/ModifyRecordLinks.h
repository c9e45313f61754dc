#pragma once

#include "lumo/services/dataimport/RecordLinkChanges.h"
#include "lumo/services/dataimport/RecordLinkModifications.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/ImportErrorModes.h"
#include "lumo/types/RecordLinkCheckModes.h"
#include "lumo/types/RecordLinkGroupReference.h"

/// Adds and removes links between records.
class LUMO_API ModifyRecordLinksRequest : public lumo::Request<ModifyRecordLinksRequest> {
 public:
  /// The group of the links; its element is sent empty when null.
  SmartPtr<RecordLinkGroupReference> GetRecordLinkGroupReference() const {
    return m_recordLinkGroup;
  }
  void SetRecordLinkGroupReference(SmartPtr<RecordLinkGroupReference> const& recordLinkGroup) {
    m_recordLinkGroup = recordLinkGroup;
  }
  /// Sent as an empty element when null.
  SmartPtr<RecordLinkModifications> GetRecordLinkModifications() const { return m_modifications; }
  void SetRecordLinkModifications(SmartPtr<RecordLinkModifications> const& modifications) {
    m_modifications = modifications;
  }
  /// What the server does about errors, as a word; "FaultAndRollbackOnAnyError" by default. An
  /// unknown word gives "LogAndContinueWherePossible".
  std::string GetImportErrorMode() const {
    return ImportErrorModes::ImportErrorMode_ToString(m_importErrorMode);
  }
  void SetImportErrorMode(std::string const& mode) {
    m_importErrorMode = ImportErrorModes::ImportErrorMode_FromString(mode);
  }
  /// Which links are checked, as a word; "CheckOnlyForwardLinks" by default and for an unknown
  /// word.
  std::string GetRecordLinkCheckMode() const {
    return RecordLinkCheckModes::RecordLinkCheckMode_ToString(m_recordLinkCheckMode);
  }
  void SetRecordLinkCheckMode(std::string const& mode) {
    m_recordLinkCheckMode = RecordLinkCheckModes::RecordLinkCheckMode_FromString(mode);
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  ImportErrorModes::eImportErrorMode m_importErrorMode =
      ImportErrorModes::FaultAndRollbackOnAnyError;
  RecordLinkCheckModes::eRecordLinkCheckMode m_recordLinkCheckMode =
      RecordLinkCheckModes::CheckOnlyForwardLinks;
  SmartPtr<RecordLinkGroupReference> m_recordLinkGroup;
  SmartPtr<RecordLinkModifications> m_modifications;
};

/// What a call changed.
class LUMO_API ModifyRecordLinksResponse : public lumo::Response<ModifyRecordLinksResponse> {
 public:
  ModifyRecordLinksResponse() = default;
  explicit ModifyRecordLinksResponse(XmlNode<char> const* node);

  /// Null before the call.
  SmartPtr<RecordLinkChanges> GetRecordLinkChanges() const { return m_recordLinkChanges; }
  void SetRecordLinkChanges(SmartPtr<RecordLinkChanges> const& recordLinkChanges) {
    m_recordLinkChanges = recordLinkChanges;
  }

 private:
  SmartPtr<RecordLinkChanges> m_recordLinkChanges;
};

/// Changes links between records. Makes its calls as `Operation.h` says.
class LUMO_API ModifyRecordLinksImpl
    : public lumo::DataImportOperation<ModifyRecordLinksImpl, ModifyRecordLinksRequest,
                                       ModifyRecordLinksResponse> {
 public:
  static constexpr char Name[] = "ModifyRecordLinks";
  static constexpr bool Writes = true;
  using ServiceOperation::ServiceOperation;
  std::string GetRootTagName() const override { return "ModifyRecordLinksRequest"; }
  /// Fills `response`; a null request is logged and not sent.
  void ModifyRecordLinks(SmartPtr<ModifyRecordLinksRequest> const& request,
                         ModifyRecordLinksResponse* response) {
    Call(request, response);
  }
};

#pragma once

#include <string>

#include "lumo/services/dataimport/GetUploadAddresses.h"
#include "lumo/services/dataimport/ModifyRecordLinks.h"
#include "lumo/services/dataimport/SetRecordAttributes.h"

/// Writing of records, values and links.
class LUMO_API DataImportService : public SmartPtrTarget_ts {
 public:
  /// The session must outlive the service and its operations.
  explicit DataImportService(LumoSession* session);
  /// Namespace of the service for an interface version such as "16/01".
  static std::string GetDataImportDefinition(std::string const& version);

  SmartPtr<SetRecordAttributesImpl> SetRecordAttributesImplPtr() const {
    return m_setRecordAttributes;
  }
  SmartPtr<GetUploadAddressesImpl> GetUploadAddressesImplPtr() const {
    return m_getUploadAddresses;
  }
  SmartPtr<ModifyRecordLinksImpl> ModifyRecordLinksImplPtr() const { return m_modifyRecordLinks; }

 private:
  SmartPtr<SetRecordAttributesImpl> m_setRecordAttributes;
  SmartPtr<GetUploadAddressesImpl> m_getUploadAddresses;
  SmartPtr<ModifyRecordLinksImpl> m_modifyRecordLinks;
};

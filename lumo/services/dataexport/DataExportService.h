#pragma once

#include <string>

#include "lumo/services/dataexport/GetRecordAttributesByRef.h"

/// Reading of values.
class LUMO_API DataExportService : public SmartPtrTarget_ts {
 public:
  /// The session must outlive the service and its operations.
  explicit DataExportService(LumoSession* session);
  /// Namespace of the service for an interface version such as "16/01".
  static std::string GetDataExportDefinition(std::string const& version);

  SmartPtr<GetRecordAttributesByRefImpl> GetRecordAttributesByRefImplPtr() const {
    return m_getRecordAttributesByRef;
  }

 private:
  SmartPtr<GetRecordAttributesByRefImpl> m_getRecordAttributesByRef;
};

#pragma once

#include <string>

#include "lumo/session/LumoSession.h"

/// Writing of records, values and links.
class LUMO_API DataImportService : public SmartPtrTarget_ts {
 public:
  /// The session must outlive the service and its operations.
  explicit DataImportService(LumoSession* session);
  /// Namespace of the service for an interface version such as "16/01".
  static std::string GetDataImportDefinition(std::string const& version);
};

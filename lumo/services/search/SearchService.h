#pragma once

#include <string>

#include "lumo/session/LumoSession.h"

/// Text, criteria and record-name searches.
class LUMO_API SearchService : public SmartPtrTarget_ts {
 public:
  /// The session must outlive the service and its operations.
  explicit SearchService(LumoSession* session);
  /// Namespace of the service for an interface version such as "16/01".
  static std::string GetSearchDefinition(std::string const& version);
};

#pragma once

#include <string>

#include "lumo/session/LumoSession.h"

/// The server's exporters.
class LUMO_API EngineeringDataService : public SmartPtrTarget_ts {
 public:
  /// The session must outlive the service and its operations.
  explicit EngineeringDataService(LumoSession* session);
  /// Namespace of the service for an interface version such as "16/01".
  static std::string GetEngineeringDataDefinition(std::string const& version);
};

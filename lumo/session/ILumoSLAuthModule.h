#pragma once

#include "lumo/platform/http/HttpClient.h"

/// How a session logs on.
class LUMO_API ILumoSLAuthModule : public SmartPtrTarget_ts {
 public:
  /// Prepares a new client. What an earlier module did to it stays.
  virtual void ApplyAuthentication(SmartPtr<HttpClient> client) = 0;
};

#pragma once

#include "lumo/session/ILumoSLAuthModule.h"

/// Log-on with the current user's ticket (Negotiate).
class LUMO_API LumoSLAuth_AutoLoginAuth : public ILumoSLAuthModule {
 public:
  /// To be handed to a session.
  static SmartPtr<ILumoSLAuthModule> CreateOne();
  void ApplyAuthentication(SmartPtr<HttpClient> client) override;
};

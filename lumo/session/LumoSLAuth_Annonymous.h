#pragma once

#include "lumo/session/ILumoSLAuthModule.h"

/// No log-on.
class LUMO_API LumoSLAuth_Annonymous : public ILumoSLAuthModule {
 public:
  /// To be handed to a session.
  static SmartPtr<ILumoSLAuthModule> CreateOne();
  void ApplyAuthentication(SmartPtr<HttpClient> client) override;
};

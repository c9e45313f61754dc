#include "lumo/session/LumoSLAuth_AutoLoginAuth.h"

SmartPtr<ILumoSLAuthModule> LumoSLAuth_AutoLoginAuth::CreateOne() {
  return {new LumoSLAuth_AutoLoginAuth()};
}

void LumoSLAuth_AutoLoginAuth::ApplyAuthentication(SmartPtr<HttpClient> client) {
  if (client) client->SetAutologonPolicy(true, false);
}

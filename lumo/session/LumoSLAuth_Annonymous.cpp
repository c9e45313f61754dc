#include "lumo/session/LumoSLAuth_Annonymous.h"

SmartPtr<ILumoSLAuthModule> LumoSLAuth_Annonymous::CreateOne() {
  return {new LumoSLAuth_Annonymous()};
}

void LumoSLAuth_Annonymous::ApplyAuthentication(SmartPtr<HttpClient> /*client*/) {}

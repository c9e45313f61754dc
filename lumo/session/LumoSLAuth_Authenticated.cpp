#include "lumo/session/LumoSLAuth_Authenticated.h"

#include "lumo/platform/core/WideText.h"

SmartPtr<LumoSLAuth_Authenticated> LumoSLAuth_Authenticated::CreateOne() {
  return {new LumoSLAuth_Authenticated()};
}

SmartPtr<ILumoSLAuthModule> LumoSLAuth_Authenticated::CreateOne(std::string const& username,
                                                                std::string const& password) {
  return {new LumoSLAuth_Authenticated(username, password)};
}

SmartPtr<ILumoSLAuthModule> LumoSLAuth_Authenticated::CreateOne(std::string const& domain,
                                                                std::string const& username,
                                                                std::string const& password) {
  return {new LumoSLAuth_Authenticated(domain, username, password)};
}

LumoSLAuth_Authenticated::LumoSLAuth_Authenticated(std::string const& username,
                                                   std::string const& password)
    : LumoSLAuth_Authenticated("", username, password) {}

LumoSLAuth_Authenticated::LumoSLAuth_Authenticated(std::string const& domain,
                                                   std::string const& username,
                                                   std::string const& password) {
  InitialiseCredentials(domain, username, password);
}

void LumoSLAuth_Authenticated::InitialiseCredentials(std::string const& domain,
                                                     std::string const& username,
                                                     std::string const& password) {
  if (domain.empty()) {
    m_userName += username;
  } else {
    m_userName = domain + "\\" + username;
  }
  m_password = password;
}

void LumoSLAuth_Authenticated::ApplyAuthentication(SmartPtr<HttpClient> client) {
  if (client) client->ApplyCredentials(lumo::ToWide(m_userName), lumo::ToWide(m_password));
}

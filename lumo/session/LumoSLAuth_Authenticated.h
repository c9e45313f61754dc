#pragma once

#include <string>

#include "lumo/session/ILumoSLAuthModule.h"

/// Log-on with a user name and a password (Basic, Digest or NTLM, as the server asks). All texts
/// are UTF-8.
class LUMO_API LumoSLAuth_Authenticated : public ILumoSLAuthModule {
 public:
  /// With empty texts, which `InitialiseCredentials` replaces.
  static SmartPtr<LumoSLAuth_Authenticated> CreateOne();
  static SmartPtr<ILumoSLAuthModule> CreateOne(std::string const& username,
                                               std::string const& password);
  static SmartPtr<ILumoSLAuthModule> CreateOne(std::string const& domain,
                                               std::string const& username,
                                               std::string const& password);
  LumoSLAuth_Authenticated() = default;
  LumoSLAuth_Authenticated(std::string const& username, std::string const& password);
  LumoSLAuth_Authenticated(std::string const& domain, std::string const& username,
                           std::string const& password);

  /// Stores `domain\username` and the password. With an empty domain the user name is appended to
  /// the one already stored.
  void InitialiseCredentials(std::string const& domain, std::string const& username,
                             std::string const& password);
  /// User name with its domain.
  std::string const& GetUserName() const { return m_userName; }
  void ApplyAuthentication(SmartPtr<HttpClient> client) override;

 private:
  std::string m_userName;
  std::string m_password;
};

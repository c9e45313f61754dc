#pragma once

#include <string>

#include "lumo/platform/http/HttpClient.h"
#include "lumo/session/ILumoSLAuthModule.h"
#include "lumo/types/HeaderVals.h"

/// The connection to one service layer. Services and operations hold a plain pointer to it, so that
/// it must outlive them. Calls may run on several threads at once; settings must not change
/// meanwhile.
class LUMO_API LumoSession : public SmartPtrTarget_ts {
 public:
  /// `url` is the server's base URL in UTF-8 (invalid bytes are dropped); the services lie below
  /// it. `auth` may be null. `logger` may be null, is not owned, and must outlive the session.
  static SmartPtr<LumoSession> CreateOne(std::string const& url,
                                         SmartPtr<ILumoSLAuthModule> const& auth);
  /// The same with a logger.
  static SmartPtr<LumoSession> CreateOneWithLogger(std::string const& url,
                                                   SmartPtr<ILumoSLAuthModule> const& auth,
                                                   ILogger* logger);
  LumoSession(std::string const& url, SmartPtr<ILumoSLAuthModule> const& auth, ILogger* logger);
  ~LumoSession() override;

  /// The URL as it was given.
  std::wstring GetUrl() const { return m_url; }
  /// Version of the service layer that this library speaks: "16/01".
  std::string GetInterfaceVersion() const { return m_interfaceVersion; }
  /// Base of the vendor's namespaces where a session sets none, ending in "/": what the library was
  /// built with. The base of a session is `GetNamespaceBase`.
  static std::string GetVendorNamespaceBase();
  /// Namespace of the base types in this session, bound to the prefix "zbt" in every request.
  std::string GetZorandBaseTypeDefinition() const;
  /// Makes the calls of this session.
  SmartPtr<HttpClient> HttpClientPtr() const { return m_client; }
  /// Null for none.
  ILogger* GetLogger() const { return m_logger; }
  /// Null for none.
  SmartPtr<ILumoSLAuthModule> GetAuthenticationModule() const { return m_authentication; }

  /// Makes the client, once; the constructor has called it already.
  void CreateHttpClientPtr();
  /// Replaces the module and applies the new one; the effect of the old one is not undone. The
  /// module that is held already is not applied again.
  void ApplyAuthenticationModule(SmartPtr<ILumoSLAuthModule> const& module);
  /// Longest name resolution, connection, silence while sending and silence while receiving, in ms;
  /// 0 waits for ever. Default 10000, 600000, 300000, 300000.
  void SetTimeouts(int resolve, int connect, int send, int receive);

  /// Whether calls are made with a reader's rights; sent only when `True`. Operation objects copy
  /// it when they are made.
  HeaderVals::eOptionalBool GetActAsReadUser() const { return m_actAsReadUser; }
  void SetActAsReadUser(HeaderVals::eOptionalBool actAsReadUser) {
    m_actAsReadUser = actAsReadUser;
  }
  /// Base of the vendor's namespaces in this session, `GetVendorNamespaceBase()` by default. A text
  /// that does not end in "/" gets one; the empty text brings the default back. Services copy it
  /// when they are made, so that sessions with servers of several vendors live in one process.
  std::string const& GetNamespaceBase() const { return m_namespaceBase; }
  /// See `GetNamespaceBase`.
  void SetVendorNamespaceBase(std::string const& base);
  /// Name under which the application shows at the server; not sent when empty. Operation objects
  /// copy it into the SOAP header when they are made; the HTTP header follows at once.
  std::string const& GetApplicationName() const { return m_applicationName; }
  void SetApplicationName(std::string const& name) { m_applicationName = name; }

  /// Sets the verb and the headers that every call carries; does nothing with a null message.
  void FillRequestHeaders(SmartPtr<HttpMessage> const& message,
                          std::string const& soapAction) const;
  /// Whether the server answers with success at its root. `status`, which may be null, receives
  /// what it answered: `eHttpStatusCode_Unknown` when nothing.
  bool ConnectionIsValid(eHttpStatusCode* status) const;

 private:
  std::string m_interfaceVersion;
  std::string m_namespaceBase;
  std::wstring m_url;
  SmartPtr<HttpClient> m_client;
  SmartPtr<ILumoSLAuthModule> m_authentication;
  ILogger* m_logger;
  HeaderVals::eOptionalBool m_actAsReadUser = HeaderVals::NotSet;
  std::string m_applicationName;
};

#include "lumo/session/LumoSession.h"

#include <new>

#include "lumo/platform/core/Time.h"
#include "lumo/platform/core/WideText.h"
#include "lumo/xml/Namespaces.h"

SmartPtr<LumoSession> LumoSession::CreateOne(std::string const& url,
                                             SmartPtr<ILumoSLAuthModule> const& auth) {
  return CreateOneWithLogger(url, auth, nullptr);
}

SmartPtr<LumoSession> LumoSession::CreateOneWithLogger(std::string const& url,
                                                       SmartPtr<ILumoSLAuthModule> const& auth,
                                                       ILogger* logger) {
  return {new LumoSession(url, auth, logger)};
}

LumoSession::LumoSession(std::string const& url, SmartPtr<ILumoSLAuthModule> const& auth,
                         ILogger* logger)
    : m_interfaceVersion("16/01"),
      m_namespaceBase(GetVendorNamespaceBase()),
      m_url(lumo::ToWide(url)),
      m_authentication(auth),
      m_logger(logger) {
  CreateHttpClientPtr();
  Time::StaticInit();
}

LumoSession::~LumoSession() { Time::StaticShutdown(); }

std::string LumoSession::GetVendorNamespaceBase() {
  return std::string(lumo::VendorNamespaceBase());
}

std::string LumoSession::GetZorandBaseTypeDefinition() const {
  return m_namespaceBase + m_interfaceVersion + "/ZorandBaseTypes";
}

void LumoSession::SetVendorNamespaceBase(std::string const& base) {
  m_namespaceBase = base.empty() ? GetVendorNamespaceBase() : base;
  if (m_namespaceBase.back() != '/') m_namespaceBase += '/';
}

void LumoSession::CreateHttpClientPtr() {
  if (m_client) return;
  m_client = HttpClient::CreateOneFromURL(nullptr, m_url, L"", L"", false);
  if (m_client && m_authentication) m_authentication->ApplyAuthentication(m_client);
  SetTimeouts(10000, 600000, 300000, 300000);
}

void LumoSession::ApplyAuthenticationModule(SmartPtr<ILumoSLAuthModule> const& module) {
  if (module == m_authentication) return;
  m_authentication = module;
  if (m_client && m_authentication) m_authentication->ApplyAuthentication(m_client);
}

void LumoSession::SetTimeouts(int resolve, int connect, int send, int receive) {
  if (m_client) m_client->SetTimeouts(resolve, connect, send, receive);
}

void LumoSession::FillRequestHeaders(SmartPtr<HttpMessage> const& message,
                                     std::string const& soapAction) const {
  if (!message) return;
  message->SetRequestVerb(eHttpVerb_Post);
  message->AddRequestHeader("Accept", eHttpMimeType_ToString(eHttpMimeType_TextXml));
  message->AddRequestHeader("Connection", "keep-alive");
  message->AddRequestHeader("Content-Type", "text/xml;charset=UTF-8");
  message->AddRequestHeader("SOAPAction", soapAction);
}

bool LumoSession::ConnectionIsValid(eHttpStatusCode* status) const {
  if (!m_client) return false;
  eHttpStatusCode answer = eHttpStatusCode_Unknown;
  try {
    auto const message = HttpMessage::CreateOne();
    if (m_client->SendRequest(L"/", eHttpVerb_Get, message) == 0) answer = message->GetStatus();
  } catch (std::bad_alloc const&) {  // as good as no answer
  }
  if (status != nullptr) *status = answer;
  return answer == eHttpStatusCode_OK;
}

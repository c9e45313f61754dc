#include "lumo/platform/http/HttpClient.h"

#include <algorithm>
#include <exception>
#include <new>
#include <tuple>
#include <utility>

#include "lumo/platform/core/WideText.h"
#include "lumo/platform/http/CurlTransport.h"

namespace {

constexpr int kLocalFailure = -1;

HttpTransportFactory& Factory() {
  static HttpTransportFactory factory;
  return factory;
}

}  // namespace

SmartPtr<HttpClient> HttpClient::CreateOneFromURL(ILogger* /*logging*/, std::wstring const& url,
                                                  std::wstring const& /*reserved1*/,
                                                  std::wstring const& /*reserved2*/,
                                                  bool /*reserved3*/) {
  SmartPtr<HttpTransport> const transport = Factory() ? Factory()() : lumo::MakeCurlTransport();
  return transport ? SmartPtr<HttpClient>(new HttpClient(transport, url)) : SmartPtr<HttpClient>();
}

void HttpClient::SetTransportFactory(HttpTransportFactory factory) {
  Factory() = std::move(factory);
}

HttpClient::HttpClient(SmartPtr<HttpTransport> const& transport, std::wstring const& url)
    : m_transport(transport), m_options(std::make_shared<HttpOptions const>()) {
  std::string base = lumo::ToUtf8(url);
  base.erase(base.find_last_not_of('/') + 1);
  ChangeOptions([&base](HttpOptions& options) { options.baseUrl = base; });
}

/// Options are never changed in place: the transport may still hold them.
template <class Change>
void HttpClient::ChangeOptions(Change change) {
  auto changed = std::make_shared<HttpOptions>(*m_options);
  change(*changed);
  m_options = std::move(changed);
  m_transport->CloseIdle();
}

void HttpClient::SetTimeouts(int resolve, int connect, int send, int receive) {
  auto const limits = [](auto& options) {
    return std::tie(options.resolveTimeout, options.connectTimeout, options.sendTimeout,
                    options.receiveTimeout);
  };
  auto const wanted = std::make_tuple(std::max(resolve, 0), std::max(connect, 0), std::max(send, 0),
                                      std::max(receive, 0));
  if (limits(*m_options) == wanted) return;
  ChangeOptions([&](HttpOptions& options) { limits(options) = wanted; });
}

void HttpClient::ApplyCredentials(std::wstring const& user, std::wstring const& password) {
  ChangeOptions([&](HttpOptions& options) {
    options.hasCredentials = true;
    options.user = lumo::ToUtf8(user);
    options.password = lumo::ToUtf8(password);
  });
}

void HttpClient::SetAutologonPolicy(bool autologon, bool /*reserved*/) {
  ChangeOptions([=](HttpOptions& options) { options.autologon = autologon; });
}

void HttpClient::SetTransportSettings(HttpTransportSettings const& settings) {
  ChangeOptions([&settings](HttpOptions& options) { options.settings = settings; });
}

int HttpClient::SendRequest(std::wstring const& path, eHttpVerb verb,
                            SmartPtr<HttpMessage> const& message) {
  if (!message) return kLocalFailure;
  try {
    message->ForgetExchange();
    int const code = Carry(path, verb, *message);
    bool const isUnnamed = code != 0 && message->GetReport()->failure == eHttpFailure_None;
    if (isUnnamed) message->SetFailure(eHttpFailure_Other, message->GetTransportError());
    return code;
  } catch (std::bad_alloc const&) {
    message->SetFailure(eHttpFailure_OutOfMemory, "out of memory");  // too short to need any
  }
  message->GetReport()->errorNumber = kLocalFailure;
  return kLocalFailure;
}

/// Lets nothing out but `std::bad_alloc`.
int HttpClient::Carry(std::wstring const& path, eHttpVerb verb, HttpMessage& message) {
  try {
    return m_transport->Send(m_options, lumo::ToUtf8(path), verb, message);
  } catch (std::bad_alloc const&) {
    throw;
  } catch (std::exception const& error) {  // of a transport that was set, mostly
    message.SetFailure(eHttpFailure_Other, error.what());
  }
  message.GetReport()->errorNumber = kLocalFailure;
  return kLocalFailure;
}

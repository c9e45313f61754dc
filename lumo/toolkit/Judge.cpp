#include "lumo/toolkit/Judge.h"

#include <strings.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace lumo {
namespace {

constexpr int kOk = 200;
constexpr std::size_t kBodyStart = 2048;

bool Has(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// One line without control characters.
std::string OneLine(std::string_view text) {
  std::string line;
  for (char const c : text) {
    bool const isBlank = static_cast<unsigned char>(c) <= ' ' || c == '\x7f';
    if (isBlank && (line.empty() || line.back() == ' ')) continue;
    line += isBlank ? ' ' : c;
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

struct Verdict {
  ErrorCode code = ErrorCode::NotUnderstood;
  std::string text = {};
  Hint hint = {};
};

/// The kind of a failed exchange, by the words of the transport.
ErrorCode KindOf(std::string_view error) {
  if (Has(error, "resolve proxy") || Has(error, "CONNECT tunnel") || Has(error, "proxy")) {
    return ErrorCode::Proxy;
  }
  if (Has(error, "timed out") || Has(error, "Timeout")) return ErrorCode::Timeout;
  if (Has(error, "resolve host")) return ErrorCode::NameResolution;
  for (char const* const word : {"SSL", "TLS", "certificate", "CAfile", "0A000"}) {
    if (Has(error, word)) return ErrorCode::Tls;
  }
  return ErrorCode::Connection;
}

std::string HostOf(std::string const& url) {
  std::size_t const scheme = url.find("://");
  std::size_t const begin = scheme == std::string::npos ? 0 : scheme + 3;
  return url.substr(begin, url.find_first_of("/?#", begin) - begin);
}

std::string UserOf(ConnectOptions const& options) {
  auto const* const password = std::get_if<Password>(&options.credentials);
  return password == nullptr ? std::string() : password->user;
}

Hint LogOnHint(ConnectOptions const& options) {
  if (std::holds_alternative<Ticket>(options.credentials)) return {HintCode::CheckTicket, {""}};
  std::string user = UserOf(options);
  if (user.empty()) return {HintCode::LogOn};
  return {HintCode::CheckPassword, {std::move(user)}};
}

Verdict OfNoReply(std::string const& transportText, std::string const& url) {
  ErrorCode const code = KindOf(transportText);
  Verdict verdict = {code, "no reply from " + url + ": " + OneLine(transportText)};
  if (code == ErrorCode::NameResolution) verdict.hint = {HintCode::CheckName, {HostOf(url)}};
  return verdict;
}

std::string Header(HttpMessage const& exchange, char const* name) {
  for (auto const& [key, value] : exchange.AccessResponseHeaders()) {
    if (strcasecmp(key.c_str(), name) == 0) return value;
  }
  return {};
}

Verdict OfStatus(int status, HttpMessage const& exchange, std::string const& url,
                 ConnectOptions const& options) {
  std::string const answers = "the server answers with status " + std::to_string(status);
  switch (status) {
    case 401:
      return {ErrorCode::Unauthenticated, "the server refuses the log-on (status 401)",
              LogOnHint(options)};
    case 403:
      return {ErrorCode::PermissionDenied,
              "the server does not permit this (status 403)",
              {HintCode::AskForRights, {UserOf(options)}}};
    case 407: return {ErrorCode::Unauthenticated, "the proxy refuses the log-on (status 407)"};
    case 408: return {ErrorCode::Timeout, answers};
    case 413:
      return {ErrorCode::ServerFault,
              "the request is too large for the server (status 413)",
              {HintCode::SendLess}};
    case 429: return {ErrorCode::RateLimited, "the server has too many calls (status 429)"};
    case 502:
    case 503:
    case 504:
      return {ErrorCode::Unavailable,
              "the server is not available now (status " + std::to_string(status) + ")"};
    default: break;
  }
  if (status >= 300 && status < 400) {
    std::string location = Header(exchange, "Location");
    return {ErrorCode::NotUnderstood,
            "the server sends its callers to " + location,
            {HintCode::FollowRedirect, {std::move(location)}}};
  }
  if (status >= 400 && status < 500) {
    return {ErrorCode::NotUnderstood, answers, {HintCode::CheckAddress, {url}}};
  }
  return {ErrorCode::ServerFault, answers};
}

/// Name of the first element in the envelope's body, without its prefix; empty when there is none.
std::string_view BodyElement(std::string_view reply) {
  std::size_t const body = reply.find(":Body");
  std::size_t const begin = body == std::string_view::npos ? body : reply.find('<', body);
  if (begin == std::string_view::npos) return {};
  std::string_view name = reply.substr(begin + 1);
  name = name.substr(0, name.find_first_of(" />\t\r\n"));
  return name.substr(name.find(':') + 1);
}

bool IsResponse(std::string_view reply) {
  constexpr std::string_view kResponse = "Response";
  std::string_view const name = BodyElement(reply);
  return name == "text" || (name.size() > kResponse.size() &&
                            name.substr(name.size() - kResponse.size()) == kResponse);
}

}  // namespace

std::optional<Error> Judge(SmartPtr<ServiceLayerResponse> const& outcome,
                           std::string const& badValue, std::string const& url,
                           ConnectOptions const& options) {
  if (!outcome || !outcome->GetExchange()) {
    return Error(ErrorCode::InvalidArgument, "the call has no request");
  }
  HttpMessage const& exchange = *outcome->GetExchange();
  std::string_view const reply = exchange.GetResponseBuffer()
                                     ? std::string_view(exchange.GetResponseBuffer()->GetBytes())
                                     : std::string_view();
  int const status = exchange.GetStatusCode();
  std::string const fault = outcome->GetErrorMessage();
  Verdict verdict;
  if (!exchange.GetResponseBuffer()) {
    verdict = OfNoReply(exchange.GetTransportError(), url);
  } else if (status != kOk && !fault.empty() && (status == 500 || status < 400)) {
    verdict = {ErrorCode::ServerFault, "the server says: " + OneLine(fault)};
  } else if (status != kOk) {
    verdict = OfStatus(status, exchange, url, options);
  } else if (!badValue.empty()) {
    verdict = {ErrorCode::NotUnderstood, "the reply holds a value that is none: " + badValue};
  } else if (!IsResponse(reply)) {
    verdict = {ErrorCode::NotUnderstood,
               reply.empty() ? "the reply is empty"
                             : "the reply holds no response: " + OneLine(reply.substr(0, 80)),
               {HintCode::CheckAddress, {url}}};
  } else {
    return std::nullopt;
  }
  ErrorDetails details;
  details.operation = outcome->GetOperationName();
  details.httpStatus = status;
  details.transportText = exchange.GetTransportError();
  if (verdict.code == ErrorCode::NotUnderstood) details.bodyStart = reply.substr(0, kBodyStart);
  details.hint = std::move(verdict.hint);
  return Error(verdict.code, verdict.text, std::move(details));
}

}  // namespace lumo

#include "lumo/toolkit/Judge.h"

#include <curl/curl.h>

#include <algorithm>
#include <charconv>
#include <ctime>
#include <string_view>
#include <utility>

#include "lumo/toolkit/Url.h"
#include "lumo/toolkit/Verdict.h"

namespace lumo {
namespace {

constexpr int kBadGateway = 502;
constexpr int kGatewayTimeout = 504;
constexpr std::size_t kBodyStart = 2048;
constexpr long long kLongestWait = 366LL * 86400;

std::string_view ReplyOf(HttpMessage const& exchange) {
  auto const reply = exchange.GetResponseBuffer();
  return reply ? std::string_view(reply->GetBytes()) : std::string_view();
}

std::string UserOf(ConnectOptions const& options) {
  auto const* const password = std::get_if<Password>(&options.credentials);
  return password == nullptr ? std::string() : password->user;
}

/// What servers say of a call in plain HTTP to a port for https.
constexpr std::string_view kWantsHttps[] = {"plain HTTP request was sent to HTTPS port",
                                            "speaking plain HTTP to an SSL-enabled server port",
                                            "combination of host and port requires TLS",
                                            "sent an HTTP request to an HTTPS server"};
/// What they say of one without a certificate.
constexpr std::string_view kWantsCertificate[] = {"SSL certificate", "client certificate",
                                                  "Client certificate", "Client Certificate"};
/// Faults of a server that knows other actions, those of other namespaces among them.
constexpr std::string_view kUnknownAction[] = {"ActionNotSupported", "ContractFilter mismatch"};

std::optional<Verdict> VerdictOnTlsWish(HttpMessage const& exchange, std::string const& url,
                                        ConnectOptions const& options) {
  std::string_view const reply = ReplyOf(exchange);
  if (HasAny(reply, kWantsHttps)) {
    return Verdict{ErrorCode::Tls, "the server wants https", {HintCode::UseHttps, {url}}};
  }
  if (HasAny(reply, kWantsCertificate)) {
    return Verdict{ErrorCode::Tls,
                   "the server wants a client's certificate",
                   {HintCode::GiveCertificate, {options.certificateFile}}};
  }
  return std::nullopt;
}

Verdict OfRedirect(HttpMessage const& exchange, std::string const& url) {
  std::string location = HeaderOf(exchange.AccessResponseHeaders(), "Location");
  location.resize(std::min(location.size(), location.find_first_of("?#")));  // may hold a token
  std::string text = "the server sends its callers to " + OneLine(location) + " (status " +
                     std::to_string(exchange.GetStatusCode()) + ")";
  bool const wantsHttps = ServerOf(url).compare(0, 5, "http:") == 0 &&
                          ServerOf(location).compare(0, 6, "https:") == 0 &&
                          HostOf(location) == HostOf(url);
  if (wantsHttps) return {ErrorCode::Tls, std::move(text), {HintCode::UseHttps, {url}}};
  return {
      ErrorCode::NotUnderstood, std::move(text), {HintCode::FollowRedirect, {std::move(location)}}};
}

Verdict OfStatus(int status, HttpMessage const& exchange, std::string const& url,
                 ConnectOptions const& options) {
  std::string const answers = "the server answers with status " + std::to_string(status);
  switch (status) {
    case 400:
    case 403:
      if (auto verdict = VerdictOnTlsWish(exchange, url, options)) return *verdict;
      if (status == 400) break;
      return {ErrorCode::PermissionDenied,
              "the server does not permit this (status 403)",
              {HintCode::AskForRights, {UserOf(options)}}};
    case 401: return VerdictOnLogOn(*exchange.GetReport(), url, options);
    case 407: return VerdictOnProxyLogOn(*exchange.GetReport(), options);
    case 408: return {ErrorCode::Timeout, answers, {HintCode::TryLater}};
    case 413:
      return {ErrorCode::ServerFault,
              "the request is too large for the server (status 413)",
              {HintCode::SendLess}};
    case 429:
      return {ErrorCode::RateLimited,
              "the server has too many calls (status 429)",
              {HintCode::TryLater}};
    case 502:
    case 503:
    case 504:
      return {ErrorCode::Unavailable,
              "the server is not available now (status " + std::to_string(status) + ")",
              {HintCode::TryLater}};
    default: break;
  }
  if (status >= 300 && status < 400) return OfRedirect(exchange, url);
  if (status >= 400 && status < 500) {
    return {ErrorCode::NotUnderstood, answers, {HintCode::CheckAddress, {url}}};
  }
  return {ErrorCode::ServerFault, answers};
}

/// Whether a reply is not even an envelope.
bool IsForeign(HttpMessage const& exchange) {
  return !Has(ReplyOf(exchange).substr(0, kBodyStart), "Envelope");
}

/// What the error text says behind the operation's name.
std::string TextOf(ServiceLayerResponse const& outcome) {
  std::string const text = outcome.ErrorText();
  std::string const name = outcome.GetOperationName() + ": ";
  return text.compare(0, name.size(), name) == 0 ? text.substr(name.size()) : text;
}

Verdict VerdictOn(ServiceLayerResponse const& outcome, HttpMessage const& exchange,
                  std::string const& url, ConnectOptions const& options) {
  switch (outcome.GetOutcome()) {
    case CallOutcomes::NoReply: return VerdictOnNoReply(*exchange.GetReport(), url, options);
    case CallOutcomes::OtherStatus:
      return OfStatus(exchange.GetStatusCode(), exchange, url, options);
    case CallOutcomes::Fault:
    case CallOutcomes::FaultInSuccess: {
      // A gate in front of the server may word its refusal as a fault.
      Verdict verdict = OfStatus(exchange.GetStatusCode(), exchange, url, options);
      if (verdict.code == ErrorCode::NotUnderstood) verdict = {ErrorCode::ServerFault};
      verdict.text = "the server says: " + OneLine(outcome.GetFaultText());
      if (HasAny(outcome.GetFaultCode() + outcome.GetFaultText(), kUnknownAction)) {
        verdict.hint = {HintCode::CheckNamespace, {options.vendorNamespace}};
      }
      return verdict;
    }
    default: break;
  }
  Verdict verdict = {ErrorCode::NotUnderstood, TextOf(outcome)};
  if (IsForeign(exchange)) verdict.hint = {HintCode::CheckAddress, {url}};
  return verdict;
}

/// Whether the server may have acted on a request to which it gave no answer of its own.
bool IsOutcomeOpen(HttpMessage const& exchange) {
  if (exchange.GetResponseBuffer()) {
    int const status = exchange.GetStatusCode();
    return status == kBadGateway || status == kGatewayTimeout;
  }
  HttpReport const& report = *exchange.GetReport();
  return report.phase >= eHttpPhase_Sending && report.failure != eHttpFailure_Tls;
}

}  // namespace

bool FailedTry::IsOverload() const {
  return error.Code() == ErrorCode::RateLimited || error.Code() == ErrorCode::Unavailable ||
         error.Code() == ErrorCode::Timeout;
}

std::optional<std::chrono::seconds> RetryAfterOf(HttpMessage const& exchange) {
  std::string const text = HeaderOf(exchange.AccessResponseHeaders(), "Retry-After");
  if (text.empty()) return std::nullopt;
  long long wait = 0;
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), wait);
  bool const isNumber = error == std::errc() && end == text.data() + text.size();
  if (error == std::errc::result_out_of_range) wait = kLongestWait;
  if (!isNumber && error != std::errc::result_out_of_range) {
    std::time_t const then = curl_getdate(text.c_str(), nullptr);
    std::time_t const now =
        curl_getdate(HeaderOf(exchange.AccessResponseHeaders(), "Date").c_str(), nullptr);
    if (then == -1) return std::nullopt;
    wait = then - (now == -1 ? std::time(nullptr) : now);
  }
  return std::chrono::seconds(std::clamp(wait, 0LL, kLongestWait));
}

std::optional<FailedTry> Judge(SmartPtr<ServiceLayerResponse> const& outcome,
                               std::string const& url, ConnectOptions const& options) {
  if (!outcome || !outcome->GetExchange()) {
    return FailedTry{Error(ErrorCode::InvalidArgument, "the call has no request"), true};
  }
  if (outcome->Succeeded()) return std::nullopt;
  HttpMessage const& exchange = *outcome->GetExchange();
  Verdict verdict = VerdictOn(*outcome, exchange, url, options);
  ErrorDetails details;
  details.operation = outcome->GetOperationName();
  details.httpStatus = exchange.GetStatusCode();
  details.faultCode = outcome->GetFaultCode();
  details.faultDetail = outcome->GetFaultDetail();
  HttpReport const& report = *exchange.GetReport();
  details.transportText = report.error.empty() ? report.logOn.trouble : report.error;
  details.offeredLogOns = report.logOn.offered;
  bool const hasReply = bool(exchange.GetResponseBuffer());
  if (outcome->GetFaultText().empty()) details.bodyStart = ReplyOf(exchange).substr(0, kBodyStart);
  details.hint = std::move(verdict.hint);

  FailedTry failed{Error(verdict.code, verdict.text, std::move(details))};
  failed.hasReply = hasReply;
  failed.isOutcomeOpen = IsOutcomeOpen(exchange);
  if (hasReply && failed.error.IsRetryable()) failed.retryAfter = RetryAfterOf(exchange);
  return failed;
}

}  // namespace lumo

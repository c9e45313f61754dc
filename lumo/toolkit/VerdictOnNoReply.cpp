#include <curl/curl.h>

#include <utility>

#include "lumo/toolkit/Url.h"
#include "lumo/toolkit/Verdict.h"

namespace lumo {
namespace {

constexpr int kProxyLogOn = 407;

/// The reasons of OpenSSL and libcurl, as parts of their words.
constexpr std::string_view kExpired = "expired";
constexpr std::string_view kOtherHosts[] = {"does not match", "no alternative certificate"};
constexpr std::string_view kNotTls = "wrong version number";
constexpr std::string_view kWantsCertificate[] = {"certificate required", "handshake failure",
                                                  "bad certificate"};

template <std::size_t count>
bool HasAny(std::string_view text, std::string_view const (&parts)[count]) {
  for (std::string_view const part : parts) {
    if (Has(text, part)) return true;
  }
  return false;
}

Hint TlsHint(HttpReport const& report, std::string const& url, ConnectOptions const& options) {
  std::string_view const words = report.error;
  switch (report.errorNumber) {
    case CURLE_SSL_CACERT_BADFILE: return {HintCode::CheckFile, {options.caFile}};
    case CURLE_SSL_CERTPROBLEM: return {HintCode::CheckFile, {options.certificateFile}};
    case CURLE_PEER_FAILED_VERIFICATION:
      if (Has(words, kExpired)) return {HintCode::RenewCertificate, {HostOf(url)}};
      if (HasAny(words, kOtherHosts)) return {HintCode::CheckHost, {HostOf(url)}};
      return {HintCode::TrustAuthority, {options.caFile}};
    default: break;
  }
  if (Has(words, kNotTls)) return {HintCode::UseHttp, {url}};
  if (HasAny(words, kWantsCertificate)) return {HintCode::GiveCertificate};
  return {};
}

/// "the proxy http://proxy:3128 (https_proxy)".
std::string ProxyText(HttpReport const& report) {
  std::string const variable =
      report.proxyVariable.empty() ? "" : " (" + report.proxyVariable + ")";
  return "the proxy " + report.proxy + variable;
}

}  // namespace

bool Has(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

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

Verdict VerdictOnProxyLogOn(HttpReport const& report) {
  Hint hint{HintCode::LogOnToProxy, {report.proxy}};
  for (std::string const& method : report.logOn.offeredByProxy) hint.arguments.push_back(method);
  return {ErrorCode::Unauthenticated, ProxyText(report) + " refuses the log-on (status 407)",
          std::move(hint)};
}

Verdict VerdictOnNoReply(HttpReport const& report, std::string const& url,
                         ConnectOptions const& options) {
  std::string const words = OneLine(report.error);
  std::string const text = "no reply from " + url + ": " + words;
  switch (report.failure) {
    case eHttpFailure_Setup: return {ErrorCode::InvalidArgument, text, {}};
    case eHttpFailure_NameResolution:
      return {ErrorCode::NameResolution, text, {HintCode::CheckName, {HostOf(url)}}};
    case eHttpFailure_TimeOut: return {ErrorCode::Timeout, text, {}};
    case eHttpFailure_Tls: return {ErrorCode::Tls, text, TlsHint(report, url, options)};
    case eHttpFailure_Proxy:
      if (report.proxyStatus == kProxyLogOn) return VerdictOnProxyLogOn(report);
      return {ErrorCode::Proxy,
              "no reply from " + url + " through " + ProxyText(report) + ": " + words,
              {HintCode::CheckProxy, {report.proxy, report.proxyVariable}}};
    case eHttpFailure_Aborted: return {ErrorCode::Cancelled, "cancelled", {}};
    case eHttpFailure_TooLarge:
    case eHttpFailure_NotUnderstood:
    case eHttpFailure_OutOfMemory: return {ErrorCode::NotUnderstood, text, {}};
    default: return {ErrorCode::Connection, text, {}};
  }
}

}  // namespace lumo

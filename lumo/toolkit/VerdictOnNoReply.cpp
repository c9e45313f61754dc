#include <curl/curl.h>

#include <ctime>
#include <utility>

#include "lumo/toolkit/Numbers.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/Url.h"
#include "lumo/toolkit/Verdict.h"

namespace lumo {
namespace {

constexpr int kProxyLogOn = 407;
constexpr int kForbidden = 403;
constexpr int kFirstServerFailure = 500;

/// OpenSSL's numbers of what is wrong with a certificate.
constexpr int kNotYetValid = 9;
constexpr int kExpired = 10;

/// What OpenSSL and libcurl say where they have no number of its own for it.
constexpr std::string_view kOtherHosts[] = {"does not match", "no alternative certificate"};
constexpr std::string_view kNotTls[] = {"wrong version number", "packet length too long",
                                        "http request"};
constexpr std::string_view kWantsCertificate[] = {"certificate required", "handshake failure",
                                                  "bad certificate",      "unknown ca",
                                                  "certificate expired",  "certificate unknown"};

/// The hint, with a file or folder and who chose it.
Hint WithFile(HintCode code, std::string const& file, char const* key,
              ConnectOptions const& options) {
  auto const origin = options.origins.find(key);
  return {code, {file, origin == options.origins.end() ? "" : origin->second}};
}

Hint AuthorityHint(HintCode code, ConnectOptions const& options) {
  if (options.caFile.empty()) return WithFile(code, options.caFolder, "ca-folder", options);
  return WithFile(code, options.caFile, "ca-file", options);
}

Hint CertificateFileHint(std::string_view words, ConnectOptions const& options) {
  if (!options.keyFile.empty() && Has(words, options.keyFile)) {
    return WithFile(HintCode::CheckFile, options.keyFile, "key-file", options);
  }
  return WithFile(HintCode::CheckFile, options.certificateFile, "certificate-file", options);
}

Hint TlsHint(HttpReport const& report, std::string const& url, ConnectOptions const& options) {
  std::string_view const words = report.error;
  switch (report.errorNumber) {
    case CURLE_SSL_CACERT_BADFILE: return AuthorityHint(HintCode::CheckFile, options);
    case CURLE_SSL_CERTPROBLEM: return CertificateFileHint(words, options);
    case CURLE_PEER_FAILED_VERIFICATION:
      if (report.certificateVerdict == kNotYetValid) return {HintCode::SetClock, {""}};
      if (report.certificateVerdict == kExpired) {
        return {HintCode::RenewCertificate, {HostOf(url)}};
      }
      if (HasAny(words, kOtherHosts)) return {HintCode::CheckHost, {HostOf(url)}};
      return AuthorityHint(HintCode::TrustAuthority, options);
    default: break;
  }
  if (HasAny(words, kNotTls)) return {HintCode::UseHttp, {url}};
  if (HasAny(words, kWantsCertificate)) {
    return {HintCode::GiveCertificate, {options.certificateFile}};
  }
  return {};
}

/// Which file it is about and who chose that, where the words do not say it.
std::string FileText(Hint const& hint, std::string_view words) {
  bool const hasFile = hint.arguments.size() == 2 && !hint.arguments[0].empty();
  if (!hasFile) return {};
  std::string const& file = hint.arguments[0];
  std::string const& who = hint.arguments[1];
  std::string const origin = who.empty() ? "" : ", chosen by " + who;
  if (hint.code == HintCode::TrustAuthority) return " (only " + file + " is trusted" + origin + ")";
  if (!Has(words, file)) return " (" + file + origin + ")";
  return who.empty() ? "" : " (chosen by " + who + ")";
}

Verdict OfTls(HttpReport const& report, std::string const& url, std::string const& text,
              ConnectOptions const& options) {
  Hint hint = TlsHint(report, url, options);
  std::string const file = FileText(hint, text);
  return {ErrorCode::Tls, text + file, std::move(hint)};
}

Verdict OfProxy(HttpReport const& report, std::string const& url, ConnectOptions const& options) {
  if (report.proxyStatus == kProxyLogOn) return VerdictOnProxyLogOn(report, options);
  Verdict verdict{ErrorCode::Proxy,
                  "no reply from " + url + " through the proxy " + ProxyText(report, options) +
                      ": " + OneLine(report.error),
                  {}};
  std::string origin = report.proxyVariable;
  auto const chosen = options.origins.find("proxy");
  if (origin.empty() && chosen != options.origins.end()) origin = chosen->second;
  if (report.proxyStatus == kForbidden) {
    verdict.hint = {HintCode::AskProxy, {report.proxy, HostOf(url)}};
  } else if (report.proxyStatus >= kFirstServerFailure) {
    verdict.hint = {HintCode::CheckName, {HostOf(url)}};
  } else {
    verdict.hint = {HintCode::CheckProxy, {report.proxy, std::move(origin)}};
  }
  return verdict;
}

/// A server that took the call and thinks is another case than one that cannot be reached.
Hint TimeoutHint(HttpReport const& report, std::string const& url, ConnectOptions const& options) {
  switch (report.phase) {
    case eHttpPhase_None:
    case eHttpPhase_Resolving: return {HintCode::CheckName, {HostOf(url)}};
    case eHttpPhase_Connecting: return {HintCode::CheckConnection, {url}};
    default:
      return {HintCode::WaitLonger, {TextOf(std::chrono::duration<double>(options.stall).count())}};
  }
}

/// A reply that is not HTTP is often one in TLS.
Hint ForeignHint(HttpReport const& report, std::string const& url) {
  bool const isPlain = EqualIgnoringCase(url.substr(0, 5), "http:");
  if (report.failure != eHttpFailure_NotUnderstood) return {};
  return {isPlain ? HintCode::UseHttps : HintCode::CheckAddress, {url}};
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

std::string OriginOf(std::string const& key, ConnectOptions const& options) {
  auto const origin = options.origins.find(key);
  return origin == options.origins.end() ? "" : " (" + origin->second + ")";
}

std::string ProxyText(HttpReport const& report, ConnectOptions const& options) {
  if (report.proxyVariable.empty()) return report.proxy + OriginOf("proxy", options);
  return report.proxy + " (" + report.proxyVariable + ")";
}

std::string HeaderOf(HttpHeaders const& headers, char const* name) {
  for (auto const& [key, value] : headers) {
    if (EqualIgnoringCase(key, name)) return value;
  }
  return {};
}

std::optional<std::chrono::seconds> ClockAhead(HttpHeaders const& headers) {
  std::time_t const server = curl_getdate(HeaderOf(headers, "Date").c_str(), nullptr);
  if (server == -1) return std::nullopt;
  return std::chrono::seconds(std::time(nullptr) - server);
}

Verdict VerdictOnNoReply(HttpReport const& report, std::string const& url,
                         ConnectOptions const& options) {
  std::string const text = "no reply from " + url + ": " + OneLine(report.error);
  switch (report.failure) {
    case eHttpFailure_Setup: return {ErrorCode::InvalidArgument, text, {}};
    case eHttpFailure_NameResolution:
      return {ErrorCode::NameResolution, text, {HintCode::CheckName, {HostOf(url)}}};
    case eHttpFailure_TimeOut: return {ErrorCode::Timeout, text, TimeoutHint(report, url, options)};
    case eHttpFailure_Tls: return OfTls(report, url, text, options);
    case eHttpFailure_Proxy: return OfProxy(report, url, options);
    case eHttpFailure_Aborted: return {ErrorCode::Cancelled, "cancelled", {}};
    case eHttpFailure_TooLarge:
    case eHttpFailure_NotUnderstood:
    case eHttpFailure_OutOfMemory:
      return {ErrorCode::NotUnderstood, text, ForeignHint(report, url)};
    case eHttpFailure_Connection:
      return {ErrorCode::Connection, text, {HintCode::CheckConnection, {url}}};
    default: return {ErrorCode::Connection, text, {HintCode::TryLater}};
  }
}

}  // namespace lumo

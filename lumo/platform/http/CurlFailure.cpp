#include "lumo/platform/http/CurlFailure.h"

#include <string>

namespace lumo {
namespace {

constexpr int kFirstStatusOfAFailure = 300;

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// Whether the connection that could not be made is that to the proxy: libcurl names whom it
/// called.
bool IsToProxy(std::string_view words, std::string const& proxy) {
  std::size_t const scheme = proxy.find("://");
  std::string const place = scheme == std::string::npos ? proxy : proxy.substr(scheme + 3);
  std::string const host = place.substr(0, place.find_first_of(":/", place.find(']') + 1));
  return !host.empty() && Contains(words, "to " + host + " port");
}

/// Of a connection that broke: TLS tells its reasons there too.
eHttpFailure KindOfLoss(std::string_view words, HttpReport const& report) {
  if (Contains(words, "Too large response headers")) return eHttpFailure_TooLarge;
  if (report.proxyStatus >= kFirstStatusOfAFailure) return eHttpFailure_Proxy;
  bool const isAlert = Contains(words, "SSL") && Contains(words, "alert");
  return isAlert ? eHttpFailure_Tls : eHttpFailure_ConnectionLost;
}

}  // namespace

eHttpFailure KindOf(CURLcode code, std::string_view words, HttpReport const& report) {
  bool const isSent = report.phase >= eHttpPhase_Sending;  // a reply may overtake the request
  switch (code) {
    case CURLE_OK: return eHttpFailure_None;
    case CURLE_UNSUPPORTED_PROTOCOL:  // of the URL, or of what came
    case CURLE_BAD_FUNCTION_ARGUMENT:
      return isSent ? eHttpFailure_NotUnderstood : eHttpFailure_Setup;
    case CURLE_URL_MALFORMAT:
    case CURLE_NOT_BUILT_IN:
    case CURLE_UNKNOWN_OPTION:
    case CURLE_LOGIN_DENIED:  // for a password in the URL
      return eHttpFailure_Setup;
    case CURLE_COULDNT_RESOLVE_HOST: return eHttpFailure_NameResolution;
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_PROXY: return eHttpFailure_Proxy;
    case CURLE_COULDNT_CONNECT:
      return IsToProxy(words, report.proxy) ? eHttpFailure_Proxy : eHttpFailure_Connection;
    case CURLE_OPERATION_TIMEDOUT: return eHttpFailure_TimeOut;
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR: return KindOfLoss(words, report);
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_ENGINE_NOTFOUND:
    case CURLE_SSL_ENGINE_SETFAILED:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_USE_SSL_FAILED:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_SHUTDOWN_FAILED:
    case CURLE_SSL_CRL_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_SSL_CLIENTCERT: return eHttpFailure_Tls;
    case CURLE_ABORTED_BY_CALLBACK: return eHttpFailure_Aborted;
    case CURLE_FILESIZE_EXCEEDED: return eHttpFailure_TooLarge;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING: return eHttpFailure_NotUnderstood;
    case CURLE_OUT_OF_MEMORY: return eHttpFailure_OutOfMemory;
    default: return eHttpFailure_Other;
  }
}

}  // namespace lumo

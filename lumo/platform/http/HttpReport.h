#pragma once

#include <string>
#include <utility>
#include <vector>

#include "lumo/platform/core/Counted.h"
#include "lumo/platform/http/HttpEnums.h"

/// Name and value of a header, in the order of the wire.
using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

/// How long the phases of an exchange took, in seconds since its start; 0 for a phase that did not
/// happen, such as connecting on a kept connection.
struct HttpTimings {
  double nameLookup = 0;  ///< the server's address is known
  double connect = 0;     ///< the connection stands
  double tls = 0;         ///< TLS is agreed on
  double firstByte = 0;   ///< the reply begins
  double total = 0;       ///< the reply is complete
};

/// What an exchange showed of the log-on. Passwords and tokens are never in it.
struct HttpLogOn {
  /// Methods that the server asked for in this exchange, as it writes them ("Negotiate", "NTLM"),
  /// in its order; the same of the proxy.
  std::vector<std::string> offered;
  std::vector<std::string> offeredByProxy;  ///< the same of the proxy
  /// Method with which the last request was answered for; empty when none was, as on a connection
  /// that is logged on already.
  std::string used;
  std::string usedWithProxy;  ///< the same of the proxy
  /// Why a log-on could not be made, in the words of libcurl and GSSAPI, such as "Clock skew too
  /// great"; empty when nothing went wrong on this side.
  std::string trouble;
};

/// What is told of one exchange beside the bytes of the reply.
class LUMO_API HttpReport : public lumo::Counted<HttpReport> {
 public:
  /// Why no reply came, `eHttpFailure_None` when one did; the same in the transport's words.
  eHttpFailure failure = eHttpFailure_None;
  std::string error;  ///< why no reply came, in the transport's words
  /// The transport's own number of that error: a CURLcode, or -1 for what failed before libcurl.
  int errorNumber = 0;
  /// OpenSSL's number of what is wrong with the server's certificate, such as 10 for one that has
  /// expired (X509_V_ERR_...); 0 when nothing is, and for a name that does not fit.
  int certificateVerdict = 0;
  /// Where the exchange ended. A request whose exchange ended before `eHttpPhase_Sending` did not
  /// reach the server.
  eHttpPhase phase = eHttpPhase_None;
  /// Headers of the reply.
  HttpHeaders headers;
  HttpTimings timings;  ///< how long it took
  HttpLogOn logOn;      ///< what was asked for and answered
  /// Address of the proxy without user and password, and the environment variable that it was taken
  /// from; empty for none.
  std::string proxy;
  std::string proxyVariable;  ///< such as "https_proxy"
  /// Status with which a proxy answered the request for a tunnel to an https server; 0 without one.
  int proxyStatus = 0;
};

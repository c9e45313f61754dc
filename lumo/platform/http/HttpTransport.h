#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "lumo/platform/core/SmartPtr.h"
#include "lumo/platform/http/HttpMessage.h"

/// Settings of the transport; the defaults change nothing.
struct HttpTransportSettings {
  /// File of CA certificates in PEM form, and folder of such files under their hashed names. When
  /// one is set, only they are trusted; both empty for the system's.
  std::string caFile;
  std::string caPath;  ///< folder of such files under their hashed names
  /// Client certificate and its key, files in PEM form; empty for none.
  std::string clientCertificateFile;
  std::string clientKeyFile;  ///< the certificate's key
  /// Address of a proxy; empty for the environment's. Loopback addresses are never proxied.
  std::string proxy;
  /// Answers the proxy's Basic, Digest and NTLM challenges, and Negotiate ones when the server's
  /// are answered with a ticket; no user for none.
  std::string proxyUser;
  std::string proxyPassword;  ///< of that user
  /// Called while a call runs, at least every 100 ms in whatever phase, with the bytes sent and
  /// received so far; false ends the call without a reply. It must not throw.
  std::function<bool(std::uint64_t sent, std::uint64_t received)> progress;
  /// Largest reply body that is accepted, in bytes; 0 for any.
  std::size_t maxReplyBytes = 0;
};

/// Everything but the message that an exchange depends on.
struct HttpOptions {
  std::string baseUrl;  ///< without trailing slashes
  /// Longest name resolution, connection, silence while sending and silence while receiving, in
  /// ms; 0 waits for ever.
  int resolveTimeout = 0;
  int connectTimeout = 0;          ///< longest connection, in ms
  int sendTimeout = 0;             ///< longest silence while sending, in ms
  int receiveTimeout = 0;          ///< longest silence while receiving, in ms
  bool hasCredentials = false;     ///< `user` and `password` hold
  std::string user;                ///< who logs on
  std::string password;            ///< of that user
  bool autologon = false;          ///< answers Negotiate challenges with the current user's ticket
  HttpTransportSettings settings;  ///< what `HttpClient::SetTransportSettings` took
};

/// Carries one message to the server and its reply back. Used by several threads at once.
class LUMO_API HttpTransport : public SmartPtrTarget_ts {
 public:
  /// 0 when a complete reply arrived, which is then in the message; otherwise an error number, and
  /// the message has the failure's kind and text. The options of earlier calls stay alive and
  /// unchanged as long as somebody holds them, so that their address tells whether anything
  /// changed.
  virtual int Send(std::shared_ptr<HttpOptions const> const& options, std::string const& path,
                   eHttpVerb verb, HttpMessage& message) = 0;
  /// The options have changed: connections that are not in use are of no use any more.
  virtual void CloseIdle() {}
};

/// Makes the transport of a new `HttpClient`.
using HttpTransportFactory = std::function<SmartPtr<HttpTransport>()>;

#pragma once

#include <memory>
#include <string>

#include "lumo/platform/core/ILogger.h"
#include "lumo/platform/http/HttpTransport.h"

/// Client of one server. `SendRequest` may be called from several threads at once; the settings
/// must not change meanwhile.
class LUMO_API HttpClient : public SmartPtrTarget_ts {
 public:
  /// Client for a base URL, whose trailing slashes are dropped. The transport is libcurl unless
  /// another was set. The last two texts and the flag are reserved.
  static SmartPtr<HttpClient> CreateOneFromURL(ILogger* logging, std::wstring const& url,
                                               std::wstring const& reserved1,
                                               std::wstring const& reserved2, bool reserved3);
  /// Replaces the transport of the clients made from now on, for tests and for recording; an empty
  /// factory brings libcurl back. Not to be called while another thread makes a client.
  static void SetTransportFactory(HttpTransportFactory factory);

  /// Longest name resolution, connection, silence while sending and silence while receiving, in ms;
  /// 0 (and less) waits for ever. Like every change below, a change of them closes the connections;
  /// those that are set already change nothing.
  void SetTimeouts(int resolve, int connect, int send, int receive);
  /// Answers Basic, Digest and NTLM challenges; nothing is sent before a challenge.
  void ApplyCredentials(std::wstring const& user, std::wstring const& password);
  /// Answers Negotiate challenges with the current user's ticket. Where that fails and there are
  /// credentials, too, they answer the server's other challenges. The second flag is reserved.
  void SetAutologonPolicy(bool autologon, bool reserved);
  /// Certificates, proxy, limits and progress of the calls that follow.
  void SetTransportSettings(HttpTransportSettings const& settings);
  HttpTransportSettings GetTransportSettings() const { return m_options->settings; }

  /// Sends the message to the base URL followed by `path`. 0 when a complete reply arrived, with
  /// whatever status; otherwise an error number, and the message's report says why.
  int SendRequest(std::wstring const& path, eHttpVerb verb, SmartPtr<HttpMessage> const& message);

 private:
  HttpClient(SmartPtr<HttpTransport> const& transport, std::wstring const& url);
  template <class Change>
  void ChangeOptions(Change change);
  int Carry(std::wstring const& path, eHttpVerb verb, HttpMessage& message);

  SmartPtr<HttpTransport> m_transport;
  std::shared_ptr<HttpOptions const> m_options;
};

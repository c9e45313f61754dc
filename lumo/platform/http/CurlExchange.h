#pragma once

#include <curl/curl.h>

#include <chrono>
#include <cstddef>

#include "lumo/platform/http/HttpTransport.h"
#include "lumo/platform/http/ReplyReader.h"

namespace lumo {

/// What one exchange has come to; libcurl's callbacks write it.
struct CurlExchange {
  using Clock = std::chrono::steady_clock;

  /// Begins a phase. Its limit counts from here, or from the last sign of life while it lasts.
  void Enter(eHttpPhase phase);

  CURL* easy = nullptr;
  HttpOptions const* options = nullptr;
  HttpReport* report = nullptr;  // the message's
  bool isWrite = false;
  Clock::time_point since;
  bool awaitsReply = false;  // a request went out and no status line came back yet
  int requests = 0;          // how many went out
  bool isSpent = false;      // the log-on was asked for once too often
  Refusal refusal;           // what a callback objected to
  ReplyReader reply;
};

/// Callbacks of libcurl, each with a `CurlExchange` for its user pointer. No exception leaves them.
namespace curl_callbacks {

/// Pieces of the body, and lines of heads before libcurl stores them.
std::size_t OnBytes(char* data, std::size_t size, std::size_t count, void* user);
std::size_t OnLine(char* data, std::size_t size, std::size_t count, void* user);
/// A connection is about to be made.
int OnSocket(void* user, curl_socket_t socket, curlsocktype purpose);
/// A request is about to go out on an open connection.
int OnRequest(void* user, char* remoteIp, char* localIp, int remotePort, int localPort);
/// What libcurl does and sees; only its remarks are looked at.
int OnDebug(CURL* easy, curl_infotype type, char* data, std::size_t size, void* user);

}  // namespace curl_callbacks
}  // namespace lumo

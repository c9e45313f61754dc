#include "lumo/platform/http/CurlExchange.h"

#include <exception>
#include <new>
#include <string_view>

#include "lumo/platform/http/LogOnWords.h"

namespace lumo {
namespace {

/// A log-on takes three requests, and three more with a proxy that wants one too.
constexpr int kMaxRequests = 8;

CurlExchange& ExchangeOf(void* user) { return *static_cast<CurlExchange*>(user); }

/// Runs a callback's work, which may object; no exception may cross libcurl.
template <class Work>
bool Runs(CurlExchange& exchange, Work work) noexcept {
  try {
    if (Refusal const refusal = work()) exchange.refusal = refusal;
  } catch (std::bad_alloc const&) {
    exchange.refusal = {eHttpFailure_OutOfMemory, "out of memory"};
  }
  return !exchange.refusal;
}

/// libcurl asks a proxy for a tunnel as often as the proxy wants another log-on.
Refusal CountTunnel(CurlExchange& exchange, std::string_view statusLine) {
  bool const isOpen = statusLine.substr(0, statusLine.find(' ') + 2).back() == '2';
  if (++exchange.requests < kMaxRequests || isOpen) return {};
  return {eHttpFailure_Proxy, "the proxy asks for the log-on again and again"};
}

Refusal TakeBytes(CurlExchange& exchange, std::string_view bytes) {
  if (exchange.reply.IsAtBody()) {
    curl_off_t length = 0;
    curl_easy_getinfo(exchange.easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    if (length > 0) {
      Refusal const refusal = exchange.reply.TakeLength(static_cast<std::size_t>(length));
      if (refusal) return refusal;
    }
  }
  return exchange.reply.TakeBytes(bytes);
}

Refusal TakeLine(CurlExchange& exchange, std::string_view line) {
  if (exchange.awaitsReply) exchange.Enter(eHttpPhase_Receiving);
  exchange.awaitsReply = false;
  if (exchange.reply.ExpectsStatus()) {
    if (exchange.reply.IsFromProxy()) {
      if (Refusal const refusal = CountTunnel(exchange, line)) return refusal;
    }
    long status = 0;
    curl_easy_getinfo(exchange.easy, CURLINFO_RESPONSE_CODE, &status);
    return exchange.reply.TakeStatus(static_cast<int>(status));
  }
  NoteOffers(line, exchange.report->logOn);
  return exchange.reply.TakeLine(line);
}

}  // namespace

void CurlExchange::Enter(eHttpPhase phase) {
  report->phase = phase;
  since = Clock::now();
}

namespace curl_callbacks {

std::size_t OnBytes(char* data, std::size_t size, std::size_t count, void* user) {
  CurlExchange& exchange = ExchangeOf(user);
  std::string_view const bytes(data, size * count);
  return Runs(exchange, [&] { return TakeBytes(exchange, bytes); }) ? bytes.size() : 0;
}

std::size_t OnLine(char* data, std::size_t size, std::size_t count, void* user) {
  CurlExchange& exchange = ExchangeOf(user);
  std::string_view const line(data, size * count);
  return Runs(exchange, [&] { return TakeLine(exchange, line); }) ? line.size() : 0;
}

int OnSocket(void* user, curl_socket_t /*socket*/, curlsocktype /*purpose*/) {
  CurlExchange& exchange = ExchangeOf(user);
  exchange.Enter(eHttpPhase_Connecting);
  exchange.reply.ExpectHead(true);
  return CURL_SOCKOPT_OK;
}

/// libcurl repeats a request by itself when a kept connection dies before the reply; a write must
/// not happen twice. It also answers every challenge, however many there are.
int OnRequest(void* user, char* /*remoteIp*/, char* /*localIp*/, int /*remotePort*/,
              int /*localPort*/) {
  CurlExchange& exchange = ExchangeOf(user);
  if (exchange.isWrite && exchange.awaitsReply) {
    exchange.refusal = {eHttpFailure_ConnectionLost, "connection lost"};
    return CURL_PREREQFUNC_ABORT;
  }
  exchange.isSpent = exchange.requests == kMaxRequests;
  if (exchange.isSpent) return CURL_PREREQFUNC_ABORT;
  ++exchange.requests;
  exchange.awaitsReply = true;
  exchange.reply.ExpectHead(false);
  exchange.Enter(eHttpPhase_Sending);
  return CURL_PREREQFUNC_OK;
}

int OnDebug(CURL* /*easy*/, curl_infotype type, char* data, std::size_t size, void* user) {
  CurlExchange& exchange = ExchangeOf(user);
  if (type != CURLINFO_TEXT || exchange.report == nullptr) return 0;
  Runs(exchange, [&] {
    NoteRemark({data, size}, *exchange.report);
    return Refusal();
  });
  return 0;
}

}  // namespace curl_callbacks
}  // namespace lumo

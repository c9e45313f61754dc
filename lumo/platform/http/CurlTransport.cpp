#include "lumo/platform/http/CurlTransport.h"

#include <curl/curl.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

#include "lumo/platform/http/CurlFailure.h"
#include "lumo/platform/http/EnglishWords.h"
#include "lumo/platform/http/HandlePool.h"

namespace lumo {
namespace {

using Clock = CurlExchange::Clock;
using Milliseconds = std::chrono::milliseconds;

constexpr int kLongestPollMs = 60'000;
/// A progress callback that wants to abort is asked at least this often.
constexpr int kProgressPollMs = 50;

/// Limit of a phase in ms; 0 for none.
int Limit(HttpOptions const& options, eHttpPhase phase) {
  switch (phase) {
    case eHttpPhase_Resolving: return options.resolveTimeout;
    case eHttpPhase_Connecting: return options.connectTimeout;
    case eHttpPhase_Sending: return options.sendTimeout;
    default: return options.receiveTimeout;
  }
}

char const* TimeoutText(eHttpPhase phase) {
  switch (phase) {
    case eHttpPhase_Resolving: return "timed out while resolving the server's name";
    case eHttpPhase_Connecting: return "timed out while connecting";
    case eHttpPhase_Sending: return "timed out: the server took nothing for too long";
    default: return "timed out: the server sent nothing for too long";
  }
}

/// How long to wait for something to happen, in ms; negative when the time is over.
int TimeLeft(CurlExchange const& exchange) {
  int const limit = Limit(*exchange.options, exchange.report->phase);
  int const longest = exchange.options->settings.progress ? kProgressPollMs : kLongestPollMs;
  if (limit == 0) return longest;
  auto const left = exchange.since + Milliseconds(limit) - Clock::now();
  if (left <= Clock::duration::zero()) return -1;
  auto const rounded = std::chrono::ceil<Milliseconds>(left).count();
  return static_cast<int>(std::min<decltype(rounded)>(rounded, longest));
}

/// From sending to receiving, as soon as the whole request is on its way.
void NoteRequestSent(CurlHandle& handle) {
  if (handle.Exchange().report->phase != eHttpPhase_Sending) return;
  // The whole is less than the message's body in the middle of a log-on, and -1 for no body.
  bool const isSent =
      handle.CountOf(CURLINFO_SIZE_UPLOAD_T) >= handle.CountOf(CURLINFO_CONTENT_LENGTH_UPLOAD_T);
  if (isSent) handle.Exchange().Enter(eHttpPhase_Receiving);
}

void NoteSignOfLife(CurlExchange& exchange) {
  if (exchange.report->phase >= eHttpPhase_Sending) exchange.since = Clock::now();
}

/// Asks the progress callback whether to go on.
bool GoesOn(CurlHandle const& handle, HttpTransportSettings const& settings) {
  return !settings.progress ||
         settings.progress(static_cast<std::uint64_t>(handle.CountOf(CURLINFO_SIZE_UPLOAD_T)),
                           static_cast<std::uint64_t>(handle.CountOf(CURLINFO_SIZE_DOWNLOAD_T)));
}

CURLcode Check(CURLMcode code) {
  if (code == CURLM_OK) return CURLE_OK;
  return code == CURLM_OUT_OF_MEMORY ? CURLE_OUT_OF_MEMORY : CURLE_FAILED_INIT;
}

/// Takes the easy handle out of its multi handle, whatever happens.
class Membership {
 public:
  explicit Membership(CurlHandle& handle)
      : m_handle(handle), m_code(curl_multi_add_handle(handle.Multi(), handle.Easy())) {}
  ~Membership() { curl_multi_remove_handle(m_handle.Multi(), m_handle.Easy()); }
  Membership(Membership const&) = delete;
  Membership& operator=(Membership const&) = delete;
  CURLMcode Code() const { return m_code; }

 private:
  CurlHandle& m_handle;
  CURLMcode m_code;
};

CURLcode Refuse(CurlExchange& exchange, eHttpFailure kind, char const* text, CURLcode code) {
  exchange.refusal = {kind, text};
  return code;
}

/// What became of an exchange that is over.
CURLcode Outcome(CurlHandle& handle) {
  CurlExchange& exchange = handle.Exchange();
  int left = 0;
  CURLMsg const* const done = curl_multi_info_read(handle.Multi(), &left);
  CURLcode const code = done == nullptr ? CURLE_FAILED_INIT : done->data.result;
  if (code != CURLE_OK) return code;
  if (exchange.refusal) return CURLE_WRITE_ERROR;
  if (exchange.reply.IsWholeHead()) return CURLE_OK;
  return Refuse(exchange, eHttpFailure_ConnectionLost,
                "the connection ended amid the reply's headers", CURLE_PARTIAL_FILE);
}

/// Drives the exchange to its end, as `curl_easy_perform` does, and keeps the time-outs.
CURLcode Drive(CurlHandle& handle) {
  CurlExchange& exchange = handle.Exchange();
  Membership const membership(handle);
  CURLcode code = Check(membership.Code());
  while (code == CURLE_OK) {
    int running = 0;
    code = Check(curl_multi_perform(handle.Multi(), &running));
    if (code != CURLE_OK) break;
    NoteRequestSent(handle);  // also where the reply, or its end, came in the same turn
    if (!GoesOn(handle, exchange.options->settings)) {
      return Refuse(exchange, eHttpFailure_Aborted, "aborted by the progress callback",
                    CURLE_ABORTED_BY_CALLBACK);
    }
    if (running == 0) return Outcome(handle);
    int const wait = TimeLeft(exchange);
    if (wait < 0) {
      return Refuse(exchange, eHttpFailure_TimeOut, TimeoutText(exchange.report->phase),
                    CURLE_OPERATION_TIMEDOUT);
    }
    int active = 0;
    code = Check(curl_multi_poll(handle.Multi(), nullptr, 0, wait, &active));
    if (active != 0) NoteSignOfLife(exchange);
  }
  return code;
}

double Seconds(CurlHandle const& handle, CURLINFO info) {
  return static_cast<double>(handle.CountOf(info)) / 1e6;
}

HttpTimings TimingsOf(CurlHandle const& handle) {
  HttpTimings timings;
  timings.nameLookup = Seconds(handle, CURLINFO_NAMELOOKUP_TIME_T);
  timings.connect = Seconds(handle, CURLINFO_CONNECT_TIME_T);
  timings.tls = Seconds(handle, CURLINFO_APPCONNECT_TIME_T);
  timings.firstByte = Seconds(handle, CURLINFO_STARTTRANSFER_TIME_T);
  timings.total = Seconds(handle, CURLINFO_TOTAL_TIME_T);
  return timings;
}

/// Puts what happened into the message. Returns 0 for a reply, otherwise libcurl's number.
CURLcode Report(CurlHandle& handle, CURLcode code, HttpMessage& message) {
  constexpr int kUnauthorized = 401;
  constexpr int kProxyAuthenticationRequired = 407;
  CurlExchange& exchange = handle.Exchange();
  ReplyReader& reply = exchange.reply;
  HttpReport& report = *exchange.report;
  report.timings = TimingsOf(handle);
  report.proxyStatus = static_cast<int>(handle.NumberOf(CURLINFO_HTTP_CONNECTCODE));
  int const status = reply.Status();
  bool const asksForLogOn = status == kUnauthorized || status == kProxyAuthenticationRequired;
  if (exchange.isSpent && asksForLogOn && reply.IsWholeHead()) code = CURLE_OK;
  if (code == CURLE_OK) {
    message.SetResponse(status, std::move(reply.AccessHeaders()), std::move(reply.AccessBody()));
    return code;
  }
  report.errorNumber = code;
  report.certificateVerdict = static_cast<int>(handle.NumberOf(CURLINFO_SSL_VERIFYRESULT));
  if (exchange.refusal) {
    message.SetFailure(exchange.refusal.kind, exchange.refusal.text);
    return code;
  }
  char const* const words = *handle.Words() != '\0' ? handle.Words() : curl_easy_strerror(code);
  eHttpFailure const kind = KindOf(code, words, report);
  message.SetFailure(kind, kind == eHttpFailure_OutOfMemory ? "out of memory" : words);
  return code;
}

class CurlTransport : public HttpTransport {
 public:
  int Send(std::shared_ptr<HttpOptions const> const& options, std::string const& path,
           eHttpVerb verb, HttpMessage& message) override {
    if (verb != eHttpVerb_Get && verb != eHttpVerb_Post) {
      message.SetFailure(eHttpFailure_Setup, "only GET and POST can be sent");
      return CURLE_UNSUPPORTED_PROTOCOL;
    }
    try {
      HandlePool::Lease handle(m_pool, options);
      EnglishWords const english(options->autologon);
      handle->Prepare(path, verb, message);
      CURLcode code = Drive(*handle);
      // What was refused is not done yet: a write may go out again.
      if (code == CURLE_OK && handle->TriesPassword(message)) code = Drive(*handle);
      code = Report(*handle, code, message);
      handle->Forget();
      if (code == CURLE_OK) handle.Keep();
      return code;
    } catch (OptionRefused const& refused) {
      message.SetFailure(eHttpFailure_Setup, refused.what());
      return refused.Code();
    }
  }

  void CloseIdle() override { m_pool.Clear(); }

 private:
  HandlePool m_pool;
};

}  // namespace

SmartPtr<HttpTransport> MakeCurlTransport() {
  static bool const ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return ready ? SmartPtr<HttpTransport>(new CurlTransport()) : SmartPtr<HttpTransport>();
}

}  // namespace lumo

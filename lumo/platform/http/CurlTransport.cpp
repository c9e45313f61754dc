#include "lumo/platform/http/CurlTransport.h"

#include <arpa/inet.h>
#include <curl/curl.h>
#include <strings.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstring>
#include <exception>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

namespace lumo {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

constexpr long kReceiveBuffer = 512L * 1024;
constexpr long kUploadBuffer = 2L * 1024 * 1024;
constexpr std::size_t kMaxReserve = std::size_t{256} * 1024 * 1024;
constexpr std::size_t kMaxHeaderBytes = std::size_t{1024} * 1024;
constexpr int kLongestPollMs = 60'000;
constexpr long kUnauthorized = 401;
/// A progress callback that wants to abort is asked at least this often.
constexpr int kProgressPollMs = 200;

struct FreeEasy {
  void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct FreeMulti {
  void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};
struct FreeList {
  void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
struct FreeUrl {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using HeaderList = std::unique_ptr<curl_slist, FreeList>;

enum class Phase { Resolving, Connecting, Sending, Receiving };

/// What one exchange has come to; libcurl's callbacks write it.
struct Exchange {
  HttpOptions const* options = nullptr;
  bool isWrite = false;
  Phase phase = Phase::Resolving;
  Clock::time_point since;   // start of the phase, or the last sign of life while it lasts
  bool awaitsReply = false;  // a request went out and no status line came back yet
  bool isWholeHead = false;  // the blank line behind the reply's headers has come
  std::string failure;       // what a callback objected to
  HttpHeaders headers;
  std::size_t headerBytes = 0;
  std::string body;
};

/// One easy handle with its connection, used by one exchange at a time. It belongs to one set of
/// options: another user must not find the connection of the one before.
struct Handle {
  std::shared_ptr<HttpOptions const> options;
  std::unique_ptr<CURLM, FreeMulti> multi;
  std::unique_ptr<CURL, FreeEasy> easy;
  Exchange exchange;
  char error[CURL_ERROR_SIZE] = {};
  // What the easy handle holds already: most calls repeat the headers of the one before.
  std::string url;
  HttpHeaders headers;
  HeaderList headerList;
  unsigned long methods = CURLAUTH_NONE;  // ways to log on
};

void Enter(Exchange& exchange, Phase phase) {
  exchange.phase = phase;
  exchange.since = Clock::now();
}

/// Runs a callback's work; no exception may cross libcurl.
template <class Work>
bool Guarded(Exchange& exchange, Work work) noexcept {
  try {
    return work();
  } catch (std::exception const&) {
    exchange.failure.assign("out of memory");  // short enough to need none
    return false;
  }
}

bool Refuse(Exchange& exchange, char const* why) {
  exchange.failure = why;
  return false;
}

std::size_t OnBody(char* data, std::size_t size, std::size_t count, void* user) {
  auto& handle = *static_cast<Handle*>(user);
  Exchange& exchange = handle.exchange;
  std::size_t const bytes = size * count;
  bool const fine = Guarded(exchange, [&] {
    std::size_t const cap = exchange.options->settings.maxReplyBytes;
    if (cap != 0 && bytes > cap - std::min(cap, exchange.body.size())) {
      return Refuse(exchange, "the reply is larger than the limit");
    }
    if (exchange.body.empty()) {
      curl_off_t length = 0;
      curl_easy_getinfo(handle.easy.get(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
      if (length > 0) {
        exchange.body.reserve(std::min(static_cast<std::size_t>(length), kMaxReserve));
      }
    }
    exchange.body.append(data, bytes);
    return true;
  });
  return fine ? bytes : 0;
}

std::string_view Trimmed(std::string_view text) {
  std::size_t const first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::size_t OnHeader(char* data, std::size_t size, std::size_t count, void* user) {
  Exchange& exchange = static_cast<Handle*>(user)->exchange;
  std::size_t const bytes = size * count;
  std::string_view const line(data, bytes);
  bool const fine = Guarded(exchange, [&] {
    exchange.awaitsReply = false;
    if (exchange.phase != Phase::Receiving) Enter(exchange, Phase::Receiving);
    if (line.substr(0, 5) == "HTTP/" && exchange.body.empty()) {
      exchange.headers.clear();  // those before belong to a challenge or to "100 Continue"
      exchange.headerBytes = 0;
      exchange.isWholeHead = false;
      return true;
    }
    if (Trimmed(line).empty()) exchange.isWholeHead = true;
    exchange.headerBytes += bytes;
    if (exchange.headerBytes > kMaxHeaderBytes) {
      return Refuse(exchange, "the reply's headers are too large");
    }
    std::size_t const colon = line.find(':');
    if (colon != std::string_view::npos) {
      exchange.headers.emplace_back(Trimmed(line.substr(0, colon)),
                                    Trimmed(line.substr(colon + 1)));
    }
    return true;
  });
  return fine ? bytes : 0;
}

int OnSocket(void* user, curl_socket_t /*socket*/, curlsocktype /*purpose*/) {
  Enter(static_cast<Handle*>(user)->exchange, Phase::Connecting);
  return CURL_SOCKOPT_OK;
}

/// Called on an open connection just before a request goes out. libcurl repeats a request by
/// itself when a kept connection dies before the reply; a write must not happen twice.
int OnRequest(void* user, char* /*remoteIp*/, char* /*localIp*/, int /*remotePort*/,
              int /*localPort*/) {
  Exchange& exchange = static_cast<Handle*>(user)->exchange;
  if (exchange.isWrite && exchange.awaitsReply) {
    exchange.failure.assign("connection lost");
    return CURL_PREREQFUNC_ABORT;
  }
  exchange.awaitsReply = true;
  Enter(exchange, Phase::Sending);
  return CURL_PREREQFUNC_OK;
}

int OnProgress(void* user, curl_off_t /*downTotal*/, curl_off_t down, curl_off_t /*upTotal*/,
               curl_off_t up) {
  Exchange& exchange = static_cast<Handle*>(user)->exchange;
  bool const goOn = Guarded(exchange, [&] {
    return exchange.options->settings.progress(static_cast<std::uint64_t>(up),
                                               static_cast<std::uint64_t>(down));
  });
  return goOn ? 0 : 1;
}

/// Sets an option whose failure means that libcurl was built without what is promised here.
template <class Value>
void Set(Handle& handle, CURLoption option, Value value) {
  CURLcode const code = curl_easy_setopt(handle.easy.get(), option, value);
  if (code == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
}

void SetText(Handle& handle, CURLoption option, std::string const& text) {
  if (!text.empty()) Set(handle, option, text.c_str());
}

bool IsLoopback(std::string const& url) {
  std::unique_ptr<CURLU, FreeUrl> const parts(curl_url());
  char* host = nullptr;
  if (!parts || curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK ||
      curl_url_get(parts.get(), CURLUPART_HOST, &host, 0) != CURLUE_OK) {
    return false;
  }
  std::string name(host);
  curl_free(host);
  if (name.size() > 2 && name.front() == '[') name = name.substr(1, name.size() - 2);
  if (!name.empty() && name.back() == '.') name.pop_back();
  in_addr v4{};
  if (inet_pton(AF_INET, name.c_str(), &v4) == 1) return (ntohl(v4.s_addr) >> 24U) == 127;
  in6_addr v6{};
  if (inet_pton(AF_INET6, name.c_str(), &v6) == 1) {
    return IN6_IS_ADDR_LOOPBACK(&v6) || (IN6_IS_ADDR_V4MAPPED(&v6) && v6.s6_addr[12] == 127);
  }
  constexpr std::string_view kLocal = ".localhost";
  std::string const dotted = "." + name;
  return dotted.size() >= kLocal.size() &&
         strcasecmp(dotted.c_str() + dotted.size() - kLocal.size(), kLocal.data()) == 0;
}

constexpr unsigned long kPasswordMethods = CURLAUTH_BASIC | CURLAUTH_DIGEST | CURLAUTH_NTLM;

unsigned long AuthMethods(HttpOptions const& options) {
  unsigned long methods = CURLAUTH_NONE;
  if (options.hasCredentials) methods |= kPasswordMethods;
  if (options.autologon) methods |= CURLAUTH_NEGOTIATE;
  return methods;
}

void SetMethods(Handle& handle, unsigned long methods) {
  Set(handle, CURLOPT_HTTPAUTH, static_cast<long>(methods));
  handle.methods = methods;
}

/// The longest that libcurl may take until the request goes out. It divides this among a host's
/// addresses; the exact limits are kept by `TimeLeft`.
long ConnectLimit(HttpOptions const& options) {
  long long const limit = static_cast<long long>(options.resolveTimeout) + options.connectTimeout;
  bool const unlimited = options.resolveTimeout == 0 || options.connectTimeout == 0;
  return unlimited ? INT_MAX : static_cast<long>(std::min<long long>(limit, INT_MAX));
}

std::unique_ptr<Handle> MakeHandle(std::shared_ptr<HttpOptions const> const& options) {
  auto made = std::make_unique<Handle>();
  Handle& handle = *made;
  handle.options = options;
  handle.multi.reset(curl_multi_init());
  handle.easy.reset(curl_easy_init());
  if (!handle.multi || !handle.easy) throw std::bad_alloc();
  curl_multi_setopt(handle.multi.get(), CURLMOPT_MAXCONNECTS, 1L);

  Set(handle, CURLOPT_NOSIGNAL, 1L);
  Set(handle, CURLOPT_ERRORBUFFER, handle.error);
  Set(handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  Set(handle, CURLOPT_PROTOCOLS_STR, "http,https");
  Set(handle, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
  Set(handle, CURLOPT_FOLLOWLOCATION, 0L);
  Set(handle, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
  Set(handle, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  Set(handle, CURLOPT_BUFFERSIZE, kReceiveBuffer);
  Set(handle, CURLOPT_UPLOAD_BUFFERSIZE, kUploadBuffer);
  Set(handle, CURLOPT_QUICK_EXIT, 1L);  // a resolver that hangs does not hold up the time-out
  Set(handle, CURLOPT_CONNECTTIMEOUT_MS, ConnectLimit(*options));

  auto* const user = static_cast<void*>(&handle);
  Set(handle, CURLOPT_WRITEFUNCTION, OnBody);
  Set(handle, CURLOPT_WRITEDATA, user);
  Set(handle, CURLOPT_HEADERFUNCTION, OnHeader);
  Set(handle, CURLOPT_HEADERDATA, user);
  Set(handle, CURLOPT_SOCKOPTFUNCTION, OnSocket);
  Set(handle, CURLOPT_SOCKOPTDATA, user);
  Set(handle, CURLOPT_PREREQFUNCTION, OnRequest);
  Set(handle, CURLOPT_PREREQDATA, user);
  if (options->settings.progress) {
    Set(handle, CURLOPT_XFERINFOFUNCTION, OnProgress);
    Set(handle, CURLOPT_XFERINFODATA, user);
    Set(handle, CURLOPT_NOPROGRESS, 0L);
  }

  SetMethods(handle, AuthMethods(*options));
  if (handle.methods != CURLAUTH_NONE) {  // empty ones stand for the current user's ticket
    Set(handle, CURLOPT_USERNAME, options->user.c_str());
    Set(handle, CURLOPT_PASSWORD, options->password.c_str());
  }
  SetText(handle, CURLOPT_CAINFO, options->settings.caFile);
  SetText(handle, CURLOPT_SSLCERT, options->settings.clientCertificateFile);
  SetText(handle, CURLOPT_SSLKEY, options->settings.clientKeyFile);
  if (IsLoopback(options->baseUrl)) {
    Set(handle, CURLOPT_PROXY, "");  // neither the environment's
  } else {
    SetText(handle, CURLOPT_PROXY, options->settings.proxy);
  }
  return made;
}

void Append(HeaderList& list, std::string const& line) {
  curl_slist* const longer = curl_slist_append(list.get(), line.c_str());
  if (longer == nullptr) throw std::bad_alloc();
  (void)list.release();
  list.reset(longer);
}

/// The headers in order, and a word to libcurl to add none of its own.
HeaderList MakeHeaders(HttpHeaders const& headers) {
  HeaderList list;
  std::vector<std::string_view> unwanted = {"Accept", "Content-Type", "Expect"};
  for (auto const& [name, value] : headers) {
    bool const isBlank = Trimmed(value).empty();  // libcurl's form of a header without a value
    Append(list, isBlank ? name + ";" : name + ": " + value);
    unwanted.erase(std::remove_if(unwanted.begin(), unwanted.end(),
                                  [&name = name](std::string_view other) {
                                    return strcasecmp(name.c_str(), other.data()) == 0;
                                  }),
                   unwanted.end());
  }
  for (std::string_view name : unwanted) Append(list, std::string(name) + ":");
  return list;
}

void SetTarget(Handle& handle, std::string const& url, HttpHeaders const& headers) {
  if (handle.url != url) {
    Set(handle, CURLOPT_URL, url.c_str());
    handle.url = url;
  }
  if (!handle.headerList || handle.headers != headers) {
    HeaderList list = MakeHeaders(headers);
    Set(handle, CURLOPT_HTTPHEADER, list.get());
    handle.headerList = std::move(list);
    handle.headers = headers;
  }
}

/// Limit of the current phase in ms; 0 for none.
int Limit(Exchange const& exchange) {
  switch (exchange.phase) {
    case Phase::Resolving: return exchange.options->resolveTimeout;
    case Phase::Connecting: return exchange.options->connectTimeout;
    case Phase::Sending: return exchange.options->sendTimeout;
    case Phase::Receiving: break;
  }
  return exchange.options->receiveTimeout;
}

char const* TimeoutText(Phase phase) {
  switch (phase) {
    case Phase::Resolving: return "timed out while resolving the server's name";
    case Phase::Connecting: return "timed out while connecting";
    case Phase::Sending: return "timed out: the server took nothing for too long";
    case Phase::Receiving: break;
  }
  return "timed out: the server sent nothing for too long";
}

/// How long to wait for something to happen, in ms; negative when the time is over.
int TimeLeft(Exchange const& exchange) {
  int const limit = Limit(exchange);
  int const longest = exchange.options->settings.progress ? kProgressPollMs : kLongestPollMs;
  if (limit == 0) return longest;
  auto const left = exchange.since + Milliseconds(limit) - Clock::now();
  if (left <= Clock::duration::zero()) return -1;
  auto const rounded = std::chrono::ceil<Milliseconds>(left).count();
  return static_cast<int>(std::min<decltype(rounded)>(rounded, longest));
}

/// From sending to receiving, as soon as the whole request is on its way.
void NoteRequestSent(Handle& handle) {
  if (handle.exchange.phase != Phase::Sending) return;
  curl_off_t sent = 0;
  curl_off_t whole = 0;  // less than the message's body in the middle of a log-on; -1 for none
  curl_easy_getinfo(handle.easy.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
  curl_easy_getinfo(handle.easy.get(), CURLINFO_CONTENT_LENGTH_UPLOAD_T, &whole);
  if (sent >= whole) Enter(handle.exchange, Phase::Receiving);
}

void NoteSignOfLife(Exchange& exchange) {
  bool const transfers = exchange.phase == Phase::Sending || exchange.phase == Phase::Receiving;
  if (transfers) exchange.since = Clock::now();
}

/// Takes the easy handle out of its multi handle, whatever happens.
class Membership {
 public:
  explicit Membership(Handle& handle) : m_handle(handle) {
    curl_multi_add_handle(handle.multi.get(), handle.easy.get());
  }
  ~Membership() { curl_multi_remove_handle(m_handle.multi.get(), m_handle.easy.get()); }
  Membership(Membership const&) = delete;
  Membership& operator=(Membership const&) = delete;

 private:
  Handle& m_handle;
};

/// Drives the exchange to its end, as `curl_easy_perform` does, and keeps the time-outs.
CURLcode Drive(Handle& handle) {
  Exchange& exchange = handle.exchange;
  Membership const membership(handle);
  for (;;) {
    int running = 0;
    if (curl_multi_perform(handle.multi.get(), &running) != CURLM_OK) return CURLE_FAILED_INIT;
    if (running == 0) break;
    NoteRequestSent(handle);
    int const wait = TimeLeft(exchange);
    if (wait < 0) {
      exchange.failure = TimeoutText(exchange.phase);
      return CURLE_OPERATION_TIMEDOUT;
    }
    int active = 0;
    if (curl_multi_poll(handle.multi.get(), nullptr, 0, wait, &active) != CURLM_OK) {
      return CURLE_FAILED_INIT;
    }
    if (active != 0) NoteSignOfLife(exchange);
  }
  int left = 0;
  CURLMsg const* const done = curl_multi_info_read(handle.multi.get(), &left);
  CURLcode const code = done == nullptr ? CURLE_FAILED_INIT : done->data.result;
  if (code != CURLE_OK || exchange.isWholeHead) return code;
  exchange.failure = "the connection ended amid the reply's headers";  // libcurl minds it not
  return CURLE_PARTIAL_FILE;
}

/// Those of the server's ways to log on that are left when it has refused the ticket, or there is
/// none, and a password is there, too. libcurl prefers the ticket and goes no further.
unsigned long MethodsLeft(Handle const& handle) {
  if ((handle.methods & CURLAUTH_NEGOTIATE) == 0) return CURLAUTH_NONE;
  long status = 0;
  long offered = 0;
  curl_easy_getinfo(handle.easy.get(), CURLINFO_RESPONSE_CODE, &status);
  curl_easy_getinfo(handle.easy.get(), CURLINFO_HTTPAUTH_AVAIL, &offered);
  if (status != kUnauthorized) return CURLAUTH_NONE;
  return handle.methods & kPasswordMethods & static_cast<unsigned long>(offered);
}

double Seconds(Handle const& handle, CURLINFO info) {
  curl_off_t microseconds = 0;
  curl_easy_getinfo(handle.easy.get(), info, &microseconds);
  return static_cast<double>(microseconds) / 1e6;
}

class CurlTransport : public HttpTransport {
 public:
  int Send(std::shared_ptr<HttpOptions const> const& options, std::string const& path,
           eHttpVerb verb, HttpMessage& message) override {
    if (verb != eHttpVerb_Get && verb != eHttpVerb_Post) {
      message.SetTransportError("only GET and POST can be sent");
      return CURLE_UNSUPPORTED_PROTOCOL;
    }
    std::unique_ptr<Handle> handle = Take(options);
    CURLcode const code = Perform(*handle, path, verb, message);
    Return(std::move(handle));
    return code;
  }

 private:
  std::unique_ptr<Handle> Take(std::shared_ptr<HttpOptions const> const& options) {
    std::unique_ptr<Handle> handle;
    {
      std::lock_guard<std::mutex> const lock(m_mutex);
      if (!m_idle.empty()) {
        handle = std::move(m_idle.back());
        m_idle.pop_back();
      }
    }
    return handle && handle->options == options ? std::move(handle) : MakeHandle(options);
  }

  void Return(std::unique_ptr<Handle> handle) {
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_idle.push_back(std::move(handle));
  }

  static void Begin(Handle& handle, HttpMessage const& message) {
    handle.exchange = Exchange();
    handle.exchange.options = handle.options.get();
    handle.exchange.isWrite = message.GetIsWrite();
    Enter(handle.exchange, Phase::Resolving);
    handle.error[0] = '\0';
  }

  static CURLcode Perform(Handle& handle, std::string const& path, eHttpVerb verb,
                          HttpMessage& message) {
    SmartPtr<HttpMessageBuffer> const request = message.GetRequestBuffer();
    std::string const& body = request->GetBytes();
    Begin(handle, message);
    SetTarget(handle, handle.options->baseUrl + path, message.AccessRequestHeaders());
    Set(handle, CURLOPT_FRESH_CONNECT, message.GetIsWrite() ? 1L : 0L);
    if (verb == eHttpVerb_Post) {
      Set(handle, CURLOPT_POST, 1L);
      Set(handle, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
      Set(handle, CURLOPT_POSTFIELDS, body.data());
    } else {
      Set(handle, CURLOPT_HTTPGET, 1L);
    }

    CURLcode code = Drive(handle);
    unsigned long const left = code == CURLE_OK ? MethodsLeft(handle) : CURLAUTH_NONE;
    if (left != CURLAUTH_NONE) {  // refused, so not done yet: a write may go out again
      SetMethods(handle, left);
      Begin(handle, message);
      code = Drive(handle);
    }
    Report(handle, code, message);
    Set(handle, CURLOPT_POSTFIELDS, static_cast<char const*>(nullptr));
    return code;
  }

  static void Report(Handle& handle, CURLcode code, HttpMessage& message) {
    HttpTimings timings;
    timings.nameLookup = Seconds(handle, CURLINFO_NAMELOOKUP_TIME_T);
    timings.connect = Seconds(handle, CURLINFO_CONNECT_TIME_T);
    timings.tls = Seconds(handle, CURLINFO_APPCONNECT_TIME_T);
    timings.firstByte = Seconds(handle, CURLINFO_STARTTRANSFER_TIME_T);
    timings.total = Seconds(handle, CURLINFO_TOTAL_TIME_T);
    message.SetTimings(timings);

    Exchange& exchange = handle.exchange;
    if (code == CURLE_OK) {
      long status = 0;
      curl_easy_getinfo(handle.easy.get(), CURLINFO_RESPONSE_CODE, &status);
      message.SetResponse(static_cast<int>(status), std::move(exchange.headers),
                          std::move(exchange.body));
    } else if (!exchange.failure.empty()) {
      message.SetTransportError(exchange.failure);
    } else {
      message.SetTransportError(handle.error[0] != '\0' ? handle.error : curl_easy_strerror(code));
    }
    exchange = Exchange();
  }

  std::mutex m_mutex;  // held while a handle is taken or put back, never while one is used
  std::vector<std::unique_ptr<Handle>> m_idle;
};

}  // namespace

SmartPtr<HttpTransport> MakeCurlTransport() {
  static bool const ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  return ready ? SmartPtr<HttpTransport>(new CurlTransport()) : SmartPtr<HttpTransport>();
}

}  // namespace lumo

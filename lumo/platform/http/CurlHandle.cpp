#include "lumo/platform/http/CurlHandle.h"

#include <arpa/inet.h>
#include <strings.h>

#include <algorithm>
#include <climits>
#include <new>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "lumo/platform/core/WideText.h"
#include "lumo/platform/http/LogOnWords.h"

namespace lumo {
namespace {

constexpr long kReceiveBuffer = 512L * 1024;
constexpr long kUploadBuffer = 2L * 1024 * 1024;

struct FreeUrl {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
struct FreeText {
  void operator()(char* text) const { curl_free(text); }
};

/// Host of a URL as libcurl reads it, so that one without a scheme has one too.
std::string HostOf(std::string const& url) {
  std::unique_ptr<CURLU, FreeUrl> const parts(curl_url());
  if (!parts) throw std::bad_alloc();
  unsigned const flags = CURLU_GUESS_SCHEME | CURLU_NON_SUPPORT_SCHEME;
  char* host = nullptr;
  if (curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), flags) == CURLUE_OK) {
    curl_url_get(parts.get(), CURLUPART_HOST, &host, 0);
  }
  std::unique_ptr<char, FreeText> const owner(host);
  return host == nullptr ? "" : host;
}

bool IsLoopback(std::string const& url) {
  std::string name = HostOf(url);
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

constexpr long kUnauthorized = 401;
constexpr unsigned long kPasswordMethods = CURLAUTH_BASIC | CURLAUTH_DIGEST | CURLAUTH_NTLM;

/// Methods that answer a challenge; none of them sends anything before one.
unsigned long Methods(bool hasPassword, bool hasTicket) {
  unsigned long methods = CURLAUTH_NONE;
  if (hasPassword) methods |= kPasswordMethods;
  if (hasTicket) methods |= CURLAUTH_NEGOTIATE;
  return methods;
}

/// The longest that libcurl may take until the request goes out. It divides this among a host's
/// addresses; the exact limits are kept by the transport.
long ConnectLimit(HttpOptions const& options) {
  long long const limit = static_cast<long long>(options.resolveTimeout) + options.connectTimeout;
  bool const unlimited = options.resolveTimeout == 0 || options.connectTimeout == 0;
  return unlimited ? INT_MAX : static_cast<long>(std::min<long long>(limit, INT_MAX));
}

bool IsAscii(std::string const& text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

/// libcurl makes the proof of NTLM as if each byte of the password were a character, so that
/// Latin-1 gives the right one and UTF-8 does not. Nothing for a password that has others.
std::optional<std::string> InLatin1(std::string const& utf8) {
  constexpr wchar_t kLast = 0xff;
  std::string latin1;
  for (wchar_t const c : ToWide(utf8)) {
    if (c > kLast) return std::nullopt;
    latin1 += static_cast<char>(c);
  }
  return latin1;
}

std::string RefusalText(CURLoption option, CURLcode code) {
  curl_easyoption const* const known = curl_easy_option_by_id(option);
  std::string const name = known == nullptr ? std::to_string(option) : known->name;
  return "libcurl refuses the option " + name + ": " + curl_easy_strerror(code);
}

}  // namespace

OptionRefused::OptionRefused(CURLoption option, CURLcode code)
    : std::runtime_error(RefusalText(option, code)), m_code(code) {}

CurlHandle::CurlHandle(std::shared_ptr<HttpOptions const> const& options)
    : m_options(options), m_multi(curl_multi_init()), m_easy(curl_easy_init()) {
  if (!m_multi || !m_easy) throw std::bad_alloc();
  curl_multi_setopt(m_multi.get(), CURLMOPT_MAXCONNECTS, 1L);
  SetBasics();
  SetLogOn();
  SetTls();
  SetProxy();
  SetCallbacks();
}

template <class Value>
void CurlHandle::Set(CURLoption option, Value value) {
  CURLcode const code = curl_easy_setopt(m_easy.get(), option, value);
  if (code == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
  if (code != CURLE_OK) throw OptionRefused(option, code);
}

void CurlHandle::SetText(CURLoption option, std::string const& text) {
  if (!text.empty()) Set(option, text.c_str());
}

void CurlHandle::SetBasics() {
  Set(CURLOPT_NOSIGNAL, 1L);
  Set(CURLOPT_ERRORBUFFER, m_words);
  Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  Set(CURLOPT_PROTOCOLS_STR, "http,https");
  Set(CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
  Set(CURLOPT_FOLLOWLOCATION, 0L);
  Set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
  Set(CURLOPT_BUFFERSIZE, kReceiveBuffer);
  Set(CURLOPT_UPLOAD_BUFFERSIZE, kUploadBuffer);
  Set(CURLOPT_QUICK_EXIT, 1L);  // a resolver that hangs does not hold up the end of a call
  Set(CURLOPT_CONNECTTIMEOUT_MS, ConnectLimit(*m_options));
}

void CurlHandle::SetMethods(unsigned long methods) {
  Set(CURLOPT_HTTPAUTH, static_cast<long>(methods));
  m_methods = methods;
}

void CurlHandle::SetLogOn() {
  unsigned long const methods = Methods(m_options->hasCredentials, m_options->autologon);
  // What goes out of texts outside ASCII depends on what the server asks for.
  bool const waits = !IsAscii(m_options->user + m_options->password);
  SetMethods(waits ? methods & CURLAUTH_NEGOTIATE : methods);
  m_methodsLeft = waits || m_options->autologon ? methods & kPasswordMethods : CURLAUTH_NONE;
  if (methods == CURLAUTH_NONE) return;
  Set(CURLOPT_USERNAME, m_options->user.c_str());  // empty ones stand for the user's ticket
  Set(CURLOPT_PASSWORD, m_options->password.c_str());
}

void CurlHandle::SetTls() {
  HttpTransportSettings const& settings = m_options->settings;
  Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  if (!settings.caFile.empty() || !settings.caPath.empty()) {  // these alone
    Set(CURLOPT_CAINFO, settings.caFile.empty() ? nullptr : settings.caFile.c_str());
    Set(CURLOPT_CAPATH, settings.caPath.empty() ? nullptr : settings.caPath.c_str());
  }
  SetText(CURLOPT_SSLCERT, settings.clientCertificateFile);
  SetText(CURLOPT_SSLKEY, settings.clientKeyFile);
}

void CurlHandle::SetProxy() {
  HttpTransportSettings const& settings = m_options->settings;
  m_isLoopback = IsLoopback(m_options->baseUrl);
  if (m_isLoopback) return Set(CURLOPT_PROXY, "");  // neither the environment's
  SetText(CURLOPT_PROXY, settings.proxy);
  if (settings.proxyUser.empty()) return;
  Set(CURLOPT_PROXYUSERNAME, settings.proxyUser.c_str());
  Set(CURLOPT_PROXYPASSWORD, settings.proxyPassword.c_str());
  Set(CURLOPT_PROXYAUTH, static_cast<long>(Methods(true, m_options->autologon)));
}

void CurlHandle::SetCallbacks() {
  auto* const user = static_cast<void*>(&m_exchange);
  Set(CURLOPT_HEADER, 1L);  // lines of heads come to OnBytes first, see `ReplyReader`
  Set(CURLOPT_WRITEFUNCTION, curl_callbacks::OnBytes);
  Set(CURLOPT_WRITEDATA, user);
  Set(CURLOPT_HEADERFUNCTION, curl_callbacks::OnLine);
  Set(CURLOPT_HEADERDATA, user);
  Set(CURLOPT_SOCKOPTFUNCTION, curl_callbacks::OnSocket);
  Set(CURLOPT_SOCKOPTDATA, user);
  Set(CURLOPT_PREREQFUNCTION, curl_callbacks::OnRequest);
  Set(CURLOPT_PREREQDATA, user);
  if ((m_methods | m_methodsLeft) == CURLAUTH_NONE && m_isLoopback)
    return;  // there is nothing to remark
  Set(CURLOPT_DEBUGFUNCTION, curl_callbacks::OnDebug);
  Set(CURLOPT_DEBUGDATA, user);
  Set(CURLOPT_VERBOSE, 1L);
}

void CurlHandle::Append(HeaderList& list, std::string const& line) {
  curl_slist* const longer = curl_slist_append(list.get(), line.c_str());
  if (longer == nullptr) throw std::bad_alloc();
  (void)list.release();
  list.reset(longer);
}

/// The headers in order, and a word to libcurl to add none of its own.
CurlHandle::HeaderList CurlHandle::MakeHeaders(HttpHeaders const& headers) {
  HeaderList list;
  std::vector<std::string_view> unwanted = {"Accept", "Content-Type", "Expect"};
  for (auto const& [name, value] : headers) {
    bool const isBlank =
        TrimmedHeader(value).empty();  // libcurl's form of a header without a value
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

void CurlHandle::SetTarget(std::string const& url, HttpHeaders const& headers) {
  if (m_url != url) {
    Set(CURLOPT_URL, url.c_str());
    m_url = url;
  }
  if (!m_headerList || m_headers != headers) {
    HeaderList list = MakeHeaders(headers);
    Set(CURLOPT_HTTPHEADER, list.get());
    m_headerList = std::move(list);
    m_headers = headers;
  }
}

void CurlHandle::Begin(HttpMessage const& message) {
  m_exchange = CurlExchange();
  m_exchange.easy = m_easy.get();
  m_exchange.options = m_options.get();
  m_exchange.report = message.GetReport().get();
  m_exchange.isWrite = message.GetIsWrite();
  m_exchange.reply = ReplyReader(m_options->settings.maxReplyBytes);
  m_exchange.Enter(eHttpPhase_Resolving);
  m_words[0] = '\0';
}

void CurlHandle::Prepare(std::string const& path, eHttpVerb verb, HttpMessage const& message) {
  SetTarget(m_options->baseUrl + path, message.AccessRequestHeaders());
  Set(CURLOPT_FRESH_CONNECT, message.GetIsWrite() ? 1L : 0L);
  if (verb == eHttpVerb_Post) {
    std::string const& body = message.GetRequestBuffer()->GetBytes();
    Set(CURLOPT_POST, 1L);
    Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    Set(CURLOPT_POSTFIELDS, body.data());
  } else {
    Set(CURLOPT_HTTPGET, 1L);
  }
  Begin(message);
  if (!m_isLoopback) m_exchange.report->proxy = WithoutUser(m_options->settings.proxy);
}

bool CurlHandle::PreparesNtlm(unsigned long& methods) {
  bool const isNtlm = (methods & CURLAUTH_NTLM) != 0 && (methods & CURLAUTH_DIGEST) == 0;
  if (!isNtlm || IsAscii(m_options->user + m_options->password)) return true;
  auto const password = InLatin1(m_options->password);
  if (!password || !IsAscii(m_options->user)) {
    AddTrouble("NTLM: libcurl cannot prove a password outside Latin-1 or a user outside ASCII",
               m_exchange.report->logOn.trouble);
    return false;
  }
  Set(CURLOPT_PASSWORD, password->c_str());
  methods = CURLAUTH_NTLM;
  return true;
}

bool CurlHandle::TriesPassword(HttpMessage const& message) {
  if (m_methodsLeft == CURLAUTH_NONE) return false;
  if (NumberOf(CURLINFO_RESPONSE_CODE) != kUnauthorized) return false;
  auto const offered = static_cast<unsigned long>(NumberOf(CURLINFO_HTTPAUTH_AVAIL));
  // Where the server would not take a ticket, the password has been tried.
  bool const isTried =
      (m_methods & kPasswordMethods & offered) != 0 && (offered & CURLAUTH_NEGOTIATE) == 0;
  unsigned long left = m_methodsLeft & offered;
  if (isTried || left == CURLAUTH_NONE || !PreparesNtlm(left)) return false;
  SetMethods(left);
  m_methodsLeft = CURLAUTH_NONE;
  int const requests = m_exchange.requests;
  Begin(message);
  m_exchange.requests = requests;
  return true;
}

void CurlHandle::Forget() {
  Set(CURLOPT_POSTFIELDS, static_cast<char const*>(nullptr));
  m_exchange = CurlExchange();
}

long CurlHandle::NumberOf(CURLINFO info) const {
  long number = 0;
  curl_easy_getinfo(m_easy.get(), info, &number);
  return number;
}

curl_off_t CurlHandle::CountOf(CURLINFO info) const {
  curl_off_t count = 0;
  curl_easy_getinfo(m_easy.get(), info, &count);
  return count;
}

}  // namespace lumo

#pragma once

#include <curl/curl.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "lumo/platform/http/CurlExchange.h"
#include "lumo/platform/http/HttpTransport.h"

namespace lumo {

/// libcurl refuses a setting.
class OptionRefused : public std::runtime_error {
 public:
  OptionRefused(CURLoption option, CURLcode code);
  CURLcode Code() const { return m_code; }

 private:
  CURLcode m_code;
};

/// One easy handle with its connection, used by one exchange at a time. It belongs to one set of
/// options: another user must not find the connection of the one before.
class CurlHandle {
 public:
  /// Throws `OptionRefused` and `std::bad_alloc`.
  explicit CurlHandle(std::shared_ptr<HttpOptions const> const& options);
  CurlHandle(CurlHandle const&) = delete;
  CurlHandle& operator=(CurlHandle const&) = delete;

  std::shared_ptr<HttpOptions const> const& Options() const { return m_options; }
  CURLM* Multi() const { return m_multi.get(); }
  CURL* Easy() const { return m_easy.get(); }
  CurlExchange& Exchange() { return m_exchange; }
  /// libcurl's words about the failure of the last exchange; may be empty.
  char const* Words() const { return m_words; }

  /// Gets ready for an exchange. The message must stay alive and unchanged until it is over.
  void Prepare(std::string const& path, eHttpVerb verb, HttpMessage const& message);
  /// Gets ready once more when the server has refused what it got and the password is still to be
  /// tried: libcurl prefers a ticket and goes no further, and texts outside ASCII wait for the
  /// server's question. False otherwise.
  bool TriesPassword(HttpMessage const& message);
  /// Lets go of the message.
  void Forget();

  long NumberOf(CURLINFO info) const;
  curl_off_t CountOf(CURLINFO info) const;

 private:
  struct FreeEasy {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
  };
  struct FreeMulti {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
  };
  struct FreeList {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };
  using HeaderList = std::unique_ptr<curl_slist, FreeList>;

  template <class Value>
  void Set(CURLoption option, Value value);
  void SetText(CURLoption option, std::string const& text);
  void SetBasics();
  void SetCallbacks();
  void SetLogOn();
  void SetTls();
  void SetProxy();
  void SetMethods(unsigned long methods);
  /// Gives the password the form that it needs when NTLM is to be used; false when it has none.
  bool PreparesNtlm(unsigned long& methods);
  void Begin(HttpMessage const& message);
  void SetTarget(std::string const& url, HttpHeaders const& headers);
  static void Append(HeaderList& list, std::string const& line);
  static HeaderList MakeHeaders(HttpHeaders const& headers);

  std::shared_ptr<HttpOptions const> m_options;
  bool m_isLoopback = false;
  unsigned long m_methods = CURLAUTH_NONE;      // ways to log on
  unsigned long m_methodsLeft = CURLAUTH_NONE;  // those to be tried when these fail
  CurlExchange m_exchange;
  char m_words[CURL_ERROR_SIZE] = {};
  // What the easy handle holds already: most calls repeat the headers of the one before.
  std::string m_url;
  HttpHeaders m_headers;
  HeaderList m_headerList;
  // Gone before what they point to.
  std::unique_ptr<CURLM, FreeMulti> m_multi;
  std::unique_ptr<CURL, FreeEasy> m_easy;
};

}  // namespace lumo

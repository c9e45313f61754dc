#include "lumo/toolkit/LookAtServer.h"

#include <curl/curl.h>

#include <memory>
#include <string_view>

namespace lumo {
namespace {

struct FreeEasy {
  void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
using Easy = std::unique_ptr<CURL, FreeEasy>;

constexpr long kLongestMs = 20'000;

void SetText(Easy const& easy, CURLoption option, std::string const& text) {
  if (!text.empty()) curl_easy_setopt(easy.get(), option, text.c_str());
}

void SetProxy(Easy const& easy, ConnectOptions const& options, HttpReport const& report) {
  bool const isDirect = report.proxy.empty() && report.proxyVariable.empty();
  if (isDirect) {
    curl_easy_setopt(easy.get(), CURLOPT_PROXY, "");
    return;
  }
  SetText(easy, CURLOPT_PROXY, options.proxy);
  SetText(easy, CURLOPT_PROXYUSERNAME, options.proxyUser);
  SetText(easy, CURLOPT_PROXYPASSWORD, options.proxyPassword);
  curl_easy_setopt(easy.get(), CURLOPT_PROXYAUTH,
                   static_cast<long>(CURLAUTH_BASIC | CURLAUTH_DIGEST | CURLAUTH_NTLM));
}

/// Takes "Subject:CN = server" and the like into the look.
void TakeLine(std::string_view line, ServerLook& look) {
  std::size_t const colon = line.find(':');
  if (colon == std::string_view::npos) return;
  std::string_view const name = line.substr(0, colon);
  std::string_view const value = line.substr(colon + 1);
  if (name == "Subject") look.subject = value;
  if (name == "Issuer") look.issuer = value;
  if (name == "Expire date") look.until = value;
  if (name == "X509v3 Subject Alternative Name") look.names = value;
}

}  // namespace

ServerLook LookAtServer(std::string const& url, ConnectOptions const& options,
                        HttpReport const& report) {
  ServerLook look;
  Easy const easy(curl_easy_init());
  if (!easy) return look;
  curl_easy_setopt(easy.get(), CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy.get(), CURLOPT_CONNECT_ONLY, 1L);
  curl_easy_setopt(easy.get(), CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy.get(), CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy.get(), CURLOPT_CONNECTTIMEOUT_MS, kLongestMs);
  curl_easy_setopt(easy.get(), CURLOPT_CERTINFO, 1L);
  curl_easy_setopt(easy.get(), CURLOPT_SSL_VERIFYPEER, 0L);
  curl_easy_setopt(easy.get(), CURLOPT_SSL_VERIFYHOST, 0L);
  SetProxy(easy, options, report);
  curl_easy_perform(easy.get());  // what is wrong has been told by the exchange
  char* address = nullptr;
  curl_easy_getinfo(easy.get(), CURLINFO_PRIMARY_IP, &address);
  if (address != nullptr) look.address = address;
  curl_certinfo* chain = nullptr;
  curl_easy_getinfo(easy.get(), CURLINFO_CERTINFO, &chain);
  if (chain == nullptr || chain->num_of_certs == 0) return look;
  for (curl_slist const* line = chain->certinfo[0]; line != nullptr; line = line->next) {
    TakeLine(line->data, look);
  }
  return look;
}

}  // namespace lumo

#include "lumo/toolkit/Url.h"

#include <algorithm>
#include <string_view>

#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

struct Parts {
  std::string scheme;
  std::string user;  // with a password perhaps
  std::string host;
  std::string port;
};

Parts PartsOf(std::string_view url) {
  Parts parts;
  std::size_t const colon = url.find("://");
  parts.scheme = colon == std::string_view::npos ? "http" : Lower(url.substr(0, colon));
  std::string_view rest = colon == std::string_view::npos ? url : url.substr(colon + 3);
  rest = rest.substr(0, rest.find_first_of("/?#"));
  std::size_t const at = rest.rfind('@');
  if (at != std::string_view::npos) {
    parts.user = rest.substr(0, at);
    rest.remove_prefix(at + 1);
  }
  std::size_t const bracket = rest.rfind(']');  // of an IPv6 address
  std::size_t const port = rest.find(':', bracket == std::string_view::npos ? 0 : bracket);
  parts.host = Lower(rest.substr(0, port));
  if (port != std::string_view::npos) parts.port = rest.substr(port + 1);
  return parts;
}

bool IsPort(std::string const& text) {
  return text.size() <= 5 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

void CheckUrl(std::string const& url) {
  Parts const parts = PartsOf(url);
  if (!parts.user.empty()) {  // the text is not repeated: it may hold a password
    throw Error(ErrorCode::InvalidArgument, "the server's address must not hold a user");
  }
  bool const isHttp = parts.scheme == "http" || parts.scheme == "https";
  bool const hasBlank = std::any_of(url.begin(), url.end(),
                                    [](char c) { return static_cast<unsigned char>(c) <= ' '; });
  if (isHttp && !hasBlank && !parts.host.empty() && IsPort(parts.port)) return;
  throw Error(ErrorCode::InvalidArgument, Quoted(url) + " is not an address of a server");
}

std::string HostOf(std::string const& url) { return PartsOf(url).host; }

std::string ServerOf(std::string const& url) {
  Parts const parts = PartsOf(url);
  std::string const usual = parts.scheme == "https" ? "443" : "80";
  return parts.scheme + "://" + parts.host + ":" + (parts.port.empty() ? usual : parts.port);
}

}  // namespace lumo

#include "cli/browse/Guard.h"

#include <sys/random.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace cli::browse {
namespace {

/// Takes as long whichever digits differ.
bool SameSecret(std::string const& a, std::string const& b) {
  if (a.size() != b.size() || a.empty()) return false;
  unsigned differences = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    differences |= static_cast<unsigned char>(a[i]) ^ static_cast<unsigned char>(b[i]);
  }
  return differences == 0;
}

/// Value of the cookie with that name; empty without one.
std::string CookieNamed(std::string const& name, std::string const& cookies) {
  for (std::size_t at = 0; at < cookies.size();) {
    std::size_t const end = std::min(cookies.find(';', at), cookies.size());
    std::string const one = cookies.substr(at, end - at);
    if (one.compare(0, name.size() + 1, name + "=") == 0) return one.substr(name.size() + 1);
    at = cookies.find_first_not_of("; ", end);
  }
  return "";
}

}  // namespace

std::string NewToken() {
  std::array<unsigned char, 32> bytes{};
  if (getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw std::system_error(errno, std::generic_category(), "cannot make a random token");
  }
  std::string text;
  for (unsigned char const byte : bytes) {
    text += "0123456789abcdef"[byte >> 4U];
    text += "0123456789abcdef"[byte & 15U];
  }
  return text;
}

void Guard::SetPort(int port) { m_port = std::to_string(port); }

std::string Guard::Cookie() const {
  // Ports do not tell cookies apart, so the name does.
  return "lumo_" + m_port + "=" + m_token + "; Path=/; HttpOnly; SameSite=Strict";
}

std::string Guard::TokenForOnce() {
  std::lock_guard const lock(m_mutex);
  m_once = NewToken();
  return m_once;
}

bool Guard::IsToken(std::string const& token) {
  if (SameSecret(token, m_token)) return true;
  std::lock_guard const lock(m_mutex);
  if (!SameSecret(token, m_once)) return false;
  m_once.clear();
  return true;
}

std::optional<Refusal> Guard::Judge(Asked const& asked) {
  if (asked.method != "GET") return Refusal{405, "this server answers GET alone"};
  // Browsers leave the usual port out.
  std::string const port = asked.host.find(':') == std::string::npos ? ":80" : "";
  std::string const host = asked.host + port;
  if (host != "127.0.0.1:" + m_port && host != "localhost:" + m_port) {
    return Refusal{403, "this server is not the host that the request names"};
  }
  bool const isPage = asked.path == "/";
  bool const isForeign = asked.fetchSite == "cross-site" || asked.fetchSite == "same-site";
  if (isForeign && !isPage) return Refusal{403, "another site sent this request"};
  if (SameSecret(CookieNamed("lumo_" + m_port, asked.cookies), m_token)) return {};
  if (isPage && IsToken(asked.token)) return {};
  return Refusal{403,
                 "this page wants the token of the command: open the address that `lumo browse` "
                 "printed"};
}

std::string PictureType(std::string_view bytes) {
  auto const begins = [&](std::string_view start) {
    return bytes.substr(0, start.size()) == start;
  };
  if (begins("\x89PNG\r\n\x1a\n")) return "image/png";
  if (begins("\xff\xd8\xff")) return "image/jpeg";
  if (begins("GIF87a") || begins("GIF89a")) return "image/gif";
  if (begins("RIFF") && bytes.size() >= 12 && bytes.substr(8, 4) == "WEBP") return "image/webp";
  return "";
}

}  // namespace cli::browse

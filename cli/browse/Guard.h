#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace cli::browse {

/// A random text of 64 hexadecimal digits. Throws std::system_error.
std::string NewToken();

/// What is looked at before a request is answered.
struct Asked {
  std::string method = {};
  std::string path = {};
  std::string host = {};       ///< header Host
  std::string cookies = {};    ///< header Cookie
  std::string token = {};      ///< parameter "token" of the address
  std::string fetchSite = {};  ///< header Sec-Fetch-Site
};

struct Refusal {
  int status = 403;
  std::string why = {};
};

/// Lets those in who know the token. Any page that a browser shows, from wherever it comes, may
/// send requests to a server on loopback, and any user of the machine can connect to it. So a
/// request must be a GET, name this server as its host (a foreign name that was made to lead to
/// 127.0.0.1 is refused), and carry the token: first in the address of the page, from then on in a
/// cookie that no script reads and that no request which another site starts brings along. Another
/// port of the same host gets that cookie when the user opens it there; docs/browse.md warns of it.
class Guard {
 public:
  /// The port is known once the server listens.
  void SetPort(int port);
  /// Nothing when the request may be answered.
  std::optional<Refusal> Judge(Asked const& asked);
  /// The value of Set-Cookie for somebody who came with a token.
  std::string Cookie() const;
  std::string const& Token() const { return m_token; }
  /// A token that is good for one request, for the command line of a browser, which every user of
  /// the machine can read.
  std::string TokenForOnce();

 private:
  bool IsToken(std::string const& token);

  std::string const m_token = NewToken();
  std::string m_port;
  std::mutex m_mutex;
  std::string m_once;
};

/// Type of a picture by its first bytes; empty for what is not a PNG, JPEG, GIF or WebP. Types that
/// can hold scripts are not among them.
std::string PictureType(std::string_view bytes);

}  // namespace cli::browse

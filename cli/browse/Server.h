#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "lumo/toolkit/Client.h"

namespace cli::browse {

struct ServerOptions {
  int port = 0;  ///< 0: any that is free
  /// Words what to do next about an error.
  std::function<std::string(lumo::Error const&)> advice = {};
};

/// Shows the materials of a server as a page, on 127.0.0.1 alone. Runs from construction to
/// destruction on threads of its own.
class Server {
 public:
  /// Throws std::runtime_error when it cannot listen on that port.
  Server(lumo::Client client, ServerOptions options);
  ~Server();
  Server(Server const&) = delete;
  Server& operator=(Server const&) = delete;

  int Port() const;
  /// The address of the page, with the token that lets in; `view` is what it shows first, such as
  /// "#/chart?db=...".
  std::string Address(std::string const& view = "") const;
  /// The same for one use, for the command line of a browser.
  std::string AddressForOnce(std::string const& view = "") const;
  /// Since the last request.
  std::chrono::seconds Idle() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> m_parts;
};

}  // namespace cli::browse

#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include "sandbox/http/LogOn.h"
#include "sandbox/store/Store.h"

namespace sandbox {

struct ServerOptions {
  LogOn logOn = LogOn::None;
  std::string user = "lumo";
  std::string password;
  std::string namespaceBase;    ///< the vendor's; empty for the one that the build set
  std::ostream* log = nullptr;  ///< takes a report of every request; outlives the server
};

/// The five endpoints over HTTP on 127.0.0.1.
class Server {
 public:
  explicit Server(Store& store, ServerOptions const& options = {});
  ~Server();
  Server(Server const&) = delete;
  Server& operator=(Server const&) = delete;

  /// Starts to answer on that port, on any free one for 0; returns the port. Throws
  /// std::runtime_error when it cannot.
  int Start(int port);
  /// Comes back at once, whoever is connected, or when the call that uses the store has ended.
  void Stop();

 private:
  struct Http;
  std::unique_ptr<Http> m_http;
};

}  // namespace sandbox

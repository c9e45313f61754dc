#pragma once

#include <memory>
#include <string>

#include "Store.h"

namespace sandbox {

/// The five endpoints over HTTP on 127.0.0.1.
class Server {
 public:
  explicit Server(Store& store);
  ~Server();
  Server(Server const&) = delete;
  Server& operator=(Server const&) = delete;

  /// Starts to answer on that port, on any free one for 0; returns the port. Throws
  /// std::runtime_error when it cannot.
  int Start(int port);
  void Stop();

 private:
  struct Http;
  Store& m_store;
  std::unique_ptr<Http> m_http;
};

}  // namespace sandbox

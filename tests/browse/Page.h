#pragma once

#include <httplib.h>

#include <memory>
#include <string>

#include "cli/browse/Server.h"
#include "sandbox/http/Server.h"
#include "sandbox/seed/Seed.h"

/// A page over a sandbox of its own, and what a browser with its cookie gets from it.
class Page {
 public:
  explicit Page(sandbox::Content content = sandbox::Content::Full)
      : m_store(sandbox::OpenStore(":memory:", content)), m_sandbox(m_store) {
    m_url = "http://127.0.0.1:" + std::to_string(m_sandbox.Start(0));
    lumo::ConnectOptions options;
    options.retry.maxAttempts = 1;
    auto const advice = [](lumo::Error const& /*error*/) { return "ask the administrator"; };
    m_server = std::make_unique<cli::browse::Server>(lumo::Client::Connect(m_url, options),
                                                     cli::browse::ServerOptions{0, advice});
  }
  ~Page() {
    m_server.reset();
    m_sandbox.Stop();
  }
  Page(Page const&) = delete;
  Page& operator=(Page const&) = delete;

  /// Ends the page, not the sandbox.
  void End() { m_server.reset(); }
  cli::browse::Server& Server() { return *m_server; }
  httplib::Client Browser() const { return httplib::Client("127.0.0.1", m_server->Port()); }
  /// "/?token=..."
  std::string PathWithToken() const {
    std::string const address = m_server->Address();
    return address.substr(address.find("/?"));
  }
  std::string Cookie() const {
    std::string const cookie = Browser().Get(PathWithToken())->get_header_value("Set-Cookie");
    return cookie.substr(0, cookie.find(';'));
  }
  httplib::Result Get(std::string const& path, httplib::Headers headers = {}) const {
    headers.emplace("Cookie", Cookie());
    return Browser().Get(path, headers);
  }
  /// What shall go wrong with the calls to come; see the sandbox.
  void Plan(std::string const& faults) const {
    httplib::Client(m_url).Put("/control/faults", faults, "text/plain");
  }

 private:
  sandbox::Store m_store;
  sandbox::Server m_sandbox;
  std::string m_url;
  std::unique_ptr<cli::browse::Server> m_server;
};

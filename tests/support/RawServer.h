#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

/// One accepted connection of a `RawServer`.
class RawConnection {
 public:
  explicit RawConnection(int socket) : m_socket(socket) {}
  /// The next request whole, by its Content-Length; empty when the client closed.
  std::string ReadRequest();
  /// Sends the bytes as they are; false when the client is gone.
  bool Send(std::string const& bytes) const;
  /// Whether more comes, or the client closes, within this time.
  bool HasNews(int milliseconds) const;
  /// Closes with a reset instead of an orderly end.
  void Reset() const;
  /// Waits until the client closes.
  void WaitForClose() const;
  /// The same without taking what the client sends.
  void WaitForCloseUnread() const;

 private:
  friend class RawServer;
  int m_socket;
  std::string m_read;
  std::function<void(std::string const&)> m_keep;
};

/// Server on a free port of 127.0.0.1 that does what the script says, byte by byte, with every
/// connection, each on its own thread. Keeps the requests it received. Ends with its object.
class RawServer {
 public:
  using Script = std::function<void(RawConnection&, int connectionNumber)>;
  explicit RawServer(Script script);
  ~RawServer();
  RawServer(RawServer const&) = delete;
  RawServer& operator=(RawServer const&) = delete;

  std::string Url() const { return "http://127.0.0.1:" + std::to_string(m_port); }
  int Port() const { return m_port; }
  std::vector<std::string> Requests() const;
  int Connections() const;

 private:
  void Accept();

  Script m_script;
  int m_listener;
  int m_port = 0;
  mutable std::mutex m_mutex;
  std::vector<std::string> m_requests;
  std::vector<int> m_sockets;
  std::vector<std::thread> m_threads;
  std::thread m_acceptor;
};

/// A complete reply with its Content-Length. `headers` are whole lines.
std::string HttpReply(std::string const& status, std::string const& body,
                      std::string const& headers = "Content-Type: text/xml; charset=utf-8\r\n");
/// Script that answers request after request with these, the last one for ever, whatever the
/// connection.
RawServer::Script Replies(std::vector<std::string> const& replies);

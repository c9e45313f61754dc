#pragma once

#include <string>
#include <thread>

/// Answers every POST on 127.0.0.1 with the same reply, as cheaply as possible, on one thread and
/// one connection after the other.
class LoopServer {
 public:
  explicit LoopServer(std::string const& body);
  ~LoopServer();
  LoopServer(LoopServer const&) = delete;
  LoopServer& operator=(LoopServer const&) = delete;

  std::string Url() const { return "http://127.0.0.1:" + std::to_string(m_port); }

 private:
  void Serve();
  bool Answer(int connection);

  std::string m_reply;
  int m_listener = -1;
  int m_port = 0;
  int m_stop = -1;  // an eventfd: readable when the server is to stop
  std::thread m_thread;
};

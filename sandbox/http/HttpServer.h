#pragma once

#include <httplib.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <string>

namespace sandbox {

/// Of the request that a connection carries.
struct Traffic {
  std::size_t bytesIn = 0;
  std::size_t bytesOut = 0;
  std::chrono::steady_clock::time_point begin;
  std::string body;     ///< of a service call
  std::string outcome;  ///< of a service call: whether it was done, and the fault that it met
};

/// One client's connection. Reading and writing wait no longer than the server runs.
class Connection : public httplib::Stream {
 public:
  using Timeout = std::chrono::milliseconds;

  /// Takes over the socket. The descriptor `stop` becomes readable when the server stops.
  Connection(int socket, int stop, Timeout timeout);
  ~Connection() override;
  Connection(Connection const&) = delete;
  Connection& operator=(Connection const&) = delete;

  /// The connection whose request the calling thread answers.
  static Connection& Current();

  /// Waits for the first byte of a request; false when none came in time.
  bool AwaitsRequest(Timeout timeout) const;
  /// Reads and drops so many bytes, so that the next request is found behind them.
  void Skip(std::size_t count);
  /// Waits that long; comes back when the server stops.
  void Pause(Timeout time) const;
  /// Closes after this request.
  void CloseNext() { m_isLast = true; }
  /// Closes now, without a reply, by a TCP reset.
  void Reset();
  bool IsLast() const { return m_isLast; }
  Traffic& OfRequest() { return m_traffic; }

  bool is_readable() const override;
  bool is_writable() const override;
  ssize_t read(char* bytes, std::size_t size) override;
  ssize_t write(char const* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return m_socket; }

 private:
  bool WaitFor(short event, Timeout timeout) const;

  int m_socket;
  int m_stop;
  Timeout m_timeout;
  std::array<char, 16384> m_input{};
  std::size_t m_inputBegin = 0;
  std::size_t m_inputEnd = 0;
  Traffic m_traffic;
  bool m_isLast = false;
  bool m_isReset = false;
};

/// An HTTP server that stops at once, whoever is connected.
class HttpServer : public httplib::Server {
 public:
  HttpServer();
  ~HttpServer() override;

  void Listen();
  void Stop();

 private:
  bool process_and_close_socket(socket_t socket) override;

  int m_stop;  // descriptor that is readable from Stop() to Listen()
};

}  // namespace sandbox

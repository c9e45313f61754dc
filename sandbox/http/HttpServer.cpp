#include "sandbox/http/HttpServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace sandbox {
namespace {

/// Address and port that `getName` knows of the socket; left alone when it knows none.
void ReadName(int (*getName)(int, sockaddr*, socklen_t*), int socket, std::string& ip, int& port) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  char text[INET_ADDRSTRLEN] = "";
  if (getName(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) return;
  if (address.sin_family != AF_INET) return;
  inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
  ip = text;
  port = ntohs(address.sin_port);
}

thread_local Connection* current = nullptr;

}  // namespace

Connection::Connection(int socket, int stop, Timeout timeout)
    : m_socket(socket), m_stop(stop), m_timeout(timeout) {
  current = this;
}

Connection::~Connection() {
  current = nullptr;
  if (!m_isReset) shutdown(m_socket, SHUT_RDWR);
  close(m_socket);
}

Connection& Connection::Current() { return *current; }

bool Connection::AwaitsRequest(Timeout timeout) const {
  return m_inputBegin < m_inputEnd || WaitFor(POLLIN, timeout);
}

void Connection::Skip(std::size_t count) {
  std::array<char, 4096> dropped{};
  while (count > 0) {
    ssize_t const got = read(dropped.data(), std::min(count, dropped.size()));
    if (got <= 0) return CloseNext();
    count -= static_cast<std::size_t>(got);
  }
}

void Connection::Pause(Timeout time) const {
  pollfd stop{m_stop, POLLIN, 0};
  poll(&stop, 1, static_cast<int>(time.count()));
}

void Connection::Reset() {
  linger const atOnce{1, 0};
  setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  m_isReset = true;
  m_isLast = true;
}

bool Connection::is_readable() const { return AwaitsRequest(m_timeout); }

bool Connection::is_writable() const { return WaitFor(POLLOUT, m_timeout); }

ssize_t Connection::read(char* bytes, std::size_t size) {
  if (m_inputBegin == m_inputEnd) {
    if (!WaitFor(POLLIN, m_timeout)) return -1;
    ssize_t const count = recv(m_socket, m_input.data(), m_input.size(), MSG_DONTWAIT);
    if (count <= 0) return count;
    m_inputBegin = 0;
    m_inputEnd = static_cast<std::size_t>(count);
  }
  std::size_t const count = std::min(size, m_inputEnd - m_inputBegin);
  std::copy_n(m_input.data() + m_inputBegin, count, bytes);
  m_inputBegin += count;
  m_traffic.bytesIn += count;
  return static_cast<ssize_t>(count);
}

/// All or nothing: the callers do not come back for the rest.
ssize_t Connection::write(char const* bytes, std::size_t size) {
  std::size_t done = 0;
  while (done < size && !m_isReset) {
    ssize_t const count = send(m_socket, bytes + done, size - done, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if ((errno != EAGAIN && errno != EINTR) || !WaitFor(POLLOUT, m_timeout)) {
      break;
    }
  }
  m_traffic.bytesOut += done;
  if (done == size) return static_cast<ssize_t>(size);
  CloseNext();
  return -1;
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
  ReadName(getpeername, m_socket, ip, port);
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
  ReadName(getsockname, m_socket, ip, port);
}

/// False when that did not happen in time or when the server stops.
bool Connection::WaitFor(short event, Timeout timeout) const {
  pollfd what[] = {{m_socket, event, 0}, {m_stop, POLLIN, 0}};
  int ready = 0;
  do {
    ready = poll(what, 2, static_cast<int>(timeout.count()));
  } while (ready < 0 && errno == EINTR);
  return ready > 0 && what[1].revents == 0;
}

HttpServer::HttpServer() : m_stop(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (m_stop < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

HttpServer::~HttpServer() { close(m_stop); }

void HttpServer::Listen() {
  eventfd_t ignored = 0;
  eventfd_read(m_stop, &ignored);
  listen_after_bind();
}

void HttpServer::Stop() {
  eventfd_write(m_stop, 1);
  stop();
}

bool HttpServer::process_and_close_socket(socket_t socket) {
  Connection connection(socket, m_stop, std::chrono::seconds(read_timeout_sec_));
  bool isFine = true;
  bool isLast = false;
  for (std::size_t calls = keep_alive_max_count_; isFine && !isLast && calls > 0; --calls) {
    if (!connection.AwaitsRequest(std::chrono::seconds(keep_alive_timeout_sec_))) break;
    connection.OfRequest() = {0, 0, std::chrono::steady_clock::now(), "", ""};
    isFine = process_request(connection, calls == 1, isLast, nullptr);
    isLast = isLast || connection.IsLast();
  }
  return isFine;
}

}  // namespace sandbox

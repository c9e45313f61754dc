#include "tests/support/RawServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <stdexcept>

std::string RawConnection::ReadRequest() {
  char bytes[65536];
  for (;;) {
    std::size_t const end = m_read.find("\r\n\r\n");
    if (end != std::string::npos) {
      std::size_t length = 0;
      std::size_t const header = m_read.find("Content-Length: ");
      if (header < end) length = std::strtoul(m_read.c_str() + header + 16, nullptr, 10);
      if (m_read.size() >= end + 4 + length) {
        std::string request = m_read.substr(0, end + 4 + length);
        m_read.erase(0, request.size());
        m_keep(request);
        return request;
      }
    }
    ssize_t const count = recv(m_socket, bytes, sizeof bytes, 0);
    if (count <= 0) return {};
    m_read.append(bytes, static_cast<std::size_t>(count));
  }
}

bool RawConnection::Send(std::string const& bytes) const {
  std::size_t sent = 0;
  while (sent < bytes.size()) {
    ssize_t const count = send(m_socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) return false;
    sent += static_cast<std::size_t>(count);
  }
  return true;
}

bool RawConnection::HasNews(int milliseconds) const {
  pollfd news{m_socket, POLLIN, 0};
  return poll(&news, 1, milliseconds) > 0;
}

void RawConnection::Reset() const {
  linger const hard{1, 0};
  setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
}

void RawConnection::WaitForClose() const {
  char byte = 0;
  while (recv(m_socket, &byte, 1, 0) > 0) {
  }
}

void RawConnection::WaitForCloseUnread() const {
  pollfd closed{m_socket, POLLRDHUP, 0};
  poll(&closed, 1, -1);
}

RawServer::RawServer(Script script)
    : m_script(std::move(script)), m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  if (m_listener < 0 || bind(m_listener, any, size) != 0 || listen(m_listener, 64) != 0 ||
      getsockname(m_listener, any, &size) != 0) {
    throw std::runtime_error("cannot listen on loopback");
  }
  m_port = ntohs(address.sin_port);
  m_acceptor = std::thread([this] { Accept(); });
}

RawServer::~RawServer() {
  shutdown(m_listener, SHUT_RDWR);
  m_acceptor.join();
  {
    std::lock_guard<std::mutex> const lock(m_mutex);
    for (int const socket : m_sockets) shutdown(socket, SHUT_RDWR);
  }
  for (std::thread& thread : m_threads) thread.join();
  for (int const socket : m_sockets) close(socket);
  close(m_listener);
}

void RawServer::Accept() {
  for (int number = 0;; ++number) {
    int const socket = accept(m_listener, nullptr, nullptr);
    if (socket < 0) return;
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_sockets.push_back(socket);
    m_threads.emplace_back([this, number, index = m_sockets.size() - 1, socket] {
      RawConnection connection(socket);
      connection.m_keep = [this](std::string const& request) {
        std::lock_guard<std::mutex> const keepLock(m_mutex);
        m_requests.push_back(request);
      };
      m_script(connection, number);
      std::lock_guard<std::mutex> const closeLock(m_mutex);
      close(socket);
      m_sockets[index] = -1;
    });
  }
}

std::vector<std::string> RawServer::Requests() const {
  std::lock_guard<std::mutex> const lock(m_mutex);
  return m_requests;
}

int RawServer::Connections() const {
  std::lock_guard<std::mutex> const lock(m_mutex);
  return static_cast<int>(m_sockets.size());
}

std::string HttpReply(std::string const& status, std::string const& content,
                      std::string const& headers) {
  std::string body = content;
  std::string const end = "</s:Envelope>";
  bool const isReply = body.size() > end.size() && body.substr(body.size() - end.size()) == end &&
                       body.find('\0') == std::string::npos;
  // What is not plain is read from its whole tree, and this leaves no trace in it.
  if (isReply && std::getenv("LUMO_TEST_OTHER_READING") != nullptr) body += "<?whole?>";
  return "HTTP/1.1 " + status + "\r\n" + headers +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

RawServer::Script Replies(std::vector<std::string> const& replies) {
  auto const next = std::make_shared<std::atomic<std::size_t>>(0);
  return [replies, next](RawConnection& connection, int /*number*/) {
    while (!connection.ReadRequest().empty()) {
      if (!connection.Send(replies[std::min(next->fetch_add(1), replies.size() - 1)])) return;
    }
  };
}

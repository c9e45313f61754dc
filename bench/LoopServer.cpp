#include "bench/LoopServer.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <utility>
#include <vector>

LoopServer::LoopServer(std::string const& body)
    : m_reply("HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\nContent-Length: " +
              std::to_string(body.size()) + "\r\n\r\n" + body),
      m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)),
      m_stop(eventfd(0, EFD_CLOEXEC)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const any = reinterpret_cast<sockaddr*>(&address);
  if (m_listener < 0 || m_stop < 0 || bind(m_listener, any, size) != 0 ||
      listen(m_listener, 16) != 0 || getsockname(m_listener, any, &size) != 0) {
    throw std::runtime_error("cannot listen on loopback");
  }
  m_port = ntohs(address.sin_port);
  m_thread = std::thread([this] { Serve(); });
}

LoopServer::~LoopServer() {
  eventfd_write(m_stop, 1);
  m_thread.join();
  close(m_listener);
  close(m_stop);
}

void LoopServer::Serve() {
  std::vector<pollfd> sockets = {{m_stop, POLLIN, 0}, {m_listener, POLLIN, 0}};
  while (poll(sockets.data(), sockets.size(), -1) > 0 && sockets[0].revents == 0) {
    for (std::size_t i = sockets.size(); i-- > 2;) {
      if (sockets[i].revents == 0 || Answer(sockets[i].fd)) continue;
      close(sockets[i].fd);
      sockets.erase(sockets.begin() + static_cast<std::ptrdiff_t>(i));
    }
    if (sockets[1].revents == 0) continue;
    int const connection = accept(m_listener, nullptr, nullptr);
    int const on = 1;
    setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    sockets.push_back({connection, POLLIN, 0});
  }
  for (std::size_t i = 2; i < sockets.size(); ++i) close(sockets[i].fd);
}

/// Small requests arrive in one piece, so that what was read is one request.
bool LoopServer::Answer(int connection) {
  char request[65536];
  if (recv(connection, request, sizeof request, 0) <= 0) return false;
  return send(connection, m_reply.data(), m_reply.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(m_reply.size());
}

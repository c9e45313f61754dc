#include "lumo/toolkit/Pool.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace lumo {

Pool::Pool(ServerSettings settings) : m_settings(std::move(settings)), m_process(getpid()) {}

Pool::~Pool() { ForgetParents(); }

void Pool::ForgetParents() {
  if (m_process == getpid()) return;
  m_process = getpid();
  // Closing them would end the parent's encrypted connections.
  for (auto& connection : m_idle) (void)connection.release();
  m_idle.clear();
  if (m_services) m_services->AddReference();
  m_services.Reset();
}

std::shared_ptr<Connection> Pool::Lend() {
  std::unique_ptr<Connection> connection;
  {
    std::lock_guard<std::mutex> const lock(m_mutex);
    ForgetParents();
    if (!m_idle.empty()) {
      connection = std::move(m_idle.back());
      m_idle.pop_back();
    }
  }
  if (!connection) connection = std::make_unique<Connection>(m_settings.url, m_settings.options);
  return {connection.release(), [pool = shared_from_this(), process = getpid()](Connection* lent) {
            pool->TakeBack(std::unique_ptr<Connection>(lent), process);
          }};
}

std::vector<std::shared_ptr<Connection>> Pool::Lend(std::size_t count) {
  std::vector<std::shared_ptr<Connection>> connections;
  while (connections.size() < count) connections.push_back(Lend());
  return connections;
}

std::size_t Pool::MostCalls() const {
  return static_cast<std::size_t>(std::max(1, m_settings.options.maxConcurrency));
}

void Pool::TakeBack(std::unique_ptr<Connection> connection, pid_t process) {
  if (process != getpid()) {
    (void)connection.release();
    return;
  }
  connection->Scope() = CallScope();
  connection->Scope().onCall = m_settings.options.onCall;
  connection->Scope().isInterrupted = m_settings.options.isInterrupted;
  std::lock_guard<std::mutex> const lock(m_mutex);
  if (m_idle.size() <= MostCalls()) m_idle.push_back(std::move(connection));
}

LumoServiceLayerServices& Pool::Services() {
  std::lock_guard<std::mutex> const lock(m_mutex);
  ForgetParents();
  if (!m_services) m_services = MakeServices(m_settings.url, m_settings.options, {});
  return *m_services;
}

}  // namespace lumo

#pragma once

#include <sys/types.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

#include "lumo/toolkit/Connection.h"
#include "lumo/toolkit/Settings.h"

namespace lumo {

/// The connections to one server, lent out and taken back, for all copies of a `Client`. A process
/// that was forked begins with new ones. Not installed.
class LUMO_API Pool : public std::enable_shared_from_this<Pool> {
 public:
  explicit Pool(ServerSettings settings);
  ~Pool();
  Pool(Pool const&) = delete;
  Pool& operator=(Pool const&) = delete;

  ServerSettings const& Settings() const { return m_settings; }
  /// A connection that nobody else uses; it comes back by itself.
  std::shared_ptr<Connection> Lend();
  std::vector<std::shared_ptr<Connection>> Lend(std::size_t count);
  /// As many as calls may be made at once.
  std::vector<std::shared_ptr<Connection>> LendAll() { return Lend(MostCalls()); }
  std::size_t MostCalls() const;
  /// The exact library over a connection of its own.
  LumoServiceLayerServices& Services();

 private:
  void TakeBack(std::unique_ptr<Connection> connection, pid_t process);
  /// Leaves the connections of a parent as they are: they are still its own.
  void ForgetParents();

  ServerSettings const m_settings;
  std::mutex m_mutex;
  pid_t m_process;
  std::vector<std::unique_ptr<Connection>> m_idle;
  SmartPtr<LumoServiceLayerServices> m_services;
};

}  // namespace lumo

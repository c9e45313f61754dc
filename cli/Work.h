#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "cli/Connection.h"
#include "cli/Interrupt.h"

namespace cli {

/// Splits long work over several connections. Chunks are made one after the other, worked on side
/// by side, and their results taken in their order by one thread at a time:
///
///     Work<Chunk, Result> work(next, process, take);
///     work.Run(connections);
///
/// At most a few chunks are under way, so that work of any length takes little memory. The first
/// fault, and Ctrl-C, ends the work: chunks under way come to their end or are given up, results
/// before the fault are still taken, then the fault is thrown.
template <class Chunk, class Result>
class Work {
 public:
  using Next = std::function<std::optional<Chunk>()>;
  using Process = std::function<Result(Connection&, Chunk const&)>;
  using Take = std::function<void(Result&&)>;

  Work(Next next, Process process, Take take)
      : m_next(std::move(next)), m_process(std::move(process)), m_take(std::move(take)) {}

  /// One worker for each connection, on threads of their own.
  void Run(std::vector<std::unique_ptr<Connection>> const& connections) {
    m_window = connections.size() * kAhead;
    std::vector<std::thread> threads;
    threads.reserve(connections.size());
    for (auto const& connection : connections) {
      threads.emplace_back([this, &connection] { RunOne(*connection); });
    }
    for (std::thread& thread : threads) thread.join();
    if (m_fault) std::rethrow_exception(m_fault);
  }

 private:
  static constexpr std::size_t kAhead = 3;

  void RunOne(Connection& connection) {
    while (auto numbered = MakeChunk()) {
      try {
        Result result = m_process(connection, numbered->second);
        Deliver(numbered->first, std::move(result));
      } catch (...) {
        Stop(numbered->first);
      }
    }
  }

  /// The next chunk with its number, once there is room for it.
  std::optional<std::pair<std::size_t, Chunk>> MakeChunk() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_room.wait(lock, [this] { return m_made < m_taken + m_window || IsOver(); });
    if (IsOver()) return std::nullopt;
    std::size_t const number = m_made;
    try {
      StopWhenInterrupted();
      if (std::optional<Chunk> chunk = m_next()) {
        ++m_made;
        return std::pair(number, std::move(*chunk));
      }
      m_isAtEnd = true;
    } catch (...) {
      StopLocked(number);
    }
    m_room.notify_all();
    return std::nullopt;
  }

  bool IsOver() const { return m_isAtEnd || m_fault; }

  void Deliver(std::size_t number, Result&& result) {
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_results.emplace(number, std::move(result));
    try {
      while (!m_results.empty() && m_results.begin()->first == m_taken && m_taken < m_faultAt) {
        m_take(std::move(m_results.begin()->second));
        m_results.erase(m_results.begin());
        ++m_taken;
      }
    } catch (...) {
      StopLocked(0);
    }
    m_room.notify_all();
  }

  void Stop(std::size_t number) {
    std::lock_guard<std::mutex> const lock(m_mutex);
    StopLocked(number);
  }

  /// Keeps the fault of the earliest chunk.
  void StopLocked(std::size_t number) {
    if (!m_fault || number < m_faultAt) {
      m_fault = std::current_exception();
      m_faultAt = number;
    }
    m_room.notify_all();
  }

  Next m_next;
  Process m_process;
  Take m_take;
  std::mutex m_mutex;
  std::condition_variable m_room;
  std::map<std::size_t, Result> m_results;  // those that wait for an earlier one
  std::size_t m_made = 0;
  std::size_t m_taken = 0;
  std::size_t m_window = 0;
  bool m_isAtEnd = false;
  std::exception_ptr m_fault;
  std::size_t m_faultAt = static_cast<std::size_t>(-1);
};

}  // namespace cli

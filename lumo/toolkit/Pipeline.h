#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "lumo/toolkit/Connection.h"

namespace lumo {

/// What a pipeline obeys, beside its work.
struct PipelineOptions {
  bool isOrdered = true;  ///< results in the order of their chunks, not as they come
  CancellationToken cancel = {};
  std::optional<std::chrono::steady_clock::time_point> deadline = {};
  std::function<void(CallEvent const&)> onCall = {};  ///< on the thread that takes
};

/// Splits long work over several connections, each on a thread of its own. Chunks are made one
/// after the other, worked on side by side, and their results taken by the thread that wants them:
///
///     Pipeline<Chunk, Result> pipeline(next, process, options);
///     pipeline.Start(connections);
///     while (auto result = pipeline.Take(onIdle)) Use(*result);
///
/// A few chunks for each worker are under way, so that work of any length takes little memory. A
/// fault ends the work: with order kept the results of the chunks before it are still taken, then
/// it is thrown. The end of the object gives up what is under way.
template <class Chunk, class Result>
class Pipeline {
 public:
  /// The next chunk; called by one worker at a time, with its connection.
  using Next = std::function<std::optional<Chunk>(Connection&)>;
  /// Called by all workers at once.
  using Process = std::function<Result(Connection&, Chunk&&)>;

  Pipeline(Next next, Process process, PipelineOptions options)
      : m_next(std::move(next)), m_process(std::move(process)), m_options(std::move(options)) {}
  ~Pipeline() { Stop(); }
  Pipeline(Pipeline const&) = delete;
  Pipeline& operator=(Pipeline const&) = delete;

  /// One worker for each connection.
  void Start(std::vector<std::shared_ptr<Connection>> connections) {
    m_connections = std::move(connections);
    m_window = m_connections.size() * kAhead;
    m_threads.reserve(m_connections.size());
    for (auto const& connection : m_connections) {
      connection->Scope() = ScopeOfWorker();
      m_threads.emplace_back([this, &connection] { Work(*connection); });
    }
  }

  /// The next result; nothing at the end. Calls `onIdle` several times a second while it waits.
  std::optional<Result> Take(std::function<void()> const& onIdle) {
    for (;;) {
      TellOfCalls();
      ThrowWhenOver();
      {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (!m_ready.wait_for(lock, kIdle, [this] { return IsDue() || HasEnded(); })) {
          lock.unlock();
          onIdle();
          continue;
        }
        if (IsDue()) return Pop();
      }
      Stop();
      TellOfCalls();
      if (m_fault) std::rethrow_exception(m_fault);
      return std::nullopt;
    }
  }

  /// Gives up what is under way, and waits for the workers, which takes them less than a second.
  void Stop() {
    m_stop.Cancel();
    {
      std::lock_guard<std::mutex> const lock(m_mutex);
      m_room.notify_all();
    }
    for (std::thread& thread : m_threads) thread.join();
    m_threads.clear();
    m_connections.clear();
  }

  std::uint64_t Received() const { return *m_received; }

 private:
  static constexpr std::size_t kAhead = 3;
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  static constexpr std::chrono::milliseconds kIdle{100};

  CallScope ScopeOfWorker() {
    CallScope scope;
    scope.cancel = m_options.cancel;
    scope.stop = m_stop;
    scope.deadline = m_options.deadline;
    scope.received = m_received;
    if (m_options.onCall) {
      scope.onCall = [this](CallEvent const& event) {
        std::lock_guard<std::mutex> const lock(m_mutex);
        m_calls.push_back(event);
      };
    }
    return scope;
  }

  void Work(Connection& connection) {
    while (auto numbered = MakeChunk(connection)) {
      try {
        Deliver(numbered->first, m_process(connection, std::move(numbered->second)));
      } catch (...) {
        Fail(numbered->first);
      }
    }
  }

  /// The next chunk with its number, once there is room for it.
  std::optional<std::pair<std::size_t, Chunk>> MakeChunk(Connection& connection) {
    std::lock_guard<std::mutex> const making(m_making);
    std::size_t number = 0;
    {
      std::unique_lock<std::mutex> lock(m_mutex);
      m_room.wait(lock, [this] { return m_made < m_taken + m_window || IsOver(); });
      if (IsOver()) return std::nullopt;
      number = m_made;
    }
    try {
      std::optional<Chunk> chunk = m_next(connection);
      std::lock_guard<std::mutex> const lock(m_mutex);
      if (chunk) {
        ++m_made;
        return std::pair(number, std::move(*chunk));
      }
      m_isAtEnd = true;
      m_ready.notify_all();
    } catch (...) {
      Fail(number);
    }
    return std::nullopt;
  }

  bool IsOver() const { return m_isAtEnd || m_fault || m_stop.IsCancelled(); }

  void Deliver(std::size_t number, Result&& result) {
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_results.emplace(number, std::move(result));
    m_ready.notify_all();
  }

  /// Keeps the fault of the earliest chunk.
  void Fail(std::size_t number) {
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (number < m_faultAt) {
      m_fault = std::current_exception();
      m_faultAt = number;
    }
    m_room.notify_all();
    m_ready.notify_all();
  }

  /// Whether a result can be taken now.
  bool IsDue() const {
    if (m_results.empty()) return false;
    return !m_options.isOrdered || m_results.begin()->first == m_taken;
  }

  bool HasEnded() const {
    if (m_fault) return !m_options.isOrdered || m_taken == m_faultAt;
    return m_isAtEnd && m_taken == m_made;
  }

  Result Pop() {
    Result result = std::move(m_results.begin()->second);
    m_results.erase(m_results.begin());
    ++m_taken;
    m_room.notify_all();
    return result;
  }

  void TellOfCalls() {
    std::deque<CallEvent> calls;
    {
      std::lock_guard<std::mutex> const lock(m_mutex);
      calls.swap(m_calls);
    }
    for (CallEvent const& call : calls) m_options.onCall(call);
  }

  void ThrowWhenOver() {
    CallScope scope;
    scope.cancel = m_options.cancel;
    scope.deadline = m_options.deadline;
    if (!scope.IsOver()) return;
    Stop();
    scope.ThrowWhenOver();
  }

  Next m_next;
  Process m_process;
  PipelineOptions m_options;
  CancellationToken m_stop;
  std::shared_ptr<std::atomic<std::uint64_t>> m_received =
      std::make_shared<std::atomic<std::uint64_t>>(0);
  std::vector<std::shared_ptr<Connection>> m_connections;
  std::vector<std::thread> m_threads;

  std::mutex m_making;  // held by the worker that asks for the next chunk
  std::mutex m_mutex;   // of all that follows
  std::condition_variable m_room;
  std::condition_variable m_ready;
  std::map<std::size_t, Result> m_results;  // those that were not taken yet
  std::deque<CallEvent> m_calls;
  std::size_t m_made = 0;
  std::size_t m_taken = 0;
  std::size_t m_window = 0;
  bool m_isAtEnd = false;
  std::exception_ptr m_fault;
  std::size_t m_faultAt = kNone;
};

}  // namespace lumo

#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "lumo/toolkit/Connection.h"
#include "lumo/toolkit/Gate.h"
#include "lumo/toolkit/Judge.h"

namespace lumo {

/// The tries of one call: how many there were, whether another one follows, and when.
class Tries {
 public:
  using Clock = std::chrono::steady_clock;

  /// Both outlive the object.
  Tries(RetryPolicy const& policy, CallScope const& scope) : m_policy(policy), m_scope(scope) {}

  void Begin();
  int Number() const { return m_number; }

  /// Waits until the call is to be made again. Throws the failure when it is not, with all tries
  /// and with what the server wants; and throws when the work is over.
  void WaitForNext(FailedTry const& failed, Gate& gate);
  /// Throws when the server does not want to be called within the time that a try may wait.
  void ThrowWhenTooLong(Clock::time_point closedUntil) const;

 private:
  Clock::time_point LastTry() const;
  std::chrono::milliseconds Backoff() const;
  [[noreturn]] void Throw(FailedTry const& failed) const;

  RetryPolicy const& m_policy;
  CallScope const& m_scope;
  int m_number = 0;
  Clock::time_point m_begin;  // of the first try
  std::vector<Attempt> m_failed;
};

}  // namespace lumo

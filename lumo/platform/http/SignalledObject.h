#pragma once

#include <atomic>

/// A flag that says that something is complete.
class SignalledObject {
 public:
  /// Says so; there is no way back.
  void Set() { m_set = true; }
  bool IsSet() const { return m_set; }

 private:
  std::atomic<bool> m_set{false};
};

#pragma once

#include <atomic>

/// A flag that says that something is complete.
class SignalledObject {
 public:
  void Set() { m_set = true; }
  bool IsSet() const { return m_set; }

 private:
  std::atomic<bool> m_set{false};
};

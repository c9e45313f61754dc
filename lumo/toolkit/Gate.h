#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>

#include "lumo/platform/core/Export.h"

namespace lumo {

/// Lets calls to one server through, so many at once, for all threads of the process. It begins
/// with 4, is halved when the server is overloaded, and grows by one after a good while without
/// that. A server that asks to be left alone gets no call until then.
class LUMO_API Gate {
 public:
  using Clock = std::chrono::steady_clock;

  /// The one of that server; a process that was forked begins with new ones. Everything behind the
  /// host and port of the URL is of no matter.
  static std::shared_ptr<Gate> Of(std::string const& url);

  /// A place among the calls under way; leaves when it ends.
  class Place {
   public:
    explicit Place(Gate& gate) : m_gate(&gate), m_since(Clock::now()) {}
    ~Place() { m_gate->Leave(); }
    Place(Place const&) = delete;
    Place& operator=(Place const&) = delete;
    Clock::time_point Since() const { return m_since; }

   private:
    Gate* m_gate;
    Clock::time_point m_since;
  };

  /// Waits a short while for a place among at most `most` calls; null when none came free, so that
  /// the caller can look whether it is to go on.
  std::unique_ptr<Place> Enter(int most);
  /// When the server wants to be called again, if that is in the future.
  Clock::time_point ClosedUntil() const;
  /// Calls that may be made at once now, at most `most`.
  int Width(int most) const;

  /// What the call in that place came to: answered,
  void NoteSuccess();
  /// or refused or not answered, because the server has too much to do. Calls that began before the
  /// last such note tell nothing new.
  void NoteOverload(Place const& place);
  /// No call before this time.
  void CloseUntil(Clock::time_point time);

 private:
  void Leave();
  int WidthLocked(int most) const;

  mutable std::mutex m_mutex;
  std::condition_variable m_left;
  int m_inside = 0;
  int m_width = 4;
  int m_successes = 0;  // since the width changed, while it was used up
  Clock::time_point m_closedUntil;
  Clock::time_point m_halvedAt;
};

}  // namespace lumo

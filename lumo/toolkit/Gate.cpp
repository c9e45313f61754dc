#include "lumo/toolkit/Gate.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <map>

#include "lumo/toolkit/Url.h"

namespace lumo {
namespace {

constexpr std::chrono::milliseconds kLook{50};
/// Good calls, for each that may be made at once, before one more may.
constexpr int kPatience = 8;
constexpr int kWidest = 1024;

/// The gates of this process. Those of a parent are left as they are: its threads may have been
/// inside when it forked.
struct Gates {
  pid_t process = getpid();
  std::mutex mutex;
  std::map<std::string, std::shared_ptr<Gate>> all;
};

}  // namespace

std::shared_ptr<Gate> Gate::Of(std::string const& url) {
  static std::mutex making;
  static Gates* gates = nullptr;
  Gates* mine = nullptr;
  {
    std::lock_guard<std::mutex> const lock(making);
    if (gates == nullptr || gates->process != getpid()) gates = new Gates();
    mine = gates;
  }
  std::lock_guard<std::mutex> const lock(mine->mutex);
  std::shared_ptr<Gate>& gate = mine->all[ServerOf(url)];
  if (!gate) gate = std::make_shared<Gate>();
  return gate;
}

std::unique_ptr<Gate::Place> Gate::Enter(int most) {
  std::unique_lock<std::mutex> lock(m_mutex);
  auto const isFree = [&] { return Clock::now() >= m_closedUntil && m_inside < WidthLocked(most); };
  if (!m_left.wait_for(lock, kLook, isFree)) return nullptr;
  ++m_inside;
  return std::make_unique<Place>(*this);
}

Gate::Clock::time_point Gate::ClosedUntil() const {
  std::lock_guard<std::mutex> const lock(m_mutex);
  return m_closedUntil;
}

int Gate::Width(int most) const {
  std::lock_guard<std::mutex> const lock(m_mutex);
  return WidthLocked(most);
}

int Gate::WidthLocked(int most) const { return std::max(1, std::min(m_width, most)); }

void Gate::NoteSuccess() {
  std::lock_guard<std::mutex> const lock(m_mutex);
  if (m_inside < m_width) return;
  if (++m_successes < m_width * kPatience) return;
  m_successes = 0;
  m_width = std::min(m_width + 1, kWidest);
  m_left.notify_all();
}

void Gate::NoteOverload(Place const& place) {
  std::lock_guard<std::mutex> const lock(m_mutex);
  m_successes = 0;
  if (place.Since() < m_halvedAt) return;
  m_halvedAt = Clock::now();
  m_width = std::max(1, m_width / 2);
}

void Gate::CloseUntil(Clock::time_point time) {
  std::lock_guard<std::mutex> const lock(m_mutex);
  m_closedUntil = std::max(m_closedUntil, time);
}

void Gate::Leave() {
  {
    std::lock_guard<std::mutex> const lock(m_mutex);
    --m_inside;
  }
  m_left.notify_all();  // each waits for a width of its own
}

}  // namespace lumo

#include "lumo/toolkit/Tries.h"

#include <algorithm>
#include <ctime>
#include <random>
#include <string>
#include <thread>
#include <utility>

namespace lumo {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds kLook{50};
constexpr std::chrono::hours kLongest{24 * 366};

/// The time in so many seconds, "2026-03-17 09:30:00 UTC".
std::string TimeIn(seconds wait) {
  std::time_t const time = std::time(nullptr) + wait.count();
  std::tm parts{};
  gmtime_r(&time, &parts);
  char text[64];
  std::size_t const length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S UTC", &parts);
  return {text, length};
}

std::string LeaveAlone(seconds wait) {
  return "the server wants to be left alone for " + std::to_string(wait.count()) + " s, until " +
         TimeIn(wait);
}

Hint WaitHint(seconds wait) { return {HintCode::WaitSeconds, {std::to_string(wait.count())}}; }

/// A part of the time, from the half to the whole.
milliseconds Jittered(milliseconds time) {
  thread_local std::minstd_rand random(std::random_device{}());
  std::uniform_int_distribution<milliseconds::rep> part(time.count() / 2, time.count());
  return milliseconds(part(random));
}

}  // namespace

void Tries::Begin() {
  if (m_number++ == 0) m_begin = Clock::now();
}

Tries::Clock::time_point Tries::LastTry() const {
  Clock::time_point last = m_number == 0 ? Clock::now() : m_begin;
  last += std::clamp<milliseconds>(m_policy.maxElapsed, milliseconds(0), kLongest);
  if (m_scope.lastTry) last = std::min(last, *m_scope.lastTry);
  if (m_scope.deadline) last = std::min(last, *m_scope.deadline);
  return last;
}

milliseconds Tries::Backoff() const {
  milliseconds wait = m_policy.initialBackoff;
  for (int i = 1; i < m_number && wait < m_policy.maxBackoff; ++i) wait *= 2;
  return Jittered(std::clamp(wait, milliseconds(0), m_policy.maxBackoff));
}

void Tries::Throw(FailedTry const& failed) const {
  ErrorDetails details = failed.error.Details();
  std::string text = failed.error.what();
  if (m_number > 1) {
    details.attempts = m_failed;
    seconds const spent = std::chrono::duration_cast<seconds>(Clock::now() - m_begin);
    text += " (" + std::to_string(m_number) + " tries in " + std::to_string(spent.count()) + " s)";
  }
  if (failed.retryAfter) {
    details.hint = WaitHint(*failed.retryAfter);
    text += "; " + LeaveAlone(*failed.retryAfter);
  }
  throw Error(failed.error.Code(), text, std::move(details));
}

void Tries::ThrowWhenTooLong(Clock::time_point closedUntil) const {
  if (closedUntil <= LastTry()) return;
  seconds const wait = std::chrono::ceil<seconds>(closedUntil - Clock::now());
  throw Error(ErrorCode::RateLimited, LeaveAlone(wait), WaitHint(wait));
}

void Tries::WaitForNext(FailedTry const& failed, Gate& gate) {
  Error const& error = failed.error;
  Clock::time_point const now = Clock::now();
  m_failed.push_back({m_number, error.Code(), error.what(),
                      std::chrono::duration_cast<milliseconds>(now - m_begin)});
  bool const mayRepeat = error.IsRetryable() && m_number < m_policy.maxAttempts &&
                         (m_scope.repeatsTimeouts || error.Code() != ErrorCode::Timeout);
  if (!mayRepeat) Throw(failed);
  milliseconds wait = Backoff();
  if (failed.retryAfter) wait = std::max<milliseconds>(wait, *failed.retryAfter);
  if (now + wait > LastTry()) Throw(failed);
  if (failed.retryAfter) gate.CloseUntil(now + *failed.retryAfter);
  for (Clock::time_point until = now + wait; Clock::now() < until;) {
    m_scope.ThrowWhenOver(error.Operation());
    std::this_thread::sleep_until(std::min(until, Clock::now() + kLook));
  }
}

}  // namespace lumo

#include "python/Call.h"

#include <unistd.h>

#include <map>
#include <string>

namespace lumo::python {

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{50};
/// For what is at work at the end. A callback of Python may take for ever.
constexpr std::chrono::seconds kLongestEnd{10};

}  // namespace

std::atomic<int> AtWork::s_count{0};
std::atomic<bool> AtWork::s_isOver{false};
std::thread::id AtWork::s_last;

AtWork::AtWork() {
  ++s_count;
  if (!IsOver()) return;
  PyEval_SaveThread();
  Stay();
}

void AtWork::Stay() {
  --s_count;
  for (;;) pause();
}

void AtWork::End() {
  s_last = std::this_thread::get_id();
  s_isOver = true;
  auto const limit = std::chrono::steady_clock::now() + kLongestEnd;
  py::gil_scoped_release const release;  // those that are about to take the lock get it
  while (s_count > 0 && std::chrono::steady_clock::now() < limit) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

thread_local Interrupts* Interrupts::s_current = nullptr;

bool Interrupts::Poll() {
  if (m_raised || AtWork::IsOver()) return true;
  auto const now = std::chrono::steady_clock::now();
  if (now < m_next) return false;
  m_next = now + kBetweenLooks;
  Acquire const lock;
  if (lock && PyErr_CheckSignals() != 0) m_raised.emplace();
  return !lock || m_raised;
}

Held Hold(py::object object) {
  return {new py::object(std::move(object)), [](py::object* held) {
            Acquire const lock;
            if (lock) delete held;
          }};
}

py::object const& FromPackage(char const* module, char const* name) {
  // Left behind at the end of the process, when the interpreter is gone already.
  static auto* const known = new std::map<std::string, py::object>();
  auto [place, isNew] = known->try_emplace(std::string(module) + "." + name);
  if (isNew) place->second = py::module_::import(module).attr(name);
  return place->second;
}

}  // namespace lumo::python

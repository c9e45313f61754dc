#include "python/Call.h"

#include <map>
#include <string>

namespace lumo::python {

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{50};

}  // namespace

thread_local Interrupts* Interrupts::s_current = nullptr;

bool Interrupts::Poll() {
  if (m_raised) return true;
  auto const now = std::chrono::steady_clock::now();
  if (now < m_next) return false;
  m_next = now + kBetweenLooks;
  py::gil_scoped_acquire const lock;
  if (PyErr_CheckSignals() != 0) m_raised.emplace();
  return m_raised.has_value();
}

Held Hold(py::object object) {
  return {new py::object(std::move(object)), [](py::object* held) {
            py::gil_scoped_acquire const lock;
            delete held;
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

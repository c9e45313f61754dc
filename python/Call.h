#pragma once

#include <pybind11/pybind11.h>

#include <chrono>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "lumo/Toolkit.h"

/// How the module calls the toolkit: without the lock of the interpreter, so that other threads of
/// Python go on, and with an eye on signals, so that Ctrl-C ends a call that waits.
namespace lumo::python {

namespace py = pybind11;

/// Looks for signals while a call of this thread is under way.
class Interrupts {
 public:
  Interrupts() : m_outer(s_current) { s_current = this; }
  ~Interrupts() { s_current = m_outer; }
  Interrupts(Interrupts const&) = delete;
  Interrupts& operator=(Interrupts const&) = delete;

  /// Whether a signal handler of Python has raised something in the present call of this thread;
  /// never in a thread of the toolkit's own. Called without the lock.
  static bool Current() { return s_current != nullptr && s_current->Poll(); }
  /// Throws what the handler raised, if it did; called with the lock.
  void Rethrow() const {
    if (m_raised) throw py::error_already_set(*m_raised);
  }

 private:
  bool Poll();

  static thread_local Interrupts* s_current;

  Interrupts* m_outer;
  std::chrono::steady_clock::time_point m_next = {};
  std::optional<py::error_already_set> m_raised;
};

/// Does the work without the interpreter's lock. The work must not touch objects of Python. What a
/// signal handler raised meanwhile is thrown, even when the work was done in time.
template <class Work>
auto Unlocked(Work work) {
  Interrupts interrupts;
  auto const run = [&work] {
    py::gil_scoped_release const release;
    return work();
  };
  try {
    if constexpr (std::is_void_v<decltype(work())>) {
      run();
      interrupts.Rethrow();
    } else {
      auto result = run();
      interrupts.Rethrow();
      return result;
    }
  } catch (Error const&) {
    interrupts.Rethrow();
    throw;
  }
}

/// Keeps an object of Python for threads that do not have the lock.
using Held = std::shared_ptr<py::object>;
Held Hold(py::object object);

/// What a module of the package defines, looked up once.
py::object const& FromPackage(char const* module, char const* name);

}  // namespace lumo::python

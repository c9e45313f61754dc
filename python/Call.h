#pragma once

#include <pybind11/pybind11.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

#include "lumo/Toolkit.h"

/// How the module calls the toolkit: without the lock of the interpreter, so that other threads of
/// Python go on, and with an eye on signals, so that Ctrl-C ends a call that waits.
namespace lumo::python {

namespace py = pybind11;

/// A piece of work that needs the lock of the interpreter, or will need it again.
///
/// When the interpreter ends, threads that ask for its lock are ended where they stand, which ends
/// the process when C++ is below them. So what is at work then is cancelled and waited for, and its
/// threads are kept from going back to Python, but for the one that ends the interpreter.
class AtWork {
 public:
  /// With the lock; the thread stays here for ever when all is over.
  AtWork();
  ~AtWork() { --s_count; }
  AtWork(AtWork const&) = delete;
  AtWork& operator=(AtWork const&) = delete;

  /// Whether this thread must not ask for the lock any more.
  static bool IsOver() { return s_isOver && std::this_thread::get_id() != s_last; }
  /// For the end of the interpreter, on the thread that ends it, with the lock.
  static void End();
  /// For a new process, which has nothing of what other threads were doing.
  static void BeginAnew() { s_count = 0; }

 protected:
  struct WithoutLock {};
  explicit AtWork(WithoutLock) { ++s_count; }
  /// Instead of going back.
  [[noreturn]] static void Stay();

 private:
  static std::atomic<int> s_count;
  static std::atomic<bool> s_isOver;
  static std::thread::id s_last;
};

/// Gives the lock away.
class Release : AtWork {
 public:
  Release() : m_state(PyEval_SaveThread()) {}
  ~Release() {
    if (IsOver()) Stay();
    PyEval_RestoreThread(m_state);
  }
  Release(Release const&) = delete;
  Release& operator=(Release const&) = delete;

 private:
  PyThreadState* m_state;
};

/// Takes the lock in a thread that does not have it, unless all is over.
class Acquire : AtWork {
 public:
  Acquire() : AtWork(WithoutLock{}) {
    // While the interpreter is taken down, its thread has the lock.
    bool const isThere =
        Py_IsInitialized() != 0 || py::detail::get_thread_state_unchecked() != nullptr;
    if (isThere && !IsOver()) m_lock.emplace();
  }
  /// Whether objects of Python may be touched.
  explicit operator bool() const { return m_lock.has_value(); }

 private:
  std::optional<py::gil_scoped_acquire> m_lock;
};

/// Looks for signals while a call of this thread is under way.
class Interrupts {
 public:
  Interrupts() : m_outer(s_current) { s_current = this; }
  ~Interrupts() { s_current = m_outer; }
  Interrupts(Interrupts const&) = delete;
  Interrupts& operator=(Interrupts const&) = delete;

  /// Whether a signal handler of Python has raised something in the present call of this thread, or
  /// the interpreter ends; never in a thread of the toolkit's own. Called without the lock.
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
    Release const release;
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

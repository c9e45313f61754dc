#include <pybind11/chrono.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <string>

#include "python/Call.h"
#include "python/Parts.h"

namespace lumo::python {
namespace {

using std::chrono::milliseconds;

using Setters = std::map<std::string, std::function<void(py::handle)>>;

/// Hands each argument that is not None to its setter. An error does not show the value, which may
/// be a password.
void Apply(py::kwargs const& given, Setters const& setters) {
  for (auto const& [key, value] : given) {
    auto const name = py::cast<std::string>(key);
    auto const setter = setters.find(name);
    if (setter == setters.end()) {
      throw py::type_error("unexpected keyword argument '" + name + "'");
    }
    if (value.is_none()) continue;
    try {
      setter->second(value);
    } catch (py::cast_error const&) {
      auto const type = py::cast<std::string>(py::type::handle_of(value).attr("__name__"));
      throw py::type_error(name + "= does not take this value of type " + type);
    }
  }
}

template <class Field>
std::function<void(py::handle)> Into(Field& field) {
  return [&field](py::handle value) { field = py::cast<Field>(value); };
}

/// A path is taken where a text is.
template <>
std::function<void(py::handle)> Into(std::string& field) {
  return [&field](py::handle value) {
    bool const isPath = py::hasattr(value, "__fspath__");
    field = py::cast<std::string>(isPath ? value.attr("__fspath__")() : value);
  };
}

/// Calls at once, or tries.
template <>
std::function<void(py::handle)> Into(int& field) {
  return [&field](py::handle value) {
    field = py::cast<int>(value);
    if (field < 0) throw Error(ErrorCode::InvalidArgument, "a number of calls is not negative");
  };
}

/// Seconds, as Python counts time. Up to the next millisecond, for 0 is without a limit.
template <>
std::function<void(py::handle)> Into(milliseconds& field) {
  return [&field](py::handle value) {
    auto const seconds = py::cast<double>(value);
    constexpr double kMost = 1e9;
    if (!(seconds >= 0 && seconds <= kMost)) {
      throw Error(ErrorCode::InvalidArgument, "a time is a number of seconds from 0 to 1e9");
    }
    field = milliseconds(static_cast<std::int64_t>(std::ceil(seconds * 1000)));
  };
}

template <>
std::function<void(py::handle)> Into(std::size_t& field) {
  return [&field](py::handle value) {
    auto const number = py::cast<long long>(value);
    if (number < 0) throw Error(ErrorCode::InvalidArgument, "a number of records is not negative");
    field = static_cast<std::size_t>(number);
  };
}

void Check(Acquire const& lock) {
  if (!lock) throw Error(ErrorCode::Cancelled, "the interpreter ends");
}

/// A function of Python for the toolkit, which calls it without the lock.
template <class Event>
std::function<void(Event const&)> Callback(py::handle function) {
  Held const held = Hold(py::reinterpret_borrow<py::object>(function));
  return [held](Event const& event) {
    Acquire const lock;
    Check(lock);
    (*held)(event);
  };
}

double SecondsOf(std::chrono::microseconds time) {
  return std::chrono::duration<double>(time).count();
}

/// Looks for signals, too: a read waits on the caller's thread.
void LookForSignals() {
  Acquire const lock;
  Check(lock);
  if (PyErr_CheckSignals() != 0) throw py::error_already_set();
}

}  // namespace

ConnectOptions ConnectOptionsOf(py::kwargs const& given) {
  ConnectOptions options;
  std::string logOn;
  Password password;
  Held kept;
  auto& retry = options.retry;
  Apply(
      given,
      {{"log_on", Into(logOn)},
       {"user", Into(password.user)},
       {"password", Into(password.password)},
       {"domain", Into(password.domain)},
       {"namespace", Into(options.vendorNamespace)},
       {"application_name", Into(options.applicationName)},
       {"ca_file", Into(options.caFile)},
       {"ca_folder", Into(options.caFolder)},
       {"certificate_file", Into(options.certificateFile)},
       {"key_file", Into(options.keyFile)},
       {"proxy", Into(options.proxy)},
       {"proxy_user", Into(options.proxyUser)},
       {"proxy_password", Into(options.proxyPassword)},
       {"resolve_timeout", Into(options.resolve)},
       {"connect_timeout", Into(options.connect)},
       {"stall_timeout", Into(options.stall)},
       {"max_concurrency", Into(options.maxConcurrency)},
       {"max_attempts", Into(retry.maxAttempts)},
       {"max_retry_time", Into(retry.maxElapsed)},
       {"kept", [&](py::handle value) { kept = Hold(py::reinterpret_borrow<py::object>(value)); }},
       {"on_call", [&](py::handle value) { options.onCall = Callback<CallEvent>(value); }}});
  if (logOn == "ticket") {
    options.credentials = Ticket{};
  } else if (logOn == "anonymous") {
    options.credentials = Anonymous{};
  } else if (logOn == "password") {
    options.credentials = password;
  }
  for (auto const& [key, value] : given) {  // which errors then name
    auto const name = py::cast<std::string>(key);
    std::string setting = name;
    std::replace(setting.begin(), setting.end(), '_', '-');
    if (!value.is_none()) options.origins[setting] = name + "=";
  }
  // All that uses the connections has this function, and keeps what they need.
  options.isInterrupted = [kept] { return Interrupts::Current(); };
  return options;
}

ReadOptions ReadOptionsOf(py::kwargs const& given) {
  ReadOptions options;
  std::function<void(Progress const&)> tell;
  Apply(given, {{"unit_system", Into(options.unitSystem)},
                {"currency", Into(options.currency)},
                {"chunk_size", Into(options.chunkSize)},
                {"concurrency", Into(options.concurrency)},
                {"ordered", Into(options.isOrdered)},
                {"with_files", Into(options.withFiles)},
                {"time_limit", Into(options.timeLimit)},
                {"on_progress", [&](py::handle value) { tell = Callback<Progress>(value); }}});
  options.onProgress = [tell](Progress const& progress) {
    LookForSignals();
    if (tell) tell(progress);
  };
  return options;
}

void AddOptions(py::module_& module) {
  py::class_<Progress>(module, "Progress")
      .def_readonly("records_done", &Progress::recordsDone)
      .def_readonly("records_total", &Progress::recordsTotal)
      .def_readonly("bytes", &Progress::bytes)
      .def_readonly("workers", &Progress::workers)
      .def_readonly("chunk", &Progress::chunk);
  py::class_<CallEvent> event(module, "CallEvent");
  event.def_readonly("operation", &CallEvent::operation)
      .def_readonly("attempt", &CallEvent::attempt)
      .def_readonly("http_status", &CallEvent::httpStatus)
      .def_readonly("bytes_sent", &CallEvent::bytesSent)
      .def_readonly("bytes_received", &CallEvent::bytesReceived)
      .def_property_readonly("failure", [](CallEvent const& one) -> py::object {
        return one.failure ? py::cast(NameOf(*one.failure)) : py::none();
      });
  using Time = std::chrono::microseconds CallEvent::*;
  for (auto const& [name, time] :
       {std::pair<char const*, Time>{"name_lookup", &CallEvent::nameLookup},
        {"connect", &CallEvent::connect},
        {"tls", &CallEvent::tls},
        {"first_byte", &CallEvent::firstByte},
        {"total", &CallEvent::total}}) {
    event.def_property_readonly(
        name, [time = time](CallEvent const& one) { return SecondsOf(one.*time); });
  }
}

}  // namespace lumo::python

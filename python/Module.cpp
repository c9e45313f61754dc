#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <exception>

#include "python/Call.h"
#include "python/Parts.h"

namespace lumo::python {
namespace {

py::list AttemptsOf(Error const& error) {
  py::list attempts;
  for (Attempt const& one : error.Attempts()) {
    double const after = std::chrono::duration<double>(one.after).count();
    attempts.append(py::make_tuple(one.number, NameOf(one.code), one.text, after));
  }
  return attempts;
}

/// Raises the package's own exception.
void Raise(Error const& error) {
  AtWork const work;
  py::dict details;
  details["operation"] = error.Operation();
  details["http_status"] = error.HttpStatus();
  details["fault_code"] = error.FaultCode();
  details["fault_detail"] = error.FaultDetail();
  details["transport_text"] = error.TransportText();
  details["offered_log_ons"] = error.OfferedLogOns();
  details["body_start"] = error.BodyStart();
  details["records_done"] = error.RecordsDone();
  static_assert(static_cast<int>(HintCode::NameEach) == 36,
                "lumo/errors.py words the hints in the order of their codes");
  details["is_retryable"] = error.IsRetryable();
  details["hint_code"] = static_cast<int>(error.Hint().code);
  details["hint_arguments"] = error.Hint().arguments;
  details["tries"] = AttemptsOf(error);
  py::object const& type = FromPackage("lumo.errors", "Error");
  py::object const raised = type(NameOf(error.Code()), error.what(), details);
  PyErr_SetObject(type.ptr(), raised.ptr());
}

}  // namespace

PYBIND11_MODULE(_core, module) {
  module.doc() = "The toolkit below the package lumo, which is what programs use.";
  module.attr("__version__") = LUMO_PYTHON_VERSION;
  // NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is given
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(thrown);
    } catch (py::cast_error const&) {
      PyErr_SetString(PyExc_TypeError, "an argument holds something of a wrong type");
    } catch (Error const& error) {
      try {
        Raise(error);
      } catch (py::error_already_set& other) {
        other.restore();
      }
    }
  });
  py::module_::import("atexit").attr("register")(py::cpp_function(&AtWork::End));
  py::module_::import("os").attr("register_at_fork")(py::arg("after_in_child") =
                                                         py::cpp_function(&AtWork::BeginAnew));
  AddOptions(module);
  AddValues(module);
  AddColumn(module);
  AddColumns(module);
  AddServer(module);
  AddImport(module);
}

}  // namespace lumo::python

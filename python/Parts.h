#pragma once

#include <pybind11/pybind11.h>

#include <memory>

#include "lumo/Toolkit.h"

/// What the files of the module share.
namespace lumo::python {

namespace py = pybind11;

void AddOptions(py::module_& module);
void AddValues(py::module_& module);
void AddColumn(py::module_& module);
void AddColumns(py::module_& module);
void AddServer(py::module_& module);
void AddImport(py::module_& module);

/// The value as an object of the package; its figures are converted by these units.
py::object ToPython(Value const& value, py::object const& units);

/// Of keyword arguments; throws `Error` (InvalidArgument) for one that does not exist.
ConnectOptions ConnectOptionsOf(py::kwargs const& given);
ReadOptions ReadOptionsOf(py::kwargs const& given);

/// Chunks of a read, as a table that Python sees.
struct Chunks {
  std::vector<Field> fields;
  std::vector<std::shared_ptr<Columns const>> chunks;
  Units units;

  std::size_t Rows() const;
};

}  // namespace lumo::python

#include <pybind11/stl.h>

#include <algorithm>
#include <string>
#include <utility>

#include "python/Call.h"
#include "python/ColumnView.h"
#include "python/Parts.h"

namespace lumo::python {
namespace {

std::size_t PlaceOf(Chunks const& table, std::string const& name) {
  auto const found = std::find_if(table.fields.begin(), table.fields.end(),
                                  [&](Field const& field) { return field.name == name; });
  if (found == table.fields.end()) {
    std::vector<std::string> names;
    for (Field const& field : table.fields) names.push_back(field.name);
    throw Error(ErrorCode::NotFound, "there is no column \"" + name + "\"",
                Hint{HintCode::OneOf, std::move(names)});
  }
  return static_cast<std::size_t>(found - table.fields.begin());
}

/// The columns of figures that a name means: itself; else those of the attribute of that name, but
/// not of its parameters, unless it is a table, which has other names alone.
std::vector<std::size_t> FiguresOf(Chunks const& table, std::string const& name) {
  auto const find = [&](auto isMeant) {
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < table.fields.size(); ++i) {
      Field const& field = table.fields[i];
      if (field.type == ColumnType::Number && isMeant(field)) places.push_back(i);
    }
    return places;
  };
  std::vector<std::size_t> places = find([&](Field const& field) {
    bool const isEnd = field.name == name + ".low" || field.name == name + ".high";
    return field.name == name || (isEnd && field.attribute == name);
  });
  if (places.empty()) {
    places =
        find([&](Field const& field) { return field.attribute == name && !field.unit.empty(); });
  }
  if (places.empty()) {
    Field const& field = table.fields[PlaceOf(table, name)];
    throw Error(ErrorCode::InvalidArgument, "the column \"" + field.name + "\" has no unit");
  }
  return places;
}

void ConvertColumn(Column& column, Units const& units, std::string const& unit) {
  for (std::size_t row = 0; row < column.size; ++row) {
    if (column.IsValid(row)) {
      column.numbers[row] = units.Convert(column.numbers[row], column.field.unit, unit);
    }
  }
  column.field.unit = unit;
}

/// The same table with the figures of some columns in other units; all else is shared or copied.
std::shared_ptr<Chunks> InUnits(Chunks const& table,
                                std::map<std::string, std::string> const& wanted) {
  auto converted = std::make_shared<Chunks>(table);
  std::vector<std::shared_ptr<Columns>> copies;
  for (auto const& chunk : table.chunks) copies.push_back(std::make_shared<Columns>(*chunk));
  for (auto const& [name, unit] : wanted) {
    for (std::size_t const place : FiguresOf(table, name)) {
      table.units.Convert(0, table.fields[place].unit, unit);  // also where there are no rows
      for (auto const& copy : copies) ConvertColumn(copy->columns[place], table.units, unit);
      converted->fields[place].unit = unit;
    }
  }
  converted->chunks.assign(copies.begin(), copies.end());
  return converted;
}

void ReleaseStream(PyObject* capsule) {
  auto* const stream =
      static_cast<ArrowArrayStream*>(PyCapsule_GetPointer(capsule, "arrow_array_stream"));
  if (stream == nullptr) {
    PyErr_Clear();
    return;
  }
  if (stream->release != nullptr) stream->release(stream);
  delete stream;
}

/// A stream of its own for each caller, which lives on without the table. A wish for another
/// schema is only a wish, and is left aside.
py::object ArrowStream(std::shared_ptr<Chunks> const& table, py::object const&) {
  auto stream = std::make_unique<ArrowArrayStream>();
  ExportStream(
      table->fields,
      [table, next = std::size_t{0}]() mutable -> std::shared_ptr<Columns const> {
        return next < table->chunks.size() ? table->chunks[next++] : nullptr;
      },
      stream.get());
  PyObject* const capsule = PyCapsule_New(stream.get(), "arrow_array_stream", ReleaseStream);
  if (capsule == nullptr) throw py::error_already_set();
  (void)stream.release();
  return py::reinterpret_steal<py::object>(capsule);
}

}  // namespace

std::size_t Chunks::Rows() const {
  std::size_t rows = 0;
  for (auto const& chunk : chunks) rows += chunk->rows;
  return rows;
}

void AddColumns(py::module_& module) {
  py::class_<Chunks, std::shared_ptr<Chunks>>(module, "Columns")
      .def_property_readonly("names",
                             [](Chunks const& table) {
                               std::vector<std::string> names;
                               for (Field const& field : table.fields) names.push_back(field.name);
                               return names;
                             })
      .def_property_readonly("rows", &Chunks::Rows)
      .def_property_readonly("chunks", [](Chunks const& table) { return table.chunks.size(); })
      .def(
          "column",
          [](std::shared_ptr<Chunks> const& table, std::string const& name) {
            return ColumnView{table, PlaceOf(*table, name)};
          },
          py::arg("name"))
      .def(
          "in_units",
          [](Chunks const& table, std::map<std::string, std::string> const& wanted) {
            return Unlocked([&] { return InUnits(table, wanted); });
          },
          py::arg("units"))
      .def("arrow_stream", ArrowStream, py::arg("requested_schema") = py::none());
}

}  // namespace lumo::python

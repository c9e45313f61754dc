#include <pybind11/stl.h>

#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "python/Call.h"
#include "python/Parts.h"

namespace lumo::python {
namespace {

using End = std::optional<double>;
/// The two ends are the same for a number; and whether it is estimated.
using GivenFigure = std::tuple<End, End, bool>;

/// What a cell holds: its kind, then what belongs to it.
ImportValue ValueOf(py::tuple const& cell) {
  ImportValue value;
  value.attribute = cell[0].cast<std::string>();
  auto const kind = cell[1].cast<std::string>();
  py::object const content = cell[2];
  auto const unit = cell[3].cast<std::string>();
  if (kind == "typed") {
    value.content = TypedText{content.cast<std::string>(), unit, false};
  } else if (kind == "range") {
    auto const [low, high, estimated] = content.cast<GivenFigure>();
    value.content = Value(Range{low, high, unit, estimated});
  } else if (kind == "number") {
    auto const [low, high, estimated] = content.cast<GivenFigure>();
    value.content = Value(Quantity{low.value(), unit, estimated});
  } else if (kind == "integer") {
    value.content = Value(content.cast<std::int64_t>());
  } else if (kind == "logical") {
    value.content = Value(content.cast<bool>());
  } else if (kind == "moment") {
    value.content = Value(DateTime::FromMicroseconds(content.cast<std::int64_t>()));
  } else if (kind == "words") {
    value.content = Value(content.cast<std::vector<std::string>>());
  } else {
    value.content = Value(content.cast<std::string>());
  }
  return value;
}

void Add(Import& import, std::size_t number, int identity, std::string folder, std::string name,
         std::vector<py::tuple> const& cells,
         std::vector<std::pair<std::string, std::string>> const& faults) {
  ImportRow row;
  row.number = number;
  row.id.identity = identity;
  row.folder = std::move(folder);
  row.name = std::move(name);
  for (py::tuple const& cell : cells) row.values.push_back(ValueOf(cell));
  for (auto const& [attribute, why] : faults) row.faults.push_back({attribute, why});
  import.Add(std::move(row));
}

py::dict ReportOf(ImportReport const& report) {
  py::list rows;
  for (RowVerdict const& one : report.rows) {
    py::list changes;
    for (ValueChange const& change : one.changes) {
      changes.append(py::make_tuple(change.attribute, change.before, change.after));
    }
    py::list faults;
    for (RowFault const& fault : one.faults) {
      faults.append(py::make_tuple(fault.attribute, fault.why));
    }
    rows.append(py::make_tuple(one.row, NameOf(one.kind), one.id.identity, one.folder, one.name,
                               changes, faults, one.notes));
  }
  py::list faults;
  for (RowFault const& fault : report.faults) {
    faults.append(py::make_tuple(fault.attribute, fault.why));
  }
  py::dict dict;
  dict["rows"] = rows;
  dict["faults"] = faults;
  dict["new_folders"] = report.newFolders;
  dict["stopped"] = report.stopped ? py::cast(report.stopped->what()) : py::none();
  dict["written"] = report.isWritten;
  return dict;
}

/// Without a journal nothing is written.
py::dict Run(Import const& import, std::string const& journal, bool makesFolders, bool keepsGoing) {
  ImportOptions options;
  options.makesFolders = makesFolders;
  options.keepsGoing = keepsGoing;
  options.source = "a frame of pandas";
  return ReportOf(Unlocked(
      [&] { return journal.empty() ? import.Preflight(options) : import.Run(journal, options); }));
}

}  // namespace

void AddImport(py::module_& module) {
  py::class_<Import>(module, "Import")
      .def("add", Add, py::arg("number"), py::arg("identity"), py::arg("folder"), py::arg("name"),
           py::arg("cells"), py::arg("faults"))
      .def("run", Run, py::arg("journal"), py::arg("make_folders"), py::arg("keep_going"));
}

}  // namespace lumo::python

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <cmath>
#include <map>
#include <string>
#include <tuple>
#include <variant>

#include "python/Call.h"
#include "python/Parts.h"

namespace lumo::python {
namespace {

constexpr char kValues[] = "lumo.values";

py::object New(char const* name) { return FromPackage(kValues, name); }

/// A view of the figures; the curve lives as long as it.
py::array_t<double> ViewOf(std::vector<double> const& figures, py::handle owner) {
  py::array_t<double> view(static_cast<py::ssize_t>(figures.size()), figures.data(), owner);
  view.attr("setflags")(py::arg("write") = false);
  return view;
}

py::dict ParametersOf(std::vector<Parameter> const& parameters) {
  py::dict dict;
  for (Parameter const& one : parameters) dict[py::str(one.name)] = py::cast(one.value);
  return dict;
}

py::dict ParameterUnitsOf(std::vector<Parameter> const& parameters) {
  py::dict dict;
  for (Parameter const& one : parameters) {
    if (!one.unit.empty()) dict[py::str(one.name)] = py::cast(one.unit);
  }
  return dict;
}

py::object FromDate(DateTime const& date) {
  auto const moment = date.Microseconds();
  if (!moment) return py::str(date.text);
  return FromPackage(kValues, "moment")(*moment);
}

/// Makes an object of the package of each kind of value.
class Maker {
 public:
  explicit Maker(py::object units) : m_units(std::move(units)) {}

  py::object operator()(std::monostate) const { return py::none(); }
  py::object operator()(NotApplicable) const { return New("NOT_APPLICABLE"); }
  py::object operator()(std::string const& text) const { return py::str(text); }
  py::object operator()(DateTime const& date) const { return FromDate(date); }
  py::object operator()(std::int64_t number) const { return py::int_(number); }
  py::object operator()(bool yes) const { return py::bool_(yes); }
  py::object operator()(Quantity const& one) const {
    return New("Quantity")(one.value, one.unit, one.estimated, m_units);
  }
  py::object operator()(Range const& one) const {
    return New("Range")(one.low, one.high, one.unit, one.estimated, m_units);
  }
  py::object operator()(Points const& several) const {
    py::list points;
    py::dict units;
    for (Point const& one : several.points) {
      points.append(New("Point")(one.value, ParametersOf(one.parameters)));
      units.attr("update")(ParameterUnitsOf(one.parameters));
    }
    return New("Points")(py::tuple(points), several.unit, several.estimated, units, m_units);
  }
  py::object operator()(std::vector<std::string> const& words) const {
    return py::tuple(py::cast(words));
  }
  py::object operator()(Curves const& several) const {
    py::list curves;
    for (Curve const& one : several.curves) {
      curves.append(New("Curve")(py::cast(std::make_shared<Curve>(one)), m_units));
    }
    return New("Curves")(py::tuple(curves), several.isGridded, several.isHidden,
                         several.isLogarithmic);
  }
  py::object operator()(Link const& link) const { return New("Link")(link.url, link.description); }
  py::object operator()(File const& file) const {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes are handed on
    py::bytes const data(reinterpret_cast<char const*>(file.data.data()), file.data.size());
    return New("File")(file.name, file.contentType, file.description, file.url, data);
  }
  py::object operator()(std::shared_ptr<Grid const> const& grid) const {
    py::list columns;
    py::dict units;
    py::list rows;
    if (grid) {
      for (Grid::Column const& column : grid->columns) {
        columns.append(column.name);
        if (!column.unit.empty()) units[py::str(column.name)] = column.unit;
      }
      for (Grid::Row const& row : grid->rows) rows.append(CellsOf(row.cells));
    }
    return New("Grid")(py::tuple(columns), py::tuple(rows), units);
  }
  py::object operator()(std::shared_ptr<List const> const& list) const {
    return CellsOf(list ? list->items : std::vector<Value>());
  }
  py::object operator()(LinkedRecords const& linked) const {
    py::dict groups;
    for (auto const& group : linked.groups) groups[py::str(group.name)] = py::cast(group.records);
    return groups;
  }

 private:
  py::tuple CellsOf(std::vector<Value> const& cells) const {
    py::list list;
    for (Value const& cell : cells) list.append(std::visit(*this, cell));
    return py::tuple(list);
  }

  py::object m_units;
};

char const* NameOf(Interpolation interpolation) {
  switch (interpolation) {
    case Interpolation::Linear: return "linear";
    case Interpolation::CubicSpline: return "cubic spline";
    case Interpolation::None: break;
  }
  return "none";
}

py::array_t<double> At(
    Curve const& curve,
    py::array_t<double, py::array::c_style | py::array::forcecast> const& places) {
  py::array_t<double> found(places.request().shape);
  double* const out = found.mutable_data();
  double const* const in = places.data();
  for (py::ssize_t i = 0; i < places.size(); ++i) out[i] = curve.At(in[i]).value_or(std::nan(""));
  return found;
}

std::shared_ptr<Curve> InUnit(Curve const& curve, Units const& units, std::string const& unit) {
  auto converted = units.Convert(Curves{{curve}, false, false, false}, unit);
  return std::make_shared<Curve>(std::get<Curves>(converted).curves.at(0));
}

using ParameterState = std::tuple<std::string, decltype(Parameter::value), std::string>;

py::tuple CurveState(Curve const& one) {
  std::vector<ParameterState> parameters;
  for (Parameter const& parameter : one.parameters) {
    parameters.emplace_back(parameter.name, parameter.value, parameter.unit);
  }
  return py::make_tuple(one.xName, one.xUnit, one.yUnit, one.x, one.y, one.yHigh, one.xWords,
                        one.estimated, parameters, static_cast<int>(one.interpolation),
                        one.xIsLogarithmic);
}

std::shared_ptr<Curve> CurveFrom(py::tuple const& state) {
  auto one = std::make_shared<Curve>();
  std::size_t at = 0;
  auto const take = [&](auto& field) {
    field = state[at++].template cast<std::decay_t<decltype(field)>>();
  };
  take(one->xName);
  take(one->xUnit);
  take(one->yUnit);
  take(one->x);
  take(one->y);
  take(one->yHigh);
  take(one->xWords);
  take(one->estimated);
  for (auto const& [name, value, unit] : state[at++].cast<std::vector<ParameterState>>()) {
    one->parameters.push_back({name, value, unit});
  }
  one->interpolation = static_cast<Interpolation>(state[at++].cast<int>());
  take(one->xIsLogarithmic);
  return one;
}

using StepState = std::tuple<std::string, double, double>;
using UnitsState = std::map<std::string, std::vector<StepState>>;

UnitsState StateOf(Units const& units) {
  UnitsState state;
  for (auto const& [unit, steps] : units.Steps()) {
    for (UnitStep const& step : steps) {
      state[unit].emplace_back(step.target, step.factor, step.offset);
    }
  }
  return state;
}

Units UnitsFrom(UnitsState const& state) {
  std::map<std::string, std::vector<UnitStep>> all;
  for (auto const& [unit, steps] : state) {
    for (auto const& [target, factor, offset] : steps)
      all[unit].push_back({target, factor, offset});
  }
  return Units(std::move(all));
}

void AddCurve(py::module_& module) {
  py::class_<Curve, std::shared_ptr<Curve>> curve(module, "Curve");
  curve.def_readonly("x_name", &Curve::xName)
      .def_readonly("x_unit", &Curve::xUnit)
      .def_readonly("y_unit", &Curve::yUnit)
      .def_readonly("x_words", &Curve::xWords)
      .def_readonly("estimated", &Curve::estimated)
      .def_readonly("x_is_logarithmic", &Curve::xIsLogarithmic)
      .def_property_readonly("interpolation",
                             [](Curve const& one) { return NameOf(one.interpolation); })
      .def_property_readonly("parameters",
                             [](Curve const& one) { return ParametersOf(one.parameters); })
      .def_property_readonly("parameter_units",
                             [](Curve const& one) { return ParameterUnitsOf(one.parameters); })
      .def(py::pickle(&CurveState, &CurveFrom))
      .def("at", At, py::arg("places"))
      .def("in_units", InUnit, py::arg("units"), py::arg("unit"));
  using Figures = std::vector<double> Curve::*;
  for (auto const& [name, figures] : {std::pair<char const*, Figures>{"x", &Curve::x},
                                      {"y", &Curve::y},
                                      {"y_high", &Curve::yHigh}}) {
    curve.def_property_readonly(name, [figures = figures](py::object const& self) {
      return ViewOf(self.cast<Curve const&>().*figures, self);
    });
  }
}

py::object Convert(Units const& units, py::object const& figures, std::string const& from,
                   std::string const& to) {
  if (py::isinstance<py::float_>(figures) || py::isinstance<py::int_>(figures)) {
    return py::float_(units.Convert(figures.cast<double>(), from, to));
  }
  units.Convert(0, from, to);  // says what is wrong even for no figures
  using Figures = py::array_t<double, py::array::c_style | py::array::forcecast>;
  py::cpp_function const convert([&](Figures const& in) {
    py::array_t<double> out(in.request().shape);
    double* const made = out.mutable_data();
    for (py::ssize_t i = 0; i < in.size(); ++i) made[i] = units.Convert(in.data()[i], from, to);
    return out;
  });
  return FromPackage(kValues, "converted")(convert, figures);
}

}  // namespace

py::object ToPython(Value const& value, py::object const& units) {
  AtWork const work;  // the package's own classes are of Python
  return std::visit(Maker(units), value);
}

void AddValues(py::module_& module) {
  py::class_<RecordId>(module, "RecordId")
      .def(py::init([](std::string database, int identity, std::string guid) {
             return RecordId{std::move(database), identity, std::move(guid)};
           }),
           py::arg("database"), py::arg("identity") = 0, py::arg("guid") = "")
      .def_readonly("database", &RecordId::database)
      .def_readonly("identity", &RecordId::identity)
      .def_readonly("guid", &RecordId::guid)
      .def("__eq__",
           [](RecordId const& a, RecordId const& b) {
             return a.database == b.database && a.identity == b.identity && a.guid == b.guid;
           })
      .def("__hash__",
           [](RecordId const& one) {
             return py::hash(py::make_tuple(one.database, one.identity, one.guid));
           })
      .def("__repr__",
           [](RecordId const& one) {
             return py::str("RecordId({!r}, {!r}, {!r})")
                 .format(one.database, one.identity, one.guid);
           })
      .def(py::pickle(
          [](RecordId const& one) { return py::make_tuple(one.database, one.identity, one.guid); },
          [](py::tuple const& state) {
            return RecordId{state[0].cast<std::string>(), state[1].cast<int>(),
                            state[2].cast<std::string>()};
          }));
  AddCurve(module);
  py::class_<Units>(module, "Units")
      .def(py::pickle(&StateOf, &UnitsFrom))
      .def("__deepcopy__", [](py::object const& self, py::dict const&) { return self; })
      .def("knows", &Units::Knows, py::arg("unit"))
      .def("targets", &Units::TargetsOf, py::arg("unit"))
      .def("can_convert", &Units::CanConvert, py::arg("source"), py::arg("target"))
      .def("convert", Convert, py::arg("figures"), py::arg("source"), py::arg("target"));
  py::class_<ParameterInfo>(module, "Parameter")
      .def_readonly("name", &ParameterInfo::name)
      .def_readonly("unit", &ParameterInfo::unit)
      .def_readonly("is_discrete", &ParameterInfo::isDiscrete)
      .def_readonly("is_logarithmic", &ParameterInfo::isLogarithmic)
      .def_readonly("words", &ParameterInfo::words)
      .def_readonly("numbers", &ParameterInfo::numbers);
  py::class_<GridColumnInfo>(module, "GridColumn")
      .def_readonly("name", &GridColumnInfo::name)
      .def_property_readonly("type",
                             [](GridColumnInfo const& one) { return lumo::NameOf(one.type); })
      .def_readonly("unit", &GridColumnInfo::unit)
      .def_readonly("words", &GridColumnInfo::words);
  py::class_<Attribute>(module, "Attribute")
      .def_readonly("name", &Attribute::name)
      .def_readonly("identity", &Attribute::identity)
      .def_property_readonly("type", [](Attribute const& one) { return lumo::NameOf(one.type); })
      .def_readonly("unit", &Attribute::unit)
      .def_readonly("is_multi_valued", &Attribute::isMultiValued)
      .def_readonly("is_searchable", &Attribute::isSearchable)
      .def_readonly("words", &Attribute::words)
      .def_readonly("columns", &Attribute::columns)
      .def_readonly("parameters", &Attribute::parameters)
      .def("__repr__", [](Attribute const& one) {
        return py::str("<Attribute {!r}: {}{}>")
            .format(one.name, lumo::NameOf(one.type), one.unit.empty() ? "" : " in " + one.unit);
      });
}

}  // namespace lumo::python

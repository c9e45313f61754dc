#include <pybind11/numpy.h>

#include <cstring>
#include <string>

#include "python/Call.h"
#include "python/ColumnView.h"
#include "python/Parts.h"

namespace lumo::python {
namespace {

using IsSet = bool (Column::*)(std::size_t) const;

/// One flag for each row.
py::array_t<bool> Flags(ColumnView const& column, IsSet isSet) {
  py::array_t<bool> flags(static_cast<py::ssize_t>(column.table->Rows()));
  bool* out = flags.mutable_data();
  for (auto const& chunk : column.table->chunks) {
    Column const& part = chunk->columns[column.place];
    for (std::size_t row = 0; row < part.size; ++row) *out++ = (part.*isSet)(row);
  }
  return flags;
}

/// The figures of one chunk as they lie in memory, which the array keeps alive.
template <class Figure>
py::array ViewOf(std::vector<Figure> const& figures, std::shared_ptr<Columns const> const& chunk,
                 py::dtype const& type) {
  auto* const owner = new std::shared_ptr<Columns const>(chunk);
  py::capsule const keep(
      owner, [](void* held) { delete static_cast<std::shared_ptr<Columns const>*>(held); });
  static Figure const nothing{};
  py::array view(type, {figures.size()}, {sizeof(Figure)},
                 figures.empty() ? &nothing : figures.data(), keep);
  view.attr("setflags")(py::arg("write") = false);
  return view;
}

py::array NewArray(py::dtype const& type, std::size_t rows) {
  return {type, std::vector<py::ssize_t>{static_cast<py::ssize_t>(rows)}};
}

/// A view where the table is one chunk, as it mostly is; else the chunks one after the other.
template <class Figure>
py::array Figures(ColumnView const& column, std::vector<Figure> Column::*figures,
                  py::dtype const& type) {
  auto const& chunks = column.table->chunks;
  if (chunks.size() == 1) return ViewOf(chunks[0]->columns[column.place].*figures, chunks[0], type);
  py::array all = NewArray(type, column.table->Rows());
  auto* out = static_cast<Figure*>(all.mutable_data());
  for (auto const& chunk : chunks) {
    auto const& part = chunk->columns[column.place].*figures;
    out = std::copy(part.begin(), part.end(), out);
  }
  return all;
}

[[noreturn]] void RefuseForm(Field const& field, char const* form) {
  throw Error(ErrorCode::InvalidArgument, "the column \"" + field.name + "\" holds no " + form);
}

py::array ValuesOf(ColumnView const& column) {
  switch (column.FieldOf().type) {
    case ColumnType::Number: return Figures(column, &Column::numbers, py::dtype::of<double>());
    case ColumnType::Integer:
      return Figures(column, &Column::integers, py::dtype::of<std::int64_t>());
    case ColumnType::Moment: return Figures(column, &Column::integers, py::dtype("datetime64[us]"));
    case ColumnType::Logical: return Flags(column, &Column::Logical);
    default: break;
  }
  RefuseForm(column.FieldOf(), "figures; its texts are in `objects`");
}

/// Where the figures of the first chunk lie.
std::uintptr_t AddressOf(ColumnView const& column) {
  if (column.table->chunks.empty()) return 0;
  Column const& part = column.table->chunks[0]->columns[column.place];
  void const* const address = part.field.type == ColumnType::Number
                                  ? static_cast<void const*>(part.numbers.data())
                                  : static_cast<void const*>(part.integers.data());
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): it is shown as a number
  return reinterpret_cast<std::uintptr_t>(address);
}

py::object Made(PyObject* made) {
  if (made == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(made);
}

/// Makes texts, and those that come again and again once.
class Texts {
 public:
  explicit Texts(ColumnType type) : m_isText(type != ColumnType::Bytes) {}

  py::object operator()(std::string_view text) {
    if (m_last && text == m_lastText) return m_last;
    auto const size = static_cast<py::ssize_t>(text.size());
    m_last = Made(m_isText ? PyUnicode_DecodeUTF8(text.data(), size, nullptr)
                           : PyBytes_FromStringAndSize(text.data(), size));
    m_lastText = text;
    return m_last;
  }

 private:
  bool m_isText;
  std::string_view m_lastText;
  py::object m_last;
};

py::object CellOf(Column const& part, std::size_t row, Texts& texts) {
  if (!part.IsValid(row)) return py::none();
  if (part.field.type != ColumnType::Words) return texts(part.Text(row));
  auto const words = part.Words(row);
  py::tuple tuple(words.size());
  for (std::size_t i = 0; i < words.size(); ++i) tuple[i] = texts(words[i]);
  return std::move(tuple);
}

/// Texts, bytes or tuples of words, None where there is no value.
py::array ObjectsOf(ColumnView const& column) {
  ColumnType const type = column.FieldOf().type;
  if (type != ColumnType::Text && type != ColumnType::Bytes && type != ColumnType::Words) {
    RefuseForm(column.FieldOf(), "texts; its figures are in `values`");
  }
  py::array all = NewArray(py::dtype("O"), column.table->Rows());
  auto* out = static_cast<PyObject**>(all.mutable_data());
  for (auto const& chunk : column.table->chunks) {
    Column const& part = chunk->columns[column.place];
    Texts texts(type);
    for (std::size_t row = 0; row < part.size; ++row, ++out) {
      PyObject* const before = *out;  // an array of objects may begin with None
      *out = CellOf(part, row, texts).release().ptr();
      Py_XDECREF(before);
    }
  }
  return all;
}

char const* NameOf(ColumnType type) {
  switch (type) {
    case ColumnType::Bytes: return "bytes";
    case ColumnType::Integer: return "integer";
    case ColumnType::Number: return "number";
    case ColumnType::Logical: return "logical";
    case ColumnType::Moment: return "moment";
    case ColumnType::Words: return "words";
    case ColumnType::Text: break;
  }
  return "text";
}

std::size_t NullCount(ColumnView const& column) {
  std::size_t count = 0;
  for (auto const& chunk : column.table->chunks) count += chunk->columns[column.place].nullCount;
  return count;
}

}  // namespace

void AddColumn(py::module_& module) {
  py::class_<ColumnView>(module, "Column")
      .def_property_readonly("name", [](ColumnView const& one) { return one.FieldOf().name; })
      .def_property_readonly("attribute",
                             [](ColumnView const& one) { return one.FieldOf().attribute; })
      .def_property_readonly("unit", [](ColumnView const& one) { return one.FieldOf().unit; })
      .def_property_readonly("type",
                             [](ColumnView const& one) { return NameOf(one.FieldOf().type); })
      .def_property_readonly("null_count", NullCount)
      .def_property_readonly("address", AddressOf)
      .def_property_readonly("values", ValuesOf)
      .def_property_readonly("objects", ObjectsOf)
      .def_property_readonly("valid",
                             [](ColumnView const& one) { return Flags(one, &Column::IsValid); })
      .def_property_readonly(
          "not_applicable",
          [](ColumnView const& one) { return Flags(one, &Column::IsNotApplicable); })
      .def_property_readonly("estimated",
                             [](ColumnView const& one) { return Flags(one, &Column::IsEstimated); })
      .def("__len__", [](ColumnView const& one) { return one.table->Rows(); });
}

}  // namespace lumo::python

#include <pybind11/stl.h>

#include <atomic>
#include <optional>
#include <string>
#include <utility>

#include "python/Call.h"
#include "python/Parts.h"

namespace lumo::python {
namespace {

/// More would be too near to what a column of texts can hold.
constexpr std::size_t kMostBytes = std::size_t{1} << 30;

/// A record, and the units by which its figures are converted.
struct PyRecord {
  Record record;
  py::object units;

  py::object Get(std::string const& attribute) const { return ToPython(record[attribute], units); }
};

/// A stream that threads of Python cannot use at once.
class PyStream {
  /// Held while one thread uses the stream; another one that comes is refused.
  class Use {
   public:
    explicit Use(std::atomic<bool>& isBusy) : m_isBusy(isBusy) {
      if (isBusy.exchange(true)) {
        throw Error(ErrorCode::InvalidArgument,
                    "the stream is in use, by another thread or by its own callback");
      }
    }
    ~Use() { m_isBusy = false; }
    Use(Use const&) = delete;
    Use& operator=(Use const&) = delete;

    std::atomic<bool>& m_isBusy;
  };

  RecordStream& Open() {
    if (!m_stream) throw Error(ErrorCode::InvalidArgument, "the stream is closed");
    return *m_stream;
  }

  template <class Work>
  auto Run(Work work) {
    Use const use(m_isBusy);
    RecordStream& stream = Open();
    return Unlocked([&] { return work(stream); });
  }

  void Forget() {
    m_chunk.clear();
    m_next = 0;
  }

 public:
  PyStream(RecordStream&& stream, Table table)
      : m_stream(std::move(stream)), m_table(std::move(table)) {}
  // NOLINTNEXTLINE(bugprone-exception-escape): the lock throws only without an interpreter
  ~PyStream() {
    Release const release;
    m_stream.reset();
  }
  PyStream(PyStream const&) = delete;
  PyStream& operator=(PyStream const&) = delete;

  /// Ends the work that is under way; waits for it without the lock.
  void Close() {
    Release const release;
    Use const use(m_isBusy);
    m_stream.reset();
    Forget();
  }

  /// Nothing at the end.
  std::optional<PyRecord> Next() {
    Use const use(m_isBusy);
    RecordStream& stream = Open();
    while (m_next == m_chunk.size()) {
      Forget();
      if (!Unlocked([&] { return stream.NextChunk(m_chunk); })) return std::nullopt;
    }
    py::object const units = UnitsOf();
    return PyRecord{std::move(m_chunk[m_next++]), units};
  }

  /// The rest of a chunk of which some records were handed over one by one, then whole chunks.
  std::shared_ptr<Chunks> NextColumns() {
    return Run([&](RecordStream& stream) -> std::shared_ptr<Chunks> {
      auto table = std::make_shared<Chunks>();
      table->units = m_table.Units();
      auto const add = [&](std::shared_ptr<Columns const> columns) {
        for (Column const& column : columns->columns) table->fields.push_back(column.field);
        table->chunks.push_back(std::move(columns));
      };
      if (m_next < m_chunk.size()) {
        ColumnBuilder builder = ColumnBuilder::Wide(stream.Attributes(), table->units);
        while (m_next < m_chunk.size()) {
          Record const& record = m_chunk[m_next++];
          builder.Add(record.Head(), record.Values());
        }
        add(builder.Take());
        return table;
      }
      auto columns = stream.NextColumns();
      if (!columns) return nullptr;
      add(std::move(columns));
      return table;
    });
  }

  /// The rest of the stream, as one chunk unless its texts are too long for that; the long form of
  /// one attribute when it is named.
  std::shared_ptr<Chunks> ReadAll(std::string const& longForm) {
    return Run([&](RecordStream& stream) {
      auto table = std::make_shared<Chunks>();
      table->units = m_table.Units();
      std::size_t place = 0;
      ColumnBuilder builder = BuilderFor(stream, longForm, place);
      table->fields = builder.Fields();
      do {
        for (; m_next < m_chunk.size(); ++m_next) {
          Record const& record = m_chunk[m_next];
          if (longForm.empty()) {
            builder.Add(record.Head(), record.Values());
          } else {
            builder.Add(record.Head(), {record.Values().at(place)});
          }
        }
        Forget();
        if (builder.LongestBytes() > kMostBytes) table->chunks.push_back(builder.Take());
      } while (stream.NextChunk(m_chunk));
      if (builder.Rows() > 0 || table->chunks.empty()) table->chunks.push_back(builder.Take());
      return table;
    });
  }

  std::vector<Attribute> Attributes() {
    return Run([](RecordStream& stream) { return stream.Attributes(); });
  }
  Progress ProgressOf() {
    return Run([](RecordStream& stream) { return stream.Progress(); });
  }

 private:
  py::object UnitsOf() {
    if (!m_units) m_units = py::cast(Unlocked([&] { return m_table.Units(); }));
    return m_units;
  }

  ColumnBuilder BuilderFor(RecordStream& stream, std::string const& longForm,
                           std::size_t& place) const {
    auto const& attributes = stream.Attributes();
    if (longForm.empty()) return ColumnBuilder::Wide(attributes, m_table.Units());
    std::string const name = m_table.FindAttribute(longForm).name;
    while (place < attributes.size() && attributes[place].name != name) ++place;
    if (place == attributes.size()) {
      throw Error(ErrorCode::InvalidArgument, "the attribute \"" + name + "\" is not read");
    }
    return ColumnBuilder::Long(attributes[place], m_table.Units());
  }

  std::atomic<bool> m_isBusy{false};
  std::optional<RecordStream> m_stream;
  std::vector<Record> m_chunk;  ///< being handed over one by one
  std::size_t m_next = 0;       ///< the first of it that is still to come
  Table m_table;
  py::object m_units;
};

using Texts = std::vector<std::string>;

Match MatchOf(std::string const& word) {
  if (word == "overlap") return Match::Overlap;
  if (word == "all") return Match::All;
  throw Error(ErrorCode::InvalidArgument, "a match is \"overlap\" or \"all\"");
}

std::unique_ptr<PyStream> Read(Selection const& selection, Table const& table,
                               Texts const& attributes, py::kwargs const& options) {
  auto const read = ReadOptionsOf(options);
  return Unlocked(
      [&] { return std::make_unique<PyStream>(selection.Read(attributes, read), table); });
}

/// A selection, and the table of whose records it is.
struct PySelection {
  Selection selection;
  Table table;
};

void AddRecord(py::module_& module) {
  py::class_<PyRecord>(module, "Record")
      .def_property_readonly("id", [](PyRecord const& one) { return one.record.Id(); })
      .def_property_readonly("name", [](PyRecord const& one) { return one.record.Name(); })
      .def_property_readonly("full_name", [](PyRecord const& one) { return one.record.FullName(); })
      .def_property_readonly("folder", [](PyRecord const& one) { return one.record.Folder(); })
      .def_property_readonly("attributes",
                             [](PyRecord const& one) { return one.record.Attributes(); })
      .def("get", &PyRecord::Get, py::arg("attribute"))
      .def(
          "number",
          [](PyRecord const& one, std::string const& attribute, std::string const& unit) {
            return Unlocked([&] { return one.record.Number(attribute, unit); });
          },
          py::arg("attribute"), py::arg("unit"));
  py::class_<PyStream>(module, "RecordStream")
      .def("next_record", &PyStream::Next)
      .def("next_columns", &PyStream::NextColumns)
      .def("columns", &PyStream::ReadAll, py::arg("long") = "")
      .def("close", &PyStream::Close)
      .def_property_readonly("attributes", &PyStream::Attributes)
      .def_property_readonly("progress", &PyStream::ProgressOf);
}

void AddSelection(py::module_& module) {
  py::class_<PySelection>(module, "Selection")
      .def(
          "where",
          [](PySelection const& one, std::string const& condition, std::string const& match) {
            return PySelection{one.selection.Where(condition, MatchOf(match)), one.table};
          },
          py::arg("condition"), py::arg("match") = "overlap")
      .def(
          "text",
          [](PySelection const& one, std::string const& words) {
            return PySelection{one.selection.Text(words), one.table};
          },
          py::arg("words"))
      .def(
          "below",
          [](PySelection const& one, std::string const& folder) {
            return PySelection{one.selection.Below(folder), one.table};
          },
          py::arg("folder"))
      .def(
          "in_subset",
          [](PySelection const& one, std::string const& subset) {
            return PySelection{one.selection.In(subset), one.table};
          },
          py::arg("subset"))
      .def(
          "named",
          [](PySelection const& one, Texts const& names) {
            return PySelection{one.selection.Named(names), one.table};
          },
          py::arg("names"))
      .def(
          "with_ids",
          [](PySelection const& one, std::vector<RecordId> const& ids) {
            return PySelection{one.selection.WithIds(ids), one.table};
          },
          py::arg("ids"))
      .def("ids",
           [](PySelection const& one) { return Unlocked([&] { return one.selection.Ids(); }); })
      .def(
          "partitions",
          [](PySelection const& one, std::size_t recordsEach, Texts const& attributes) {
            return Unlocked([&] {
              Texts lines;
              for (Partition const& part : one.selection.Partitions(recordsEach, attributes)) {
                lines.push_back(part.ToText());
              }
              return lines;
            });
          },
          py::arg("records_each"), py::arg("attributes"))
      .def(
          "read",
          [](PySelection const& one, Texts const& attributes, py::kwargs const& options) {
            return Read(one.selection, one.table, attributes, options);
          },
          py::arg("attributes"));
}

/// A list that the table keeps, copied.
template <class List>
auto Asked(List const& (Table::*ask)() const) {
  return [ask](Table const& table) { return Unlocked([&] { return (table.*ask)(); }); };
}

void AddTable(py::module_& module) {
  py::class_<Table>(module, "Table")
      .def_property_readonly("name", &Table::Name)
      .def_property_readonly("database", &Table::Database)
      .def_property_readonly("attributes", Asked(&Table::Attributes))
      .def_property_readonly("subsets", Asked(&Table::Subsets))
      .def_property_readonly("unit_systems", Asked(&Table::UnitSystems))
      .def_property_readonly("currencies", Asked(&Table::Currencies))
      .def_property_readonly("units", Asked(&Table::Units))
      .def(
          "find_attribute",
          [](Table const& table, std::string const& name) {
            return Unlocked([&] { return table.FindAttribute(name); });
          },
          py::arg("name"))
      .def("new_import", [](Table const& table) { return table.NewImport(); })
      .def("all",
           [](Table const& table) {
             return PySelection{table.All(), table};
           })
      .def(
          "get",
          [](Table const& table, std::string const& name, Texts const& attributes,
             py::kwargs const& options) {
            auto const read = ReadOptionsOf(options);
            auto [record, units] = Unlocked(
                [&] { return std::pair(table.Get(name, attributes, read), table.Units()); });
            return PyRecord{std::move(record), py::cast(std::move(units))};
          },
          py::arg("name"), py::arg("attributes"));
}

void AddClient(py::module_& module) {
  py::class_<Client>(module, "Client")
      .def(py::init([](std::string const& server, py::kwargs const& options) {
             auto const connect = ConnectOptionsOf(options);
             return Unlocked([&] { return Client::Connect(server, connect); });
           }),
           py::arg("server"))
      .def_property_readonly("url", &Client::Url)
      .def("databases",
           [](Client const& client) {
             std::vector<std::pair<std::string, std::string>> databases;
             for (DatabaseInfo const& one : Unlocked([&] { return client.Databases(); })) {
               databases.emplace_back(one.key, one.name);
             }
             return databases;
           })
      .def(
          "find_database",
          [](Client const& client, std::string const& database) {
            auto const found = Unlocked([&] { return client.FindDatabase(database); });
            return std::pair(found.key, found.name);
          },
          py::arg("database"))
      .def(
          "tables",
          [](Client const& client, std::string const& database) {
            return Unlocked([&] { return client.Tables(database); });
          },
          py::arg("database"))
      .def(
          "open_table",
          [](Client const& client, std::string const& database, std::string const& table) {
            return Unlocked([&] { return client.OpenTable(database, table); });
          },
          py::arg("database"), py::arg("table"));
}

}  // namespace

void AddServer(py::module_& module) {
  AddRecord(module);
  AddSelection(module);
  AddTable(module);
  AddClient(module);
  py::class_<Partition>(module, "Partition")
      .def(py::init(&Partition::FromText), py::arg("text"))
      .def_readonly("server", &Partition::server)
      .def_readonly("database", &Partition::database)
      .def_readonly("table", &Partition::table)
      .def_readonly("attributes", &Partition::attributes)
      .def_readonly("records", &Partition::records);
}

}  // namespace lumo::python

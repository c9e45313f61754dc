#include "lumo/toolkit/Columns.h"

#include <algorithm>
#include <cmath>
#include <deque>
#include <limits>
#include <optional>
#include <utility>
#include <variant>

#include "lumo/toolkit/Error.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

// ---- bitmaps

void SetBit(std::vector<std::uint8_t>& bitmap, std::size_t place) {
  if (bitmap.size() * 8 <= place) bitmap.resize(place / 8 + 1, 0);
  bitmap[place / 8] = static_cast<std::uint8_t>(bitmap[place / 8] | (1U << (place % 8)));
}
bool HasBit(std::vector<std::uint8_t> const& bitmap, std::size_t place) {
  return place / 8 < bitmap.size() && ((bitmap[place / 8] >> (place % 8)) & 1U) != 0;
}
/// A bitmap with so many bits set.
std::vector<std::uint8_t> AllBits(std::size_t size) {
  std::vector<std::uint8_t> bitmap((size + 7) / 8, 0xFF);
  if (size % 8 != 0) bitmap.back() = static_cast<std::uint8_t>((1U << (size % 8)) - 1);
  return bitmap;
}

// ---- cells

/// What stands in one cell; texts belong to the value, or to the row.
using Cell = std::variant<std::monostate, NotApplicable, double, std::int64_t, bool,
                          std::string_view, std::vector<std::string_view>>;

/// One row while it is made.
struct Row {
  struct Filled {
    Cell cell = {};
    bool estimated = false;
  };
  std::vector<Filled> cells = {};

  void Add(Cell cell, bool estimated = false) { cells.push_back({std::move(cell), estimated}); }
};

std::size_t BytesOf(Cell const& cell) {
  if (auto const* const text = std::get_if<std::string_view>(&cell)) return text->size();
  auto const* const words = std::get_if<std::vector<std::string_view>>(&cell);
  std::size_t bytes = 0;
  if (words != nullptr) {
    for (std::string_view const word : *words) bytes += word.size();
  }
  return bytes;
}

/// Appends cells to a column.
class Appender {
 public:
  explicit Appender(Column& column) : m_column(column) {}

  void Append(Row::Filled const& filled) {
    bool const isNull = filled.cell.index() <= 1;
    std::size_t const row = m_column.size++;
    if (isNull && m_column.nullCount++ == 0) m_column.validity = AllBits(row);
    if (m_column.nullCount != 0) {
      m_column.validity.resize(row / 8 + 1, 0);
      if (!isNull) SetBit(m_column.validity, row);
    }
    if (std::holds_alternative<NotApplicable>(filled.cell)) SetBit(m_column.notApplicable, row);
    if (filled.estimated) SetBit(m_column.estimated, row);
    Store(filled.cell, row);
  }

 private:
  template <class T>
  static T Or(Cell const& cell, T const& nothing) {
    T const* const held = std::get_if<T>(&cell);
    return held == nullptr ? nothing : *held;
  }

  void Store(Cell const& cell, std::size_t row) {
    switch (m_column.field.type) {
      case ColumnType::Number: m_column.numbers.push_back(Or(cell, 0.0)); break;
      case ColumnType::Integer:
      case ColumnType::Moment: m_column.integers.push_back(Or(cell, std::int64_t{0})); break;
      case ColumnType::Logical:
        m_column.bits.resize(row / 8 + 1, 0);
        if (Or(cell, false)) SetBit(m_column.bits, row);
        break;
      case ColumnType::Text:
      case ColumnType::Bytes:
        m_column.bytes += Or(cell, std::string_view());
        m_column.offsets.push_back(static_cast<std::int32_t>(m_column.bytes.size()));
        break;
      case ColumnType::Words:
        for (std::string_view const word : Or(cell, std::vector<std::string_view>())) {
          m_column.bytes += word;
          m_column.itemOffsets.push_back(static_cast<std::int32_t>(m_column.bytes.size()));
        }
        m_column.offsets.push_back(static_cast<std::int32_t>(m_column.itemOffsets.size()) - 1);
        break;
    }
  }

  Column& m_column;
};

Column Empty(Field const& field) {
  Column column;
  column.field = field;
  bool const isWords = field.type == ColumnType::Words;
  if (isWords || field.type == ColumnType::Text || field.type == ColumnType::Bytes) {
    column.offsets = {0};
  }
  if (isWords) column.itemOffsets = {0};
  return column;
}

// ---- from values to cells

[[noreturn]] void RefuseValue(std::string const& attribute, std::string const& why) {
  throw Error(ErrorCode::NotUnderstood, "the attribute " + Quoted(attribute) + " " + why);
}

/// Brings figures into the unit of a column.
class Figures {
 public:
  Figures(std::string attribute, std::string own, Units const& units, UnitSystem const& system)
      : m_attribute(std::move(attribute)), m_own(std::move(own)), m_units(units) {
    if (UnitStep const* const step = system.StepFor(m_own)) m_step = *step;
  }

  std::string const& Unit() const { return m_step ? m_step->target : m_own; }

  /// Null for a figure that is not a number, as open ends are. One without a unit is in the
  /// attribute's own.
  Cell operator()(double figure, std::string const& unit) const {
    if (!std::isfinite(figure)) return {};
    if (unit.empty() || unit == m_own) return m_step ? (*m_step)(figure) : figure;
    if (unit == Unit()) return figure;
    if (!m_units.CanConvert(unit, Unit())) {
      RefuseValue(m_attribute, "has a value in " + unit + ", not in " + Unit());
    }
    return m_units.Convert(figure, unit, Unit());
  }

 private:
  std::string m_attribute;
  std::string m_own;
  Units m_units;
  std::optional<UnitStep> m_step;
};

Cell TextCell(std::string const& text) { return std::string_view(text); }

Cell BytesCell(std::vector<std::uint8_t> const& bytes) {
  if (bytes.empty()) return {};
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes are looked at as characters
  return std::string_view(reinterpret_cast<char const*>(bytes.data()), bytes.size());
}

/// The columns of one attribute, or of a column of a grid.
class Source {
 public:
  Source(Attribute const& attribute, Units const& units, UnitSystem const& system)
      : m_attribute(attribute),
        m_figures(attribute.name, attribute.unit, units, system),
        m_mayBeSeveral(!attribute.parameters.empty() || attribute.isMultiValued) {}

  std::vector<Field> Fields() const {
    switch (m_attribute.type) {
      case AttributeType::Integer: return {Named("", ColumnType::Integer)};
      case AttributeType::Logical: return {Named("", ColumnType::Logical)};
      case AttributeType::Date: return {Named("", ColumnType::Moment)};
      case AttributeType::Discrete:
        return {Named("", m_attribute.isMultiValued ? ColumnType::Words : ColumnType::Text)};
      case AttributeType::Number:
        if (!m_mayBeSeveral) return {Figure("")};
        return {Figure(""), Named(".points", ColumnType::Integer)};
      case AttributeType::Range: return {Figure(".low"), Figure(".high")};
      case AttributeType::Curve: return {Named(".curves", ColumnType::Integer)};
      case AttributeType::Grid: return {Named(".rows", ColumnType::Integer)};
      case AttributeType::Link:
        return {Named("", ColumnType::Text), Named(".description", ColumnType::Text)};
      case AttributeType::File:
        return {Named(".fileName", ColumnType::Text), Named(".description", ColumnType::Text),
                Named(".contentType", ColumnType::Text), Named(".url", ColumnType::Text),
                Named(".data", ColumnType::Bytes)};
      case AttributeType::Picture:
        return {Named(".contentType", ColumnType::Text), Named(".url", ColumnType::Text),
                Named(".data", ColumnType::Bytes)};
      default: return {Named("", ColumnType::Text)};
    }
  }

  void Read(Value const& value, Row& row) const {
    std::size_t const fields = m_fieldCount;
    if (std::holds_alternative<std::monostate>(value)) {
      for (std::size_t i = 0; i < fields; ++i) row.Add({});
    } else if (std::holds_alternative<NotApplicable>(value)) {
      for (std::size_t i = 0; i < fields; ++i) row.Add(NotApplicable());
    } else {
      ReadPresent(value, row);
    }
  }

 private:
  Field Named(char const* part, ColumnType type) const {
    return {m_attribute.name + part, m_attribute.name, "", type};
  }
  Field Figure(char const* part) const {
    return {m_attribute.name + part, m_attribute.name, m_figures.Unit(), ColumnType::Number};
  }

  template <class T>
  T const& Get(Value const& value) const {
    T const* const held = std::get_if<T>(&value);
    if (held == nullptr) {
      RefuseValue(m_attribute.name,
                  std::string("has a value that is not a ") + NameOf(m_attribute.type));
    }
    return *held;
  }
  static Cell CountCell(std::size_t count) { return static_cast<std::int64_t>(count); }

  void ReadPresent(Value const& value, Row& row) const {
    switch (m_attribute.type) {
      case AttributeType::Text:
      case AttributeType::LongText: return row.Add(TextCell(Get<std::string>(value)));
      case AttributeType::Integer: return row.Add(Get<std::int64_t>(value));
      case AttributeType::Logical: return row.Add(Get<bool>(value));
      case AttributeType::Date: return ReadDate(Get<DateTime>(value), row);
      case AttributeType::Discrete: return ReadWords(Get<std::vector<std::string>>(value), row);
      case AttributeType::Number: return ReadNumber(value, row);
      case AttributeType::Range: return ReadRange(value, row);
      case AttributeType::Curve: return row.Add(CountCell(Get<Curves>(value).curves.size()));
      case AttributeType::Grid: {
        auto const& grid = Get<std::shared_ptr<Grid const>>(value);
        return row.Add(CountCell(grid ? grid->rows.size() : 0));
      }
      case AttributeType::Link: {
        Link const& link = Get<Link>(value);
        row.Add(TextCell(link.url));
        return row.Add(TextCell(link.description));
      }
      case AttributeType::File:
      case AttributeType::Picture: return ReadFile(Get<File>(value), row);
      case AttributeType::Other: return row.Add({});
    }
  }

  void ReadDate(DateTime const& date, Row& row) const {
    auto const moment = date.Microseconds();
    if (!moment)
      RefuseValue(m_attribute.name, "has the value " + Quoted(date.text) + ", which is not a date");
    row.Add(*moment);
  }
  void ReadWords(std::vector<std::string> const& words, Row& row) const {
    if (!m_attribute.isMultiValued && words.size() > 1) {
      RefuseValue(m_attribute.name, "takes one word and has several");
    }
    if (!m_attribute.isMultiValued) return row.Add(words.empty() ? Cell() : TextCell(words[0]));
    row.Add(std::vector<std::string_view>(words.begin(), words.end()));
  }
  void ReadNumber(Value const& value, Row& row) const {
    auto const* const quantity = std::get_if<Quantity>(&value);
    std::size_t count = 1;
    if (quantity != nullptr) {
      row.Add(m_figures(quantity->value, quantity->unit), quantity->estimated);
    } else {
      Points const& points = Get<Points>(value);
      count = points.points.size();
      row.Add(count == 1 ? m_figures(points.points[0].value, points.unit) : Cell(),
              points.estimated);
    }
    if (m_mayBeSeveral) row.Add(CountCell(count));
  }
  void ReadRange(Value const& value, Row& row) const {
    Range const& range = Get<Range>(value);
    for (auto const& end : {range.low, range.high}) {
      row.Add(end ? m_figures(*end, range.unit) : Cell(), range.estimated);
    }
  }
  void ReadFile(File const& file, Row& row) const {
    if (m_attribute.type == AttributeType::File) {
      row.Add(TextCell(file.name));
      row.Add(TextCell(file.description));
    }
    row.Add(TextCell(file.contentType));
    row.Add(file.url.empty() ? Cell() : TextCell(file.url));
    row.Add(BytesCell(file.data));
  }

  Attribute m_attribute;
  Figures m_figures;
  bool m_mayBeSeveral;
  std::size_t m_fieldCount = Fields().size();
};

Field OfRecord(char const* name, ColumnType type) {
  return {std::string("record.") + name, "", "", type};
}

/// Makes rows of one record after the other.
class Form {
 public:
  virtual ~Form() = default;
  virtual std::vector<Field> Fields() const = 0;
  /// Calls `add` with each row of the record.
  virtual void Read(RecordHead const& record, std::vector<Value> const& values,
                    std::function<void(Row&)> const& add) const = 0;
};

class WideForm : public Form {
 public:
  WideForm(std::vector<Attribute> const& attributes, Units const& units, UnitSystem const& system) {
    for (Attribute const& attribute : attributes) m_sources.emplace_back(attribute, units, system);
  }

  std::vector<Field> Fields() const override {
    std::vector<Field> fields = {
        OfRecord("identity", ColumnType::Integer), OfRecord("guid", ColumnType::Text),
        OfRecord("name", ColumnType::Text), OfRecord("fullName", ColumnType::Text),
        OfRecord("folder", ColumnType::Text)};
    for (Source const& source : m_sources) {
      for (Field& field : source.Fields()) fields.push_back(std::move(field));
    }
    return fields;
  }

  void Read(RecordHead const& record, std::vector<Value> const& values,
            std::function<void(Row&)> const& add) const override {
    Row row;
    row.Add(std::int64_t{record.id.identity});
    row.Add(record.id.guid.empty() ? Cell() : TextCell(record.id.guid));
    row.Add(TextCell(record.name));
    row.Add(TextCell(record.fullName));
    row.Add(TextCell(record.folder));
    static Value const none;
    for (std::size_t i = 0; i < m_sources.size(); ++i) {
      m_sources[i].Read(i < values.size() ? values[i] : none, row);
    }
    add(row);
  }

 private:
  std::vector<Source> m_sources;
};

/// What the long forms share: the record before each row.
class LongForm : public Form {
 public:
  std::vector<Field> Fields() const override {
    std::vector<Field> fields = {OfRecord("identity", ColumnType::Integer),
                                 OfRecord("guid", ColumnType::Text),
                                 OfRecord("name", ColumnType::Text)};
    for (Field& field : OwnFields()) fields.push_back(std::move(field));
    return fields;
  }

 protected:
  virtual std::vector<Field> OwnFields() const = 0;

  static Row Begin(RecordHead const& record) {
    Row row;
    row.Add(std::int64_t{record.id.identity});
    row.Add(record.id.guid.empty() ? Cell() : TextCell(record.id.guid));
    row.Add(TextCell(record.name));
    return row;
  }
};

/// Columns for the parameters of an attribute.
class ParameterColumns {
 public:
  ParameterColumns(Attribute const& attribute, Units const& units, UnitSystem const& system)
      : m_attribute(attribute) {
    for (ParameterInfo const& info : attribute.parameters) {
      m_figures.emplace_back(attribute.name, info.unit, units, system);
    }
  }

  void AddFields(std::vector<Field>& fields) const {
    for (std::size_t i = 0; i < m_figures.size(); ++i) {
      ParameterInfo const& info = m_attribute.parameters[i];
      fields.push_back({info.name, m_attribute.name, info.isDiscrete ? "" : m_figures[i].Unit(),
                        info.isDiscrete ? ColumnType::Text : ColumnType::Number});
    }
  }

  /// Cells for all parameters, those that are not among these empty.
  std::vector<Cell> Cells(std::vector<Parameter> const& parameters) const {
    std::vector<Cell> cells(m_figures.size());
    for (Parameter const& one : parameters) {
      auto const* const word = std::get_if<std::string>(&one.value);
      if (word != nullptr) {
        SetWord(cells, one.name, *word);
      } else {
        SetFigure(cells, one.name, std::get<double>(one.value), one.unit);
      }
    }
    return cells;
  }
  void SetWord(std::vector<Cell>& cells, std::string const& name, std::string const& word) const {
    std::size_t const place = PlaceOf(name);
    if (!m_attribute.parameters[place].isDiscrete) RefuseWord(name, word);
    cells[place] = TextCell(word);
  }
  void SetFigure(std::vector<Cell>& cells, std::string const& name, double figure,
                 std::string const& unit) const {
    std::size_t const place = PlaceOf(name);
    if (m_attribute.parameters[place].isDiscrete) RefuseWord(name, "a number");
    cells[place] = m_figures[place](figure, unit);
  }

 private:
  std::size_t PlaceOf(std::string const& name) const {
    auto const& known = m_attribute.parameters;
    auto const found = std::find_if(known.begin(), known.end(),
                                    [&](ParameterInfo const& one) { return one.name == name; });
    if (found == known.end()) {
      RefuseValue(m_attribute.name, "has a value with the unknown parameter " + Quoted(name));
    }
    return static_cast<std::size_t>(found - known.begin());
  }
  [[noreturn]] void RefuseWord(std::string const& name, std::string const& word) const {
    RefuseValue(m_attribute.name, "has " + Quoted(word) + " for its parameter " + Quoted(name));
  }

  Attribute m_attribute;
  std::vector<Figures> m_figures;
};

class LongPoints : public LongForm {
 public:
  LongPoints(Attribute const& attribute, Units const& units, UnitSystem const& system)
      : m_name(attribute.name),
        m_figures(attribute.name, attribute.unit, units, system),
        m_parameters(attribute, units, system) {}

  void Read(RecordHead const& record, std::vector<Value> const& values,
            std::function<void(Row&)> const& add) const override {
    if (values.empty()) return;
    if (auto const* const one = std::get_if<Quantity>(&values[0])) {
      return Add(record, {one->value, {}}, one->unit, one->estimated, add);
    }
    auto const* const points = std::get_if<Points>(&values[0]);
    if (points == nullptr) return;
    for (Point const& point : points->points) {
      Add(record, point, points->unit, points->estimated, add);
    }
  }

 protected:
  std::vector<Field> OwnFields() const override {
    std::vector<Field> fields;
    m_parameters.AddFields(fields);
    fields.push_back({m_name, m_name, m_figures.Unit(), ColumnType::Number});
    fields.push_back({m_name + ".estimated", m_name, "", ColumnType::Logical});
    return fields;
  }

 private:
  void Add(RecordHead const& record, Point const& point, std::string const& unit, bool estimated,
           std::function<void(Row&)> const& add) const {
    Row row = Begin(record);
    for (Cell& cell : m_parameters.Cells(point.parameters)) row.Add(std::move(cell));
    row.Add(m_figures(point.value, unit), estimated);
    row.Add(estimated);
    add(row);
  }

  std::string m_name;
  Figures m_figures;
  ParameterColumns m_parameters;
};

class LongCurves : public LongForm {
 public:
  LongCurves(Attribute const& attribute, Units const& units, UnitSystem const& system)
      : m_name(attribute.name),
        m_figures(attribute.name, attribute.unit, units, system),
        m_parameters(attribute, units, system) {}

  void Read(RecordHead const& record, std::vector<Value> const& values,
            std::function<void(Row&)> const& add) const override {
    auto const* const curves = values.empty() ? nullptr : std::get_if<Curves>(&values[0]);
    if (curves == nullptr) return;
    for (std::size_t i = 0; i < curves->curves.size(); ++i) {
      Curve const& curve = curves->curves[i];
      std::vector<Cell> const constant = m_parameters.Cells(curve.parameters);
      for (std::size_t j = 0; j < curve.x.size(); ++j) {
        Row row = Begin(record);
        row.Add(static_cast<std::int64_t>(i));
        std::vector<Cell> cells = constant;
        SetX(cells, curve, j);
        for (Cell& cell : cells) row.Add(std::move(cell));
        AddY(row, curve, j);
        add(row);
      }
    }
  }

 protected:
  std::vector<Field> OwnFields() const override {
    std::vector<Field> fields = {{m_name + ".series", m_name, "", ColumnType::Integer}};
    m_parameters.AddFields(fields);
    for (char const* const part : {"", ".low", ".high"}) {
      fields.push_back({m_name + part, m_name, m_figures.Unit(), ColumnType::Number});
    }
    fields.push_back({m_name + ".estimated", m_name, "", ColumnType::Logical});
    return fields;
  }

 private:
  void SetX(std::vector<Cell>& cells, Curve const& curve, std::size_t point) const {
    bool const hasWord = !curve.xWords.empty() && !curve.xWords[point].empty();
    if (hasWord) {
      m_parameters.SetWord(cells, curve.xName, curve.xWords[point]);
    } else if (!std::isnan(curve.x[point])) {
      m_parameters.SetFigure(cells, curve.xName, curve.x[point], curve.xUnit);
    }
  }
  void AddY(Row& row, Curve const& curve, std::size_t point) const {
    bool const isEstimated = !curve.estimated.empty() && curve.estimated[point];
    bool const isRange = !curve.yHigh.empty() && !std::isnan(curve.yHigh[point]);
    double const low = curve.y[point];
    for (double const figure : {curve.Middle(point), low, isRange ? curve.yHigh[point] : low}) {
      row.Add(m_figures(figure, curve.yUnit), isEstimated);
    }
    row.Add(isEstimated);
  }

  std::string m_name;
  Figures m_figures;
  ParameterColumns m_parameters;
};

class LongGrid : public LongForm {
 public:
  LongGrid(Attribute const& attribute, Units const& units, UnitSystem const& system)
      : m_attribute(attribute) {
    for (GridColumnInfo const& column : attribute.columns) {
      Attribute asAttribute;
      asAttribute.name = column.name;
      asAttribute.type = column.type;
      asAttribute.unit = column.unit;
      m_sources.emplace_back(asAttribute, units, system);
    }
  }

  void Read(RecordHead const& record, std::vector<Value> const& values,
            std::function<void(Row&)> const& add) const override {
    auto const* const held =
        values.empty() ? nullptr : std::get_if<std::shared_ptr<Grid const>>(&values[0]);
    if (held == nullptr || !*held) return;
    Grid const& grid = **held;
    std::vector<std::size_t> places;
    for (GridColumnInfo const& column : m_attribute.columns) {
      auto const found =
          std::find_if(grid.columns.begin(), grid.columns.end(),
                       [&](Grid::Column const& one) { return one.name == column.name; });
      places.push_back(static_cast<std::size_t>(found - grid.columns.begin()));
    }
    static Value const none;
    for (std::size_t i = 0; i < grid.rows.size(); ++i) {
      Row row = Begin(record);
      row.Add(static_cast<std::int64_t>(i));
      auto const& cells = grid.rows[i].cells;
      for (std::size_t j = 0; j < m_sources.size(); ++j) {
        m_sources[j].Read(places[j] < cells.size() ? cells[places[j]] : none, row);
      }
      add(row);
    }
  }

 protected:
  std::vector<Field> OwnFields() const override {
    std::vector<Field> fields = {
        {m_attribute.name + ".row", m_attribute.name, "", ColumnType::Integer}};
    for (Source const& source : m_sources) {
      for (Field& field : source.Fields()) {
        field.attribute = m_attribute.name;
        fields.push_back(std::move(field));
      }
    }
    return fields;
  }

 private:
  Attribute m_attribute;
  std::vector<Source> m_sources;
};

std::unique_ptr<Form> LongFormOf(Attribute const& attribute, Units const& units,
                                 UnitSystem const& system) {
  switch (attribute.type) {
    case AttributeType::Number: return std::make_unique<LongPoints>(attribute, units, system);
    case AttributeType::Curve: return std::make_unique<LongCurves>(attribute, units, system);
    case AttributeType::Grid: return std::make_unique<LongGrid>(attribute, units, system);
    default: break;
  }
  throw Error(ErrorCode::InvalidArgument, "the attribute " + Quoted(attribute.name) + " holds " +
                                              NameOf(attribute.type) +
                                              "; numbers, curves and tables have a long form");
}

}  // namespace

bool Column::IsValid(std::size_t row) const { return nullCount == 0 || HasBit(validity, row); }
bool Column::IsNotApplicable(std::size_t row) const { return HasBit(notApplicable, row); }
bool Column::IsEstimated(std::size_t row) const { return HasBit(estimated, row); }
bool Column::Logical(std::size_t row) const { return HasBit(bits, row); }

std::string_view Column::Text(std::size_t row) const {
  auto const begin = static_cast<std::size_t>(offsets.at(row));
  return std::string_view(bytes).substr(begin,
                                        static_cast<std::size_t>(offsets.at(row + 1)) - begin);
}

std::vector<std::string_view> Column::Words(std::size_t row) const {
  std::vector<std::string_view> words;
  for (auto i = static_cast<std::size_t>(offsets.at(row));
       i < static_cast<std::size_t>(offsets.at(row + 1)); ++i) {
    auto const begin = static_cast<std::size_t>(itemOffsets.at(i));
    words.push_back(std::string_view(bytes).substr(
        begin, static_cast<std::size_t>(itemOffsets.at(i + 1)) - begin));
  }
  return words;
}

Column const* Columns::Find(std::string const& name) const {
  auto const found = std::find_if(columns.begin(), columns.end(),
                                  [&](Column const& one) { return one.field.name == name; });
  return found == columns.end() ? nullptr : &*found;
}

struct ColumnBuilder::Parts {
  explicit Parts(std::unique_ptr<Form> made) : form(std::move(made)), fields(form->Fields()) {
    Begin();
  }
  void Begin() {
    columns = std::make_shared<Columns>();
    for (Field const& field : fields) columns->columns.push_back(Empty(field));
  }

  std::unique_ptr<Form> form;
  std::vector<Field> fields;
  std::shared_ptr<Columns> columns;
};

ColumnBuilder::ColumnBuilder(std::unique_ptr<Parts> parts) : m_parts(std::move(parts)) {}
ColumnBuilder::ColumnBuilder(ColumnBuilder&&) noexcept = default;
ColumnBuilder& ColumnBuilder::operator=(ColumnBuilder&&) noexcept = default;
ColumnBuilder::~ColumnBuilder() = default;

ColumnBuilder ColumnBuilder::Wide(std::vector<Attribute> const& attributes, Units const& units,
                                  UnitSystem const& system) {
  return ColumnBuilder(
      std::make_unique<Parts>(std::make_unique<WideForm>(attributes, units, system)));
}

ColumnBuilder ColumnBuilder::Long(Attribute const& attribute, Units const& units,
                                  UnitSystem const& system) {
  return ColumnBuilder(std::make_unique<Parts>(LongFormOf(attribute, units, system)));
}

std::vector<Field> const& ColumnBuilder::Fields() const { return m_parts->fields; }
std::size_t ColumnBuilder::Rows() const { return m_parts->columns->rows; }

std::size_t ColumnBuilder::LongestBytes() const {
  std::size_t longest = 0;
  for (Column const& column : m_parts->columns->columns) {
    longest = std::max(longest, column.bytes.size());
  }
  return longest;
}

void ColumnBuilder::Add(RecordHead const& record, std::vector<Value> const& values) {
  // All rows are made before the first is added, so that a value that does not fit adds nothing.
  std::vector<Row> rows;
  m_parts->form->Read(record, values, [&rows](Row& row) { rows.push_back(std::move(row)); });
  std::vector<Column>& columns = m_parts->columns->columns;
  constexpr std::size_t kMost = std::numeric_limits<std::int32_t>::max();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    std::size_t bytes = columns[i].bytes.size();
    for (Row const& row : rows) bytes += BytesOf(row.cells[i].cell);
    if (bytes > kMost) {
      throw Error(ErrorCode::InvalidArgument,
                  "the column " + Quoted(columns[i].field.name) +
                      " cannot hold more than 2 GiB; read fewer records in a chunk");
    }
  }
  for (Row const& row : rows) {
    for (std::size_t i = 0; i < columns.size(); ++i) Appender(columns[i]).Append(row.cells[i]);
    ++m_parts->columns->rows;
  }
}

std::shared_ptr<Columns const> ColumnBuilder::Take() {
  std::shared_ptr<Columns const> columns = std::move(m_parts->columns);
  m_parts->Begin();
  return columns;
}

}  // namespace lumo

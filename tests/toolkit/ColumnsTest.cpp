// Records as columns, and the columns as other libraries see them through the Arrow interfaces.

#include <gmock/gmock.h>

#include <cstring>
#include <limits>

#include "lumo/toolkit/Arrow.h"
#include "lumo/toolkit/Numbers.h"
#include "tests/toolkit/Support.h"

using lumo::AttributeType;
using lumo::ColumnBuilder;
using lumo::ErrorCode;
using lumo::Value;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kOpen = std::numeric_limits<double>::infinity();

lumo::Attribute Functional(char const* name, AttributeType type, char const* unit) {
  lumo::Attribute attribute = AttributeNamed(name, type, unit);
  attribute.parameters = {{"Temperature", 7, "degC"}, {"Condition", 8, "", true}};
  return attribute;
}

/// One attribute of each type.
std::vector<lumo::Attribute> EveryType() {
  std::vector<lumo::Attribute> all = {
      AttributeNamed("Name", AttributeType::Text),
      AttributeNamed("Count", AttributeType::Integer),
      AttributeNamed("Usable", AttributeType::Logical),
      AttributeNamed("Date", AttributeType::Date),
      AttributeNamed("Class", AttributeType::Discrete),
      AttributeNamed("Uses", AttributeType::Discrete),
      AttributeNamed("Hardness", AttributeType::Number, "HV"),
      Functional("Strength", AttributeType::Number, "MPa"),
      AttributeNamed("Density", AttributeType::Range, "kg/m^3"),
      Functional("Yield", AttributeType::Curve, "MPa"),
      AttributeNamed("Parts", AttributeType::Grid),
      AttributeNamed("Sheet", AttributeType::Link),
      AttributeNamed("Photo", AttributeType::Picture),
      AttributeNamed("Note", AttributeType::File),
      AttributeNamed("Future", AttributeType::Other),
  };
  all[5].isMultiValued = true;
  return all;
}

lumo::UnitSystem Si() {
  return lumo::UnitSystem({{"MPa", {"Pa", 1e6, 0}}, {"degC", {"K", 1, 273.15}}});
}

lumo::Curves TwoCurves() {
  lumo::Curve curve;
  curve.xName = "Temperature";
  curve.xUnit = "degC";
  curve.yUnit = "MPa";
  curve.x = {20, kNone};
  curve.y = {240, 200};
  curve.yHigh = {260, kOpen};
  curve.estimated = {false, true};
  curve.parameters = {{"Condition", "T6", ""}};
  lumo::Curve other = curve;
  other.xName = "Condition";
  other.xUnit.clear();
  other.x = {kNone};
  other.xWords = {"O"};
  other.y = {55};
  other.yHigh.clear();
  other.estimated.clear();
  other.parameters = {{"Temperature", 293.15, "K"}};
  return {{curve, other}};
}

std::shared_ptr<lumo::Grid const> AGrid() {
  lumo::Grid grid;
  grid.columns = {{"Most", "%"}, {"Element", ""}};
  grid.rows = {{{lumo::Quantity{98, "%"}, std::string("Al")}, "", {}},
               {{lumo::NotApplicable(), std::string("Cu")}, "", {}},
               {{Value()}, "", {}}};
  return std::make_shared<lumo::Grid const>(std::move(grid));
}

std::vector<Value> FullRow() {
  return {std::string("Größe"),
          std::int64_t{-3},
          true,
          lumo::DateTime{"2026-03-17T09:30:00"},
          std::vector<std::string>{"Good"},
          std::vector<std::string>{"Ships", "Cars"},
          lumo::Quantity{107, "HV", true},
          lumo::Points{{{5, {}}, {6, {}}}, "MPa"},
          lumo::Range{2690.0, std::nullopt, "kg/m^3"},
          TwoCurves(),
          AGrid(),
          lumo::Link{"http://x/", "X"},
          lumo::File{"", "image/png", "", "http://p/", {}},
          lumo::File{"a.txt", "text/plain", "d", "", {0, 255}},
          std::string("anything")};
}

lumo::RecordHead Head(int identity) {
  return {{"KEY", identity, ""}, "AW-6061", "Aluminium AW-6061", "Metals/Aluminium"};
}

/// The cell as text, in brackets what marks it.
std::string CellOf(lumo::Column const& column, std::size_t row) {
  std::string text = column.IsEstimated(row) ? "~" : "";
  if (column.IsNotApplicable(row)) return "n/a";
  if (!column.IsValid(row)) return "-";
  switch (column.field.type) {
    case lumo::ColumnType::Number: return text + lumo::TextOf(column.numbers.at(row));
    case lumo::ColumnType::Integer:
    case lumo::ColumnType::Moment: return text + std::to_string(column.integers.at(row));
    case lumo::ColumnType::Logical: return column.Logical(row) ? "yes" : "no";
    case lumo::ColumnType::Words: break;
    default: return text + std::string(column.Text(row));
  }
  for (std::string_view const word : column.Words(row)) text += "<" + std::string(word) + ">";
  return text;
}

std::vector<std::string> RowOf(lumo::Columns const& columns, std::size_t row) {
  std::vector<std::string> cells;
  for (lumo::Column const& column : columns.columns) cells.push_back(CellOf(column, row));
  return cells;
}

std::vector<std::string> HeadingsOf(ColumnBuilder const& builder) {
  std::vector<std::string> names;
  for (lumo::Field const& field : builder.Fields()) {
    names.push_back(field.name + (field.unit.empty() ? "" : " [" + field.unit + "]"));
  }
  return names;
}

TEST(Columns, HoldEveryTypeOfAttribute) {
  ColumnBuilder builder = ColumnBuilder::Wide(EveryType(), SomeUnits(), Si());
  EXPECT_THAT(HeadingsOf(builder),
              ElementsAre("record.identity", "record.guid", "record.name", "record.fullName",
                          "record.folder", "Name", "Count", "Usable", "Date", "Class", "Uses",
                          "Hardness [HV]", "Strength [Pa]", "Strength.points",
                          "Density.low [kg/m^3]", "Density.high [kg/m^3]", "Yield.curves",
                          "Parts.rows", "Sheet", "Sheet.description", "Photo.contentType",
                          "Photo.url", "Photo.data", "Note.fileName", "Note.description",
                          "Note.contentType", "Note.url", "Note.data", "Future"));
  builder.Add(Head(69), FullRow());
  std::vector<Value> sparse(EveryType().size());
  sparse[8] = lumo::NotApplicable();
  sparse[7] = lumo::Quantity{2, "GPa"};
  builder.Add({{"KEY", 70, "guid"}, "x", "", ""}, sparse);
  builder.Add(Head(71), {});
  auto const columns = builder.Take();
  ASSERT_EQ(columns->rows, 3u);
  EXPECT_THAT(RowOf(*columns, 0),
              ElementsAre("69", "-", "AW-6061", "Aluminium AW-6061", "Metals/Aluminium", "Größe",
                          "-3", "yes", "1773739800000000", "Good", "<Ships><Cars>", "~107", "-",
                          "2", "2690", "-", "2", "3", "http://x/", "X", "image/png", "http://p/",
                          "-", "a.txt", "d", "text/plain", "-", std::string("\0\xFF", 2), "-"));
  EXPECT_THAT(
      RowOf(*columns, 1),
      ElementsAre("70", "guid", "x", "", "", "-", "-", "-", "-", "-", "-", "-", "2000000000", "1",
                  "n/a", "n/a", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-", "-"));
  EXPECT_EQ(CellOf(columns->columns[5], 2), "-");
  EXPECT_EQ(columns->Find("Density.low")->nullCount, 2u);
  EXPECT_EQ(columns->Find("Density.middle"), nullptr);
  EXPECT_EQ(builder.Rows(), 0u);
}

TEST(Columns, KeepTheirBitsApartInAnyNumberOfRows) {
  std::vector<lumo::Attribute> const attributes = {
      AttributeNamed("Usable", AttributeType::Logical),
      AttributeNamed("Hardness", AttributeType::Number, "HV")};
  ColumnBuilder builder = ColumnBuilder::Wide(attributes, SomeUnits());
  for (int i = 0; i < 100; ++i) {
    builder.Add(Head(i), {i % 7 == 6 ? Value() : Value(i % 2 == 0),
                          i % 5 == 4 ? Value(lumo::NotApplicable())
                                     : Value(lumo::Quantity{i * 1.0, "HV", i % 3 == 2})});
  }
  auto const columns = builder.Take();
  lumo::Column const& usable = *columns->Find("Usable");
  lumo::Column const& hardness = *columns->Find("Hardness");
  EXPECT_EQ(usable.nullCount, 14u);
  for (int i = 0; i < 100; ++i) {
    auto const row = static_cast<std::size_t>(i);
    ASSERT_EQ(CellOf(usable, row), i % 7 == 6 ? "-" : i % 2 == 0 ? "yes" : "no");
    ASSERT_EQ(CellOf(hardness, row),
              i % 5 == 4 ? "n/a" : (i % 3 == 2 ? "~" : "") + std::to_string(i));
  }
}

TEST(Columns, ShowPointsCurvesAndGridsInLongForm) {
  ColumnBuilder points = ColumnBuilder::Long(EveryType()[7], SomeUnits(), Si());
  EXPECT_THAT(HeadingsOf(points),
              ElementsAre("record.identity", "record.guid", "record.name", "Temperature [K]",
                          "Condition", "Strength [Pa]", "Strength.estimated"));
  points.Add(
      Head(1),
      {lumo::Points{
          {{94, {{"Condition", "T6", ""}, {"Temperature", 20.0, "degC"}}}, {9, {}}}, "MPa", true}});
  points.Add(Head(2), {lumo::Quantity{1, "Pa"}});
  points.Add(Head(3), {Value()});
  auto const some = points.Take();
  ASSERT_EQ(some->rows, 3u);
  EXPECT_THAT(RowOf(*some, 0),
              ElementsAre("1", "-", "AW-6061", "293.15", "T6", "~94000000", "yes"));
  EXPECT_THAT(RowOf(*some, 1), ElementsAre("1", "-", "AW-6061", "-", "-", "~9000000", "yes"));
  EXPECT_THAT(RowOf(*some, 2), ElementsAre("2", "-", "AW-6061", "-", "-", "1", "no"));

  ColumnBuilder curves = ColumnBuilder::Long(EveryType()[9], SomeUnits(), Si());
  EXPECT_THAT(HeadingsOf(curves),
              ElementsAre("record.identity", "record.guid", "record.name", "Yield.series",
                          "Temperature [K]", "Condition", "Yield [Pa]", "Yield.low [Pa]",
                          "Yield.high [Pa]", "Yield.estimated"));
  curves.Add(Head(1), {TwoCurves()});
  auto const rows = curves.Take();
  ASSERT_EQ(rows->rows, 3u);
  EXPECT_THAT(RowOf(*rows, 0), ElementsAre("1", "-", "AW-6061", "0", "293.15", "T6", "250000000",
                                           "240000000", "260000000", "no"));
  EXPECT_THAT(RowOf(*rows, 1), ElementsAre("1", "-", "AW-6061", "0", "-", "T6", "~200000000",
                                           "~200000000", "-", "yes"));
  EXPECT_THAT(RowOf(*rows, 2), ElementsAre("1", "-", "AW-6061", "1", "293.15", "O", "55000000",
                                           "55000000", "55000000", "no"));

  lumo::Attribute parts = AttributeNamed("Parts", AttributeType::Grid);
  parts.columns = {{"Element", AttributeType::Text}, {"Most", AttributeType::Number, "%"}};
  ColumnBuilder grids = ColumnBuilder::Long(parts, SomeUnits());
  grids.Add(Head(1), {AGrid()});
  auto const cells = grids.Take();
  ASSERT_EQ(cells->rows, 3u);
  EXPECT_THAT(RowOf(*cells, 0), ElementsAre("1", "-", "AW-6061", "0", "Al", "98"));
  EXPECT_THAT(RowOf(*cells, 1), ElementsAre("1", "-", "AW-6061", "1", "Cu", "n/a"));
  EXPECT_THAT(RowOf(*cells, 2), ElementsAre("1", "-", "AW-6061", "2", "-", "-"));
  EXPECT_EQ(
      ErrorOf([] { ColumnBuilder::Long(AttributeNamed("T", AttributeType::Text), {}); }).Code(),
      ErrorCode::InvalidArgument);
}

TEST(Columns, RefuseARecordThatDoesNotFitAndTakeNothingOfIt) {
  std::vector<lumo::Attribute> const attributes = EveryType();
  lumo::Curves unknownAxis = TwoCurves();
  unknownAxis.curves[1].xName = "Time";
  struct Case {
    std::size_t attribute;
    Value value;
    char const* says;
    bool isLong = false;
  };
  std::vector<Case> const cases = {
      {0, std::int64_t{3}, "is not a text"},
      {3, lumo::DateTime{"soon"}, "\"soon\", which is not a date"},
      {4, std::vector<std::string>{"Good", "Bad"}, "has several"},
      {8, lumo::Quantity{7, "kg/m^3"}, "is not a range of numbers"},
      {8, lumo::Range{7.0, 8.0, "MPa"}, "in MPa, not in kg/m^3"},
      {9, unknownAxis, "unknown parameter \"Time\"", true},
      {7, lumo::Points{{{1, {{"Condition", 3.0, ""}}}}}, "for its parameter \"Condition\"", true},
  };
  for (Case const& one : cases) {
    ColumnBuilder builder = one.isLong ? ColumnBuilder::Long(attributes[one.attribute], SomeUnits())
                                       : ColumnBuilder::Wide(attributes, SomeUnits());
    std::vector<Value> values(one.isLong ? 1 : attributes.size());
    values[one.isLong ? 0 : one.attribute] = one.value;
    lumo::Error const error = ErrorOf([&] { builder.Add(Head(1), values); });
    EXPECT_EQ(error.Code(), ErrorCode::NotUnderstood);
    EXPECT_THAT(error.what(),
                AllOf(HasSubstr(one.says), HasSubstr(attributes[one.attribute].name)));
    EXPECT_EQ(builder.Take()->columns[0].size, 0u);
  }
}

// ---- what another library reads, by the rules of the format alone

bool HasBit(void const* bitmap, std::int64_t place) {
  return ((static_cast<unsigned char const*>(bitmap)[place / 8] >> (place % 8)) & 1) != 0;
}

template <class T>
T At(void const* buffer, std::int64_t place) {
  T value;
  std::memcpy(&value, static_cast<char const*>(buffer) + place * static_cast<int>(sizeof value),
              sizeof value);
  return value;
}

std::string TextAt(ArrowArray const& array, std::int64_t place) {
  auto const begin = At<std::int32_t>(array.buffers[1], place);
  auto const end = At<std::int32_t>(array.buffers[1], place + 1);
  return {static_cast<char const*>(array.buffers[2]) + begin,
          static_cast<std::size_t>(end - begin)};
}

std::string CellOf(ArrowSchema const& schema, ArrowArray const& array, std::int64_t row) {
  bool const isNull = array.null_count != 0 && !HasBit(array.buffers[0], row);
  if (isNull) return "-";
  std::string const format = schema.format;
  if (format == "g") return lumo::TextOf(At<double>(array.buffers[1], row));
  if (format == "l" || format == "tsu:") {
    return std::to_string(At<std::int64_t>(array.buffers[1], row));
  }
  if (format == "b") return HasBit(array.buffers[1], row) ? "yes" : "no";
  if (format == "u" || format == "z") return TextAt(array, row);
  EXPECT_EQ(format, "+l");
  std::string words;
  for (auto i = At<std::int32_t>(array.buffers[1], row);
       i < At<std::int32_t>(array.buffers[1], row + 1); ++i) {
    words += "<" + TextAt(*array.children[0], i) + ">";
  }
  return words;
}

/// "unit=MPa attribute=Yield"
std::string MetadataOf(char const* metadata) {
  std::string text;
  auto const take = [&metadata] {
    auto const size = At<std::int32_t>(metadata, 0);
    std::string taken(metadata + 4, static_cast<std::size_t>(size));
    metadata += 4 + size;
    return taken;
  };
  auto const count = At<std::int32_t>(metadata, 0);
  metadata += 4;
  for (int i = 0; i < count; ++i) {
    std::string const key = take();
    text += (text.empty() ? "" : " ") + key + "=" + take();
  }
  return text;
}

TEST(Arrow, HandsEveryCellToOtherLibraries) {
  ColumnBuilder builder = ColumnBuilder::Wide(EveryType(), SomeUnits(), Si());
  builder.Add(Head(69), FullRow());
  std::vector<Value> sparse(EveryType().size());
  sparse[8] = lumo::NotApplicable();
  for (int i = 0; i < 10; ++i) builder.Add(Head(i), sparse);
  auto columns = builder.Take();
  std::vector<std::vector<std::string>> expected;
  for (std::size_t row = 0; row < columns->rows; ++row) {
    expected.push_back(RowOf(*columns, row));
    for (std::string& cell : expected.back()) {
      if (cell == "n/a") cell = "-";
      if (cell[0] == '~') cell.erase(0, 1);
    }
    expected.back().push_back(row == 0 ? "" : "<Density>");
    expected.back().push_back(row == 0 ? "<Hardness>" : "");
  }
  void const* const lows = columns->Find("Density.low")->numbers.data();

  int chunks = 0;
  ArrowArrayStream stream;
  lumo::ExportStream(
      builder.Fields(), [&]() { return chunks++ == 0 ? columns : nullptr; }, &stream);
  ArrowSchema schema;
  ArrowArray array;
  ASSERT_EQ(stream.get_schema(&stream, &schema), 0);
  ASSERT_EQ(stream.get_next(&stream, &array), 0);
  columns.reset();
  ArrowArray end;
  ASSERT_EQ(stream.get_next(&stream, &end), 0);
  EXPECT_EQ(end.release, nullptr);
  ASSERT_EQ(stream.get_next(&stream, &end), 0);
  stream.release(&stream);
  EXPECT_EQ(stream.release, nullptr);

  EXPECT_STREQ(schema.format, "+s");
  ASSERT_EQ(schema.n_children, array.n_children);
  ASSERT_EQ(array.length, 11);
  for (std::int64_t row = 0; row < array.length; ++row) {
    std::vector<std::string> cells;
    for (std::int64_t i = 0; i < array.n_children; ++i) {
      EXPECT_EQ(array.children[i]->length, array.length);
      cells.push_back(CellOf(*schema.children[i], *array.children[i], row));
    }
    EXPECT_EQ(cells, expected[static_cast<std::size_t>(row)]);
  }
  EXPECT_STREQ(schema.children[14]->name, "Density.low");
  EXPECT_EQ(MetadataOf(schema.children[14]->metadata), "unit=kg/m^3 attribute=Density");
  EXPECT_EQ(array.children[14]->buffers[1], lows);  // not a copy
  EXPECT_STREQ(schema.children[29]->name, "record.notApplicable");

  // A child may be taken away from its parent, and outlives it.
  ArrowArray child = *array.children[14];
  array.children[14]->release = nullptr;
  schema.release(&schema);
  array.release(&array);
  EXPECT_EQ(At<double>(child.buffers[1], 0), 2690);
  child.release(&child);
}

TEST(Arrow, GivesNoRowsAndFaultsAsTheInterfaceWants) {
  ColumnBuilder builder = ColumnBuilder::Wide(EveryType(), SomeUnits());
  ArrowArray array;
  lumo::ExportArray(builder.Take(), &array);
  EXPECT_EQ(array.length, 0);
  EXPECT_EQ(At<std::int32_t>(array.children[5]->buffers[1], 0), 0);
  EXPECT_NE(array.children[5]->buffers[2], nullptr);
  array.release(&array);

  int calls = 0;
  auto const next = [&calls]() -> std::shared_ptr<lumo::Columns const> {
    ++calls;
    if (calls == 1) throw lumo::Error(ErrorCode::Cancelled, "cancelled after 3 records");
    if (calls == 2) throw std::runtime_error("lost");
    throw calls;
  };
  ArrowArrayStream stream;
  lumo::ExportStream(builder.Fields(), next, &stream);
  EXPECT_EQ(stream.get_last_error(&stream), nullptr);
  EXPECT_EQ(stream.get_next(&stream, &array), ECANCELED);
  EXPECT_STREQ(stream.get_last_error(&stream), "cancelled after 3 records");
  EXPECT_EQ(stream.get_next(&stream, &array), EIO);
  EXPECT_STREQ(stream.get_last_error(&stream), "lost");
  EXPECT_EQ(stream.get_next(&stream, &array), EIO);
  EXPECT_STREQ(stream.get_last_error(&stream), "an exception of an unknown kind");
  stream.release(&stream);
}

}  // namespace

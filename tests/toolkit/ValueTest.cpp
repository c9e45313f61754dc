// Values as plain types: their figures as text, dates, curves, units, and the way from and to the
// exact library's values.

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "lumo/LumoServiceLayer.h"
#include "lumo/toolkit/DataValues.h"
#include "lumo/toolkit/Numbers.h"
#include "tests/support/Xml.h"
#include "tests/toolkit/Support.h"

using lumo::AttributeType;
using lumo::ErrorCode;
using lumo::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kOpen = std::numeric_limits<double>::infinity();

TEST(Figures, AreWrittenAsTheyWereTyped) {
  struct Case {
    double number;
    char const* text;
  };
  constexpr Case kCases[] = {{249.99999999999997, "250"},
                             {0.1 + 0.2, "0.3"},
                             {0.15932135772036976, "0.15932135772037"},
                             {22.200000000000045, "22.2"},
                             {9.49999999999996, "9.5"},
                             {1234567.890123, "1234567.890123"},
                             {1.234567890123, "1.234567890123"},
                             {100000, "100000"},
                             {2.06e11, "206000000000"},
                             {9007199254740993.0, "9007199254740992"},
                             {1.0 / 3, "0.333333333333333"},
                             {1e21, "1e+21"},
                             {2.5e-8, "2.5e-08"},
                             {0.00001, "0.00001"},
                             {-0.5, "-0.5"},
                             {0, "0"}};
  for (Case const& one : kCases) EXPECT_EQ(lumo::TextOf(one.number), one.text);
  EXPECT_EQ(lumo::ExactTextOf(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(lumo::TextOf(1234567.891, 6), "1.23457e+06");
}

TEST(Figures, KeepTheirDigitsOnAWayThroughOtherUnitsAndText) {
  lumo::Units const units = SomeUnits();
  for (int i = 1; i < 20000; i += 7) {
    for (double const figure : {i * 1.0, i / 10.0, i / 1000.0}) {
      for (auto const& [unit, other] :
           {std::pair("MPa", "psi"), std::pair("degC", "K"), std::pair("kg/m^3", "lb/in^3")}) {
        std::string const shown = lumo::TextOf(units.Convert(figure, unit, other));
        double read = 0;
        ASSERT_TRUE(lumo::ReadNumber(shown, read));
        ASSERT_EQ(lumo::TextOf(units.Convert(read, other, unit)), lumo::TextOf(figure)) << shown;
      }
    }
  }
}

TEST(Figures, GetTheDigitsThatTheDataHave) {
  lumo::UnitStep const toPsi = {"psi", 145.03773773, 0};
  lumo::UnitStep const toKelvin = {"K", 1, 273.15};
  lumo::UnitStep const toPounds = {"lb/in^3", 3.6127292e-5, 0};
  struct Case {
    lumo::UnitStep const& step;
    double figure;
    char const* shown;
    char const* enough;
  };
  Case const kCases[] = {{toPsi, 250, "36260", "36259.4"},
                         {toPsi, 249.99999999999997, "36260", "36259.4"},
                         {toPounds, 4410, "0.1593", "0.159321"},
                         {toPounds, 4410.5, "0.15934", "0.15933942"},
                         {toKelvin, 20, "293.15", "293.15"},
                         {toKelvin, 0.00012, "273.15", "273.15012"},
                         {toPsi, 0, "0", "0"}};
  for (Case const& one : kCases) {
    EXPECT_EQ(lumo::TextOf(one.step(one.figure, lumo::ConvertedDigits::Shown)), one.shown);
    EXPECT_EQ(lumo::TextOf(one.step(one.figure, lumo::ConvertedDigits::Enough)), one.enough);
  }
  lumo::Units const units = SomeUnits();
  for (int i = 1; i < 20000; i += 7) {
    for (double const figure : {i * 1.0, i / 10.0, i / 1000.0, i * 1e4}) {
      for (auto const& [unit, other] :
           {std::pair("MPa", "psi"), std::pair("degC", "K"), std::pair("kg/m^3", "lb/in^3")}) {
        lumo::UnitSystem const system(
            {{unit,
              {other, units.Convert(1, unit, other) - units.Convert(0, unit, other),
               units.Convert(0, unit, other)}}});
        auto const value =
            system.Convert(lumo::Quantity{figure, unit, false}, lumo::ConvertedDigits::Enough);
        double const shown = std::get<lumo::Quantity>(value).value;
        double const exact = units.Convert(shown, other, unit);
        ASSERT_EQ(lumo::TextOf(units.Meant(shown, other, unit).value_or(exact)),
                  lumo::TextOf(figure))
            << lumo::TextOf(shown);
      }
    }
  }
  // What somebody has typed is not taken for something else.
  for (double const own : {12.25, 36.5, 3.125, 12.0, 2.7}) {
    auto const meant = lumo::UnitStep{"mm", 25.4, 0}.Meant(own);
    EXPECT_TRUE(!meant || std::fabs(*meant / (own * 25.4) - 1) < 1e-9) << own;
  }
}

TEST(Figures, AreReadWholeInAnyLocale) {
  double number = 0;
  EXPECT_TRUE(lumo::ReadNumber("-1.5e3", number));
  EXPECT_EQ(number, -1500);
  EXPECT_TRUE(lumo::ReadNumber("+2", number));
  for (char const* const none : {"", "1,5", "1 ", "x", "1e", "0x1", "inf", "nan", "+-1", "1e999"}) {
    EXPECT_FALSE(lumo::ReadNumber(none, number)) << none;
  }
}

TEST(Dates, AreMomentsWhateverTheirForm) {
  auto const seconds = [](char const* text) -> std::optional<double> {
    auto const moment = lumo::DateTime{text}.Microseconds();
    return moment ? std::optional(static_cast<double>(*moment) / 1e6) : std::nullopt;
  };
  EXPECT_THAT(seconds("1970-01-01"), Optional(0.0));
  EXPECT_THAT(seconds("2026-03-17T09:30:00"), Optional(1773739800.0));
  EXPECT_THAT(seconds("2026-03-17T09:30:00.25Z"), Optional(1773739800.25));
  EXPECT_THAT(seconds("2026-03-17 10:30+01:00"), Optional(1773739800.0));
  EXPECT_THAT(seconds("1969-12-31T23:59:59.9999999"), Optional(-0.000001));
  EXPECT_THAT(seconds("2024-02-29"), Optional(1709164800.0));
  EXPECT_THAT(seconds("0001-01-01"), Optional(-62135596800.0));
  for (char const* const none :
       {"", "2026", "2026-02-29", "2026-13-01", "2026-03-17T", "2026-3-17", "2026-03-17T24:00:00",
        "2026-03-17T09:30:00x", "+026-01-01", "2026-03-17T09:30:00.", "2026-03-17T09:30:00+1"}) {
    EXPECT_EQ(seconds(none), std::nullopt) << none;
  }
}

TEST(Dates, AreWrittenAsTheyAreRead) {
  for (char const* const text :
       {"1970-01-01T00:00:00", "2024-02-29T23:59:59", "0001-01-01T00:00:00",
        "9999-12-31T23:59:59.999999", "1969-12-31T23:59:59.000001", "1900-03-01T12:00:00",
        "2000-12-31T00:00:00.500000"}) {
    EXPECT_EQ(lumo::DateTime::FromMicroseconds(*lumo::DateTime{text}.Microseconds()).text, text);
  }
}

lumo::Curve Line(std::vector<double> x, std::vector<double> y) {
  lumo::Curve curve;
  curve.x = std::move(x);
  curve.y = std::move(y);
  return curve;
}

TEST(Curve, IsReadBetweenItsPoints) {
  lumo::Curve curve = Line({20, 100, 200}, {240, 200, 100});
  EXPECT_THAT(curve.At(20), Optional(240.0));
  EXPECT_THAT(curve.At(60), Optional(220.0));
  EXPECT_THAT(curve.At(200), Optional(100.0));
  EXPECT_EQ(curve.At(19.9), std::nullopt);
  EXPECT_EQ(curve.At(kNone), std::nullopt);
  curve.yHigh = {260, kNone, kOpen};
  EXPECT_THAT(curve.At(60), Optional(225.0));
  EXPECT_THAT(curve.At(200), Optional(100.0));
  curve.interpolation = lumo::Interpolation::None;
  EXPECT_THAT(curve.At(100), Optional(200.0));
  EXPECT_EQ(curve.At(101), std::nullopt);
  EXPECT_EQ(lumo::Curve().At(0), std::nullopt);
}

TEST(Curve, IsReadOnALogarithmicAxisAndAlongASpline) {
  lumo::Curve decades = Line({1, 1000}, {0, 3});
  decades.xIsLogarithmic = true;
  EXPECT_NEAR(*decades.At(10), 1, 1e-12);
  decades.x[0] = -1;  // which has no logarithm
  EXPECT_NEAR(*decades.At(499.5), 1.5, 1e-12);

  // The natural spline through 0, 1, 0, 1 has the second derivatives 0, -4, 4, 0 at its knots.
  for (auto const& x : {std::vector<double>{0, 1, 2, 3}, std::vector<double>{3, 2, 1, 0}}) {
    lumo::Curve spline = Line(x, {0, 1, 0, 1});
    spline.interpolation = lumo::Interpolation::CubicSpline;
    for (std::size_t i = 0; i < 4; ++i) EXPECT_THAT(spline.At(x[i]), Optional(spline.y[i]));
    EXPECT_NEAR(*spline.At(1.5), 0.5, 1e-12);
    EXPECT_NEAR(*spline.At(x[0] == 0 ? 0.5 : 2.5), 0.75, 1e-12);
    EXPECT_EQ(spline.At(3.1), std::nullopt);
  }
  lumo::Curve loop = Line({0, 2, 1}, {0, 2, 5});
  loop.interpolation = lumo::Interpolation::CubicSpline;
  EXPECT_THAT(loop.At(1.5), Optional(1.5));
}

TEST(Units, ConvertByTheServersFactorsAlone) {
  lumo::Units const units = SomeUnits();
  EXPECT_DOUBLE_EQ(units.Convert(2.5, "MPa", "GPa"), 0.0025);
  EXPECT_EQ(units.Convert(273.25, "K", "degC"), 0.1);
  EXPECT_EQ(units.Convert(7, "unknown", "unknown"), 7);
  EXPECT_NEAR(units.Convert(212, "degF", "K"), 373.15, 1e-9);  // by way of degC
  EXPECT_NEAR(units.Convert(1, "g/cm^3", "lb/in^3"), 0.0361273, 1e-7);
  auto const refused = [&](char const* from, char const* to) {
    lumo::Error const error = ErrorOf([&] { units.Convert(1, from, to); });
    EXPECT_EQ(error.Code(), ErrorCode::InvalidArgument);
    return error;
  };
  lumo::Error const wrong = refused("MPa", "kg");
  EXPECT_STREQ(wrong.what(), "cannot convert MPa into kg: MPa can be shown in MPa, Pa, GPa, psi");
  EXPECT_THAT(wrong.Hint().arguments, ElementsAre("MPa", "Pa", "GPa", "psi"));
  EXPECT_THAT(refused("MPa", "").what(), HasSubstr("MPa into no unit"));
  EXPECT_THAT(refused("", "MPa").what(), HasSubstr("without a unit"));
  EXPECT_THAT(refused("broken", "never").what(), HasSubstr("into no other unit"));
}

/// A curve in MPa over degC, at a parameter.
lumo::Curves YieldCurve() {
  lumo::Curve curve = Line({20, 100}, {240, 200});
  curve.xName = "Temperature";
  curve.xUnit = "degC";
  curve.yUnit = "MPa";
  curve.parameters = {{"Condition", "T6", ""}, {"Ageing temperature", 175.0, "degC"}};
  return {{curve}, false, false, false};
}

TEST(Units, TurnTheFiguresOfAValueAndLeaveItsAxesAlone) {
  lumo::Units const units = SomeUnits();
  auto const range = std::get<lumo::Range>(
      units.Convert(lumo::Range{2690.0, std::nullopt, "kg/m^3", true}, "g/cm^3"));
  EXPECT_THAT(range.low, Optional(2.69));
  EXPECT_EQ(range.high, std::nullopt);
  EXPECT_EQ(range.unit, "g/cm^3");
  auto const curves = std::get<lumo::Curves>(units.Convert(YieldCurve(), "GPa"));
  EXPECT_THAT(curves.curves[0].y, ElementsAre(0.24, 0.2));
  EXPECT_EQ(curves.curves[0].xUnit, "degC");
  EXPECT_THROW(units.Convert(lumo::Quantity{1, "MPa"}, "degC"), lumo::Error);
  EXPECT_THROW(units.Convert(std::string("text"), "MPa"), lumo::Error);
  EXPECT_THAT(units.NumberIn(lumo::Range{1.0, 3.0, "GPa"}, "MPa"), Optional(2000.0));
  EXPECT_EQ(units.NumberIn(std::string("text"), "MPa"), std::nullopt);
}

TEST(UnitSystem, TurnsAxesParametersAndCellsToo) {
  lumo::UnitSystem const system(
      {{"MPa", {"Pa", 1e6, 0}}, {"degC", {"K", 1, 273.15}}, {"kg/m^3", {"kg/m^3", 1, 0}}});
  auto const curve = std::get<lumo::Curves>(system.Convert(YieldCurve())).curves[0];
  EXPECT_THAT(curve.y, ElementsAre(2.4e8, 2e8));
  EXPECT_EQ(curve.yUnit + " over " + curve.xUnit, "Pa over K");
  EXPECT_THAT(curve.x, ElementsAre(293.15, 373.15));
  EXPECT_EQ(std::get<double>(curve.parameters[1].value), 448.15);
  EXPECT_EQ(curve.parameters[1].unit, "K");
  EXPECT_EQ(curve.parameters[0].unit, "");

  auto const points = std::get<lumo::Points>(
      system.Convert(lumo::Points{{{5, {{"Temperature", 20.0, "degC"}}}}, "HV"}));
  EXPECT_EQ(std::get<double>(points.points[0].parameters[0].value), 293.15);
  EXPECT_EQ(points.points[0].value, 5);

  auto grid = std::make_shared<lumo::Grid>();
  grid->columns = {{"At", "degC"}, {"Strength", "MPa"}};
  grid->rows = {{{lumo::Quantity{20, "degC"}, Value()}}};
  auto const turned = std::get<std::shared_ptr<lumo::Grid const>>(
      system.Convert(Value(std::shared_ptr<lumo::Grid const>(grid))));
  EXPECT_EQ(turned->columns[1].unit, "Pa");
  EXPECT_EQ(std::get<lumo::Quantity>(turned->rows[0].cells[0]).value, 293.15);
  EXPECT_EQ(grid->columns[1].unit, "MPa");
  EXPECT_EQ(system.UnitFor("kg/m^3"), "kg/m^3");
  Value const once = system.Convert(YieldCurve());
  EXPECT_TRUE(lumo::Same(system.Convert(once), once));
}

/// An attribute that depends on a temperature and a word, or has columns.
lumo::Attribute AttributeOf(AttributeType type) {
  lumo::Attribute attribute;
  attribute.name = "Subject";
  attribute.type = type;
  attribute.words = type == AttributeType::Discrete ? std::vector<std::string>{"Good", "Bad"}
                                                    : std::vector<std::string>();
  attribute.parameters = {{"Temperature", 7, "degC", false, lumo::Interpolation::CubicSpline},
                          {"Condition", 8, "", true}};
  attribute.columns = {{"Element", AttributeType::Text},
                       {"Most", AttributeType::Number, "%"},
                       {"Where", AttributeType::Link}};
  return attribute;
}

lumo::Curves OverTemperature(bool isGridded) {
  lumo::Curve curve = Line({20, 30.5}, {1, 5});
  curve.xName = "Temperature";
  curve.xUnit = "degC";
  curve.yUnit = "MPa";
  curve.yHigh = {2, kNone};
  curve.estimated = {false, true};
  curve.parameters = {{"Condition", "T6", ""}};
  curve.interpolation = lumo::Interpolation::CubicSpline;
  lumo::Curve other = curve;
  other.parameters[0].value = "O";
  other.yHigh.clear();
  other.estimated.clear();
  return {{curve, other}, isGridded, !isGridded, !isGridded};
}

std::shared_ptr<lumo::Grid const> AGrid() {
  lumo::Grid grid;
  grid.columns = {{"Element", ""}, {"Most", "%"}};
  grid.rows = {{{std::string("Al"), lumo::Quantity{98, "%"}}, "Aluminium", {}},
               {{std::string("Cu"), Value()}, "", {}}};
  return std::make_shared<lumo::Grid const>(std::move(grid));
}

TEST(Values, SurviveTheWayThroughTheExactLibrary) {
  std::vector<std::pair<AttributeType, Value>> const cases = {
      {AttributeType::Text, std::string("a \"b\"")},
      {AttributeType::LongText, std::string("two\nlines")},
      {AttributeType::Integer, std::int64_t{-3}},
      {AttributeType::Logical, false},
      {AttributeType::Date, lumo::DateTime{"2026-01-02T03:04:05"}},
      {AttributeType::Discrete, std::vector<std::string>{"Good", "Bad"}},
      {AttributeType::Number, lumo::Quantity{107, "HV", true}},
      {AttributeType::Number,
       lumo::Points{{{94, {{"Temperature", 150.0, "degC"}, {"Condition", "T6", ""}}}, {9, {}}},
                    "HV"}},
      {AttributeType::Range, lumo::Range{2690.0, 2730.5, "kg/m^3"}},
      {AttributeType::Range, lumo::Range{std::nullopt, 1e21, "kg/m^3", true}},
      {AttributeType::Curve, OverTemperature(false)},
      {AttributeType::Curve, OverTemperature(true)},
      {AttributeType::Grid, AGrid()},
      {AttributeType::Link, lumo::Link{"http://x/", "X"}},
      {AttributeType::Picture, lumo::File{"", "image/png", "", "", {1, 2, 255}}},
      {AttributeType::File, lumo::File{"a.txt", "text/plain", "d", "", {65}}},
  };
  for (auto const& [type, value] : cases) {
    lumo::Attribute const attribute = AttributeOf(type);
    auto const data = lumo::ToDataValue(value, attribute, "KEY", SomeUnits());
    EXPECT_TRUE(lumo::Same(lumo::FromDataValue(data.get(), &attribute), value))
        << lumo::NameOf(type);
    EXPECT_TRUE(WritesOnlyWhenAttached(*data));
  }
}

TEST(Values, OfRepliesHoldWhatOnlyRepliesHave) {
  EXPECT_EQ(lumo::FromDataValue(nullptr, nullptr).index(), 0u);
  EXPECT_EQ(lumo::FromDataValue(EmptyDataType::CreateOne().get(), nullptr).index(), 0u);
  auto const number = IntegerDataType::CreateOne();
  number->SetIsNotApplicable(true);
  EXPECT_TRUE(
      std::holds_alternative<lumo::NotApplicable>(lumo::FromDataValue(number.get(), nullptr)));

  auto const list = ListDataType::CreateOne();
  list->AddItem(number);
  list->AddItem(nullptr);
  auto const items =
      std::get<std::shared_ptr<lumo::List const>>(lumo::FromDataValue(list.get(), nullptr));
  EXPECT_EQ(items->items.size(), 2u);

  auto const links = Read<LinkedRecordsDataType>(
      "<v><recordLinkGroups><recordLinkGroup><name>Producers</name><linkedRecords><linkedRecord>"
      "<recordGUID>G</recordGUID></linkedRecord></linkedRecords></recordLinkGroup>"
      "</recordLinkGroups></v>");
  links->AccessRecordLinkGroups().push_back(nullptr);
  EXPECT_TRUE(
      std::holds_alternative<lumo::LinkedRecords>(lumo::FromDataValue(links.get(), nullptr)));

  auto const file = FileDataType::CreateOne();
  file->SetEncodedData("not Base64!");
  EXPECT_EQ(ErrorOf([&] { lumo::FromDataValue(file.get(), nullptr); }).Code(),
            ErrorCode::NotUnderstood);
  file->SetURL("http://x/");
  EXPECT_EQ(std::get<lumo::File>(lumo::FromDataValue(file.get(), nullptr)).url, "http://x/");
}

TEST(Values, OfRepliesKeepOpenEndsAndWordsOnAxes) {
  auto const value = FloatFunctionalSeriesDataType::CreateOne();
  auto const graph = FloatFunctionalSeriesGraph::CreateOne();
  auto const series = Series::CreateOne();
  auto const range = XYRange::CreateOne();
  range->SetLowerY(3);
  range->SetUpperY(kNone);
  auto const word = ::ParameterValue::CreateOne();
  word->SetValue_Discrete("T6");
  range->SetX(word);
  for (SmartPtr<XYDatum> const& datum :
       {SmartPtr<XYDatum>(XYPoint::CreateOne()), SmartPtr<XYDatum>(range), SmartPtr<XYDatum>()}) {
    series->GetXYPoints()->AddPoint(datum);
  }
  graph->AddSeries(series);
  graph->AddSeries(nullptr);
  value->SetGraph(graph);
  auto const curves = std::get<lumo::Curves>(lumo::FromDataValue(value.get(), nullptr));
  ASSERT_EQ(curves.curves.size(), 1u);
  lumo::Curve const& curve = curves.curves[0];
  EXPECT_THAT(curve.xWords, ElementsAre("", "T6"));
  EXPECT_THAT(curve.x, ElementsAre(testing::IsNan(), testing::IsNan()));
  EXPECT_THAT(curve.yHigh, ElementsAre(testing::IsNan(), kOpen));
  EXPECT_EQ(curve.Middle(1), 3);
}

TEST(Values, AreConvertedIntoTheUnitsOfParametersForAnImport) {
  lumo::Attribute const attribute = AttributeOf(AttributeType::Number);
  lumo::Points const points = {{{9, {{"Temperature", 423.15, "K"}}}}, "HV"};
  auto const data = lumo::ToDataValue(points, attribute, "KEY", SomeUnits());
  EXPECT_THAT(WrittenElement(*data), HasSubstr("1.50000000000000000e+02"));
}

TEST(Values, ThatDoNotFitAreRefusedWithTheNameOfTheirAttribute) {
  lumo::Curves wrongAxis = OverTemperature(false);
  wrongAxis.curves[1].xName = "Condition";
  lumo::Curves shorter = OverTemperature(false);
  shorter.curves[0].y.pop_back();
  auto const grid = [](char const* column, Value const& cell) {
    lumo::Grid made = {{{column, ""}}, {{{cell}, "", {}}}};
    return Value(std::make_shared<lumo::Grid const>(std::move(made)));
  };
  struct Case {
    AttributeType type;
    Value value;
    char const* says;
  };
  std::vector<Case> const cases = {
      {AttributeType::Text, std::int64_t{3}, "takes a text"},
      {AttributeType::Text, std::string("\x01"), "cannot be sent"},
      {AttributeType::Text, std::string("\xff"), "cannot be sent"},
      {AttributeType::Text, lumo::NotApplicable(), "not applicable"},
      {AttributeType::Integer, std::int64_t{5'000'000'000}, "whole number of 32 bits"},
      {AttributeType::Date, lumo::DateTime{"soon"}, "takes a date"},
      {AttributeType::Discrete, std::vector<std::string>{"Ugly"}, "it has Good, Bad"},
      {AttributeType::Range, std::string("7"), "takes a range"},
      {AttributeType::Range, lumo::Range(), "one end at least"},
      {AttributeType::Number, lumo::Quantity{kNone, "HV"}, "not a number"},
      {AttributeType::Number, lumo::Points{{{1, {{"Colour", "red", ""}}}}},
       "no parameter \"Colour\""},
      {AttributeType::Number, lumo::Points{{{1, {{"Condition", 3.0, ""}}}}}, "takes words"},
      {AttributeType::Number, lumo::Points{{{1, {{"Temperature", "hot", ""}}}}}, "takes numbers"},
      {AttributeType::Number, lumo::Points{{{1, {{"Temperature", 1.0, "MPa"}}}}},
       "in degC, not in MPa"},
      {AttributeType::Curve, wrongAxis, "the same axes"},
      {AttributeType::Curve, shorter, "as many y as x"},
      {AttributeType::Grid, grid("Colour", Value()), "no column \"Colour\""},
      {AttributeType::Grid, grid("Most", std::string("much")), "takes a number"},
      {AttributeType::File, lumo::File{"a", "", "", "http://x/", {}}, "needs the bytes"},
      {AttributeType::Other, std::string("x"), "cannot be imported"},
  };
  for (Case const& one : cases) {
    lumo::Error const error =
        ErrorOf([&] { lumo::ToDataValue(one.value, AttributeOf(one.type), "KEY", SomeUnits()); });
    EXPECT_EQ(error.Code(), ErrorCode::InvalidArgument);
    EXPECT_THAT(error.what(), HasSubstr(one.says));
  }
}

}  // namespace

// The parts of the command that need no server, and values in all their forms.

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <limits>
#include <map>
#include <sstream>

#include "cli/Cells.h"
#include "cli/Csv.h"
#include "cli/Json.h"
#include "cli/Output.h"
#include "cli/Plot.h"
#include "cli/Text.h"

using cli::Json;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows RowsOf(std::string const& csv) {
  Rows rows;
  cli::ReadCsv(csv, ',', [&](std::vector<std::string> const& cells) { rows.push_back(cells); });
  return rows;
}

TEST(Csv, ReadsWhatItWrites) {
  Rows const rows = {{"plain", "", " blank ", "a,b", "say \"x\"", "two\nlines", "\r\n", "é…"},
                     {"\"", ",", "", "", "\t", "'", ";", "0"},
                     {""}};
  std::string csv;
  for (auto const& row : rows) csv += cli::CsvLine(row);
  EXPECT_EQ(RowsOf(csv), rows);
  EXPECT_EQ(cli::CsvLine({"a;b", "c,d"}, ';'), "\"a;b\";c,d\n");
}

TEST(Csv, TakesWhatSpreadsheetsWrite) {
  EXPECT_EQ(RowsOf("a,b\r\n\r\n1,\"2\"\r\n3,"), (Rows{{"a", "b"}, {"1", "2"}, {"3", ""}}));
  EXPECT_TRUE(RowsOf("").empty());
  for (char const* const broken : {"a,\"b", "a,\"b\"c\n", "a\"b\n"}) {
    EXPECT_THROW(RowsOf(broken), lumo::Error) << broken;
  }
}

TEST(Text, KeepsLinesWholeAndHarmless) {
  EXPECT_EQ(cli::OneLine(" a\r\n\x1b[31mb\x7f\xC2\x9B"
                         "c é\t"),
            "a   [31mb  c é");
  EXPECT_EQ(cli::Width("é…x"), 3u);
}

cli::NamedCurve CurveOf(std::string const& condition, std::vector<double> x, std::vector<double> y,
                        std::vector<double> yHigh = {}) {
  lumo::Curve curve;
  curve.xName = "Time";
  curve.xUnit = "h";
  curve.yUnit = "MPa";
  curve.x = std::move(x);
  curve.y = std::move(y);
  curve.yHigh = std::move(yHigh);
  curve.parameters = {{"Condition", condition, ""}, {"Temperature", 150.0, "degC"}};
  return {"", curve};
}

TEST(Plot, DrawsCurvesWithTheirLabelsAndUnits) {
  double const none = std::numeric_limits<double>::quiet_NaN();
  std::vector<cli::NamedCurve> curves = {CurveOf("T6", {10, 0}, {5, 1}, {none, 3}),
                                         CurveOf("O", {0, none}, {0, 9})};
  std::string const drawn = cli::Plot(curves, 74);
  EXPECT_THAT(drawn, AllOf(StartsWith("       MPa\n         5 |"),
                           HasSubstr("*  Condition = T6, Temperature = 150 degC\n"),
                           HasSubstr("o  Condition = O"), HasSubstr("         0 |o\n"),
                           HasSubstr("Time [h]"), Not(HasSubstr("nan"))));
  curves[0].name = "A";
  EXPECT_THAT(cli::Plot(curves, 40), HasSubstr("*  A: Condition = T6"));
  std::istringstream lines(cli::Plot(curves, 40));
  for (std::string line; std::getline(lines, line) && line.find('=') == std::string::npos;) {
    EXPECT_LE(line.size(), 44u);
  }
  EXPECT_EQ(cli::Plot({CurveOf("T6", {}, {})}, 74), "");
  EXPECT_THAT(cli::Plot({CurveOf("T6", {1e300}, {-1e300})}, 74), HasSubstr("*"));
}

TEST(Text, IsCutAtCharacters) {
  EXPECT_EQ(cli::Shortened("Kühlgerät", 9), "Kühlgerät");
  EXPECT_EQ(cli::Shortened("Kühlgerät", 8), "Kühlger…");
  EXPECT_EQ(cli::Width(cli::Shortened("ÄÄÄÄÄÄ", 3)), 3u);
}

/// An attribute of each type, as a server describes it.
lumo::Attribute AttributeOf(std::string const& name) {
  using lumo::AttributeType;
  static std::map<std::string, std::pair<AttributeType, std::string>> const kinds = {
      {"Designation", {AttributeType::Text, ""}},
      {"Number of suppliers", {AttributeType::Integer, ""}},
      {"Recyclable", {AttributeType::Logical, ""}},
      {"Last reviewed", {AttributeType::Date, ""}},
      {"Durability: sea water", {AttributeType::Discrete, ""}},
      {"Density", {AttributeType::Range, "kg/m^3"}},
      {"Hardness by condition", {AttributeType::Number, "HV"}},
      {"Data sheet", {AttributeType::Link, ""}},
      {"Photo", {AttributeType::Picture, ""}},
      {"Processing note", {AttributeType::File, ""}},
      {"Composition", {AttributeType::Grid, ""}},
      {"Yield strength against temperature", {AttributeType::Curve, "MPa"}}};
  auto const& [type, unit] = kinds.at(name);
  lumo::Attribute attribute;
  attribute.name = name;
  attribute.type = type;
  attribute.unit = unit;
  attribute.columns = {{"Element", AttributeType::Text, "", {}},
                       {"Least", AttributeType::Number, "%", {}}};
  return attribute;
}

struct Form {
  char const* attribute;
  char const* json;
  char const* cell;      ///< in CSV
  char const* readable;  ///< in text
};

constexpr Form kForms[] = {
    {"Designation", R"("a \"b\"")", "a \"b\"", "a \"b\""},
    {"Number of suppliers", "-3", "-3", "-3"},
    {"Recyclable", "false", "no", "no"},
    {"Last reviewed", R"("2026-01-02T03:04:05")", "2026-01-02T03:04:05", "2026-01-02T03:04:05"},
    {"Durability: sea water", R"(["Excellent","Acceptable"])", "Excellent; Acceptable",
     "Excellent; Acceptable"},
    {"Density", R"({"low":2690,"high":2730.5,"unit":"kg/m^3"})", "2690..2730.5", "2690 to 2730.5"},
    {"Density", R"({"low":7,"high":7,"unit":"g/cm^3"})", "7 g/cm^3", "7 g/cm^3"},
    {"Density", R"({"low":null,"high":1e+21,"unit":"kg/m^3","estimated":true})", "~..1e+21",
     "~? to 1e+21"},
    {"Density", R"({"low":0.1,"high":null,"unit":"kg/m^3"})", "0.1..", "0.1 to ?"},
    {"Hardness by condition", R"({"value":107,"unit":"HV"})", "107", "107"},
    {"Hardness by condition",
     R"({"points":[{"value":94,"parameters":{"Temperature":{"value":150,"unit":"degC"},"Condition":"T6"}},{"value":9}],"unit":"HV"})",
     nullptr, "2 points"},
    {"Data sheet", R"({"url":"http://x/","description":""})", "http://x/", "http://x/"},
    {"Data sheet", R"({"url":"http://x/","description":"X"})", nullptr, "http://x/"},
    {"Data sheet", R"({"url":"{x","description":""})", nullptr, "{x"},
    {"Photo", R"({"contentType":"image/png","data":"QUJD"})", nullptr, "image/png"},
    {"Processing note",
     R"({"fileName":"a.txt","description":"d","contentType":"text/plain","data":"QUJD"})", nullptr,
     "a.txt"},
    {"Composition",
     R"({"columns":["Element","Least"],"rows":[["Al",{"value":95.8,"unit":"%"}],["Cu",null]]})",
     nullptr, "2 rows"},
    {"Yield strength against temperature",
     R"({"unit":"MPa","xAxis":"Temperature","xUnit":"degC","series":[{"parameters":{"Condition":"T6"},"points":[{"x":20,"y":1},{"x":30.5,"low":1,"high":2,"estimated":true},{"x":"cold","y":3}]}],"logarithmic":true})",
     nullptr, "1 curve"},
    {"Yield strength against temperature",
     R"({"unit":"MPa","xAxis":"Time","series":[{"parameters":{"Temperature":{"value":20,"unit":"degC"}},"points":[{"y":150}]}],"gridded":true})",
     nullptr, "1 curve"},
};

TEST(Values, SurviveEveryForm) {
  for (Form const& form : kForms) {
    Json const json = Json::parse(form.json);
    lumo::Attribute const attribute = AttributeOf(form.attribute);
    lumo::Value const value = cli::ValueOf(json, attribute);
    EXPECT_EQ(cli::JsonOf(value).dump(), json.dump());
    std::string const cell = cli::CsvCell(value, attribute.unit);
    EXPECT_EQ(cell, form.cell == nullptr ? json.dump() : form.cell);
    lumo::Value const again = cli::FromCsvCell(cell, attribute, attribute.unit);
    EXPECT_EQ(cli::JsonOf(again).dump(), json.dump());
    EXPECT_EQ(cli::ReadableCell(value, attribute.unit), form.readable);
  }
}

struct WrongForm {
  char const* attribute;
  char const* json;
  char const* says;
};

constexpr WrongForm kWrongForms[] = {
    {"Designation", "3", "takes a text"},
    {"Number of suppliers", "1.5", "takes a whole number"},
    {"Recyclable", "1", "takes true or false"},
    {"Durability: sea water", R"("Excellent")", "takes a list of words"},
    {"Durability: sea water", "[1]", "takes a text"},
    {"Density", "7", "takes an object"},
    {"Density", R"([{"low":1}])", "takes an object"},
    {"Density", R"({"low":"1"})", "needs a number for \"low\""},
    {"Density", R"({"low":1,"unit":3})", "takes a text"},
    {"Density", R"({"value":3,"unit":"kg/m^3"})", "needs a number for \"low\""},
    {"Density", R"({"low":null,"high":null})", "needs a number for \"low\""},
    {"Density", R"({"low":1,"high":1,"units":"g/cm^3"})", "takes no member \"units\""},
    {"Hardness by condition", R"({"value":1,"points":[]})", "takes no member \"points\""},
    {"Hardness by condition", R"({"points":[{"value":1,"parameter":{}}]})", "no member"},
    {"Hardness by condition", R"({"value":1,"parameters":{"T":{"value":1,"units":"K"}}})",
     "no member"},
    {"Data sheet", R"({"URL":"http://x/"})", "takes no member \"URL\""},
    {"Photo", R"({"name":"a.png","data":"QUJD"})", "takes no member \"name\""},
    {"Composition", R"({"columns":["Element","Element"],"rows":[]})", "\"Element\" twice"},
    {"Composition", R"({"columns":["Element"],"row":[],"rows":[]})", "no member"},
    {"Yield strength against temperature", R"({"series":[],"xunit":"K"})", "no member"},
    {"Yield strength against temperature", R"({"series":[{"points":[{"y":1,"high":2}]}]})",
     "takes no member \"high\""},
    {"Hardness by condition", R"({"points":3})", "needs a list \"points\""},
    {"Hardness by condition", R"({"points":[3]})", "needs a number for \"value\""},
    {"Hardness by condition", R"({"value":1,"parameters":["Condition"]})",
     "needs an object \"parameters\""},
    {"Photo", R"({"contentType":"image/png","data":"?"})", "is not Base64"},
    {"Hardness by condition", R"({"value":1,"parameters":{"Condition":null}})", "takes a text"},
    {"Photo", R"({"contentType":"image/png","url":"http://x/"})", "needs \"data\""},
    {"Composition", R"({"rows":[]})", "needs a list \"columns\""},
    {"Composition", R"({"columns":["Element"],"rows":["Al"]})", "row that does not fit"},
    {"Composition", R"({"columns":["Element"],"rows":[["Al","Cu"]]})", "row that does not fit"},
    {"Composition", R"({"columns":["Least"],"rows":[["much"]]})", "takes an object"},
    {"Yield strength against temperature", R"({"series":[{"points":[{"x":1}]}]})",
     "needs a number for \"low\""},
    {"Yield strength against temperature", R"({"series":[3]})", "needs a list \"points\""},
};

TEST(Values, OfTheWrongFormAreRefusedWithTheNameOfTheirAttribute) {
  for (WrongForm const& form : kWrongForms) {
    try {
      cli::ValueOf(Json::parse(form.json), AttributeOf(form.attribute));
      ADD_FAILURE() << form.json << " is taken";
    } catch (lumo::Error const& failure) {
      EXPECT_THAT(failure.what(), AllOf(HasSubstr(form.attribute), HasSubstr(form.says)));
    }
  }
}

TEST(Values, AreNotLostBehindOthersOfTheirName) {
  EXPECT_EQ(cli::ParseJson(R"([{"a":{"a":1},"b":[{"a":1}]},{"a":2}])").size(), 2u);
  for (char const* const text :
       {R"({"a":1,"a":1})", R"({"values":{"a":1,"b":{},"a":2}})", R"([{},{"a":{},"a":{}}])"}) {
    EXPECT_THROW(cli::ParseJson(text), lumo::Error) << text;
  }
}

TEST(Values, InCellsAreRefusedWhenTheyDoNotFit) {
  constexpr Form kCells[] = {{"Density", "", "a lot", "is not a number"},
                             {"Density", "", "inf", "is not a number"},
                             {"Density", "", "{\"low\":", "is not JSON"},
                             {"Recyclable", "", "perhaps", "neither yes nor no"},
                             {"Number of suppliers", "", "1.5", "is not a whole number"},
                             {"Durability: sea water", "", " ; ", "has no word"},
                             {"Composition", "", "Al 90", "cannot be typed"}};
  for (Form const& form : kCells) {
    try {
      cli::FromCsvCell(form.cell, AttributeOf(form.attribute), "");
      ADD_FAILURE() << form.cell << " is taken";
    } catch (lumo::Error const& failure) {
      EXPECT_THAT(failure.what(), HasSubstr(form.readable));
    }
  }
}

}  // namespace

// The parts of the command that need no server, and values in all their forms.

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include <atomic>
#include <memory>
#include <mutex>

#include "cli/Csv.h"
#include "cli/InnerSandbox.h"
#include "cli/Plot.h"
#include "cli/Text.h"
#include "cli/Values.h"
#include "cli/Work.h"

using cli::Json;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows RowsOf(std::string const& csv) {
  Rows rows;
  cli::ReadCsv(csv, [&](std::vector<std::string> const& cells) { rows.push_back(cells); });
  return rows;
}

TEST(Csv, ReadsWhatItWrites) {
  Rows const rows = {{"plain", "", " blank ", "a,b", "say \"x\"", "two\nlines", "\r\n", "é…"},
                     {"\"", ",", "", "", "\t", "'", ";", "0"},
                     {""}};
  std::string csv;
  for (auto const& row : rows) csv += cli::CsvLine(row);
  EXPECT_EQ(RowsOf(csv), rows);
}

TEST(Csv, TakesWhatSpreadsheetsWrite) {
  EXPECT_EQ(RowsOf("a,b\r\n\r\n1,\"2\"\r\n3,"), (Rows{{"a", "b"}, {"1", "2"}, {"3", ""}}));
  EXPECT_TRUE(RowsOf("").empty());
  for (char const* const broken : {"a,\"b", "a,\"b\"c\n", "a\"b\n"}) {
    EXPECT_THROW(RowsOf(broken), cli::UsageFailure) << broken;
  }
}

TEST(Text, ReadsAndWritesNumbersInAnyLocale) {
  double value = 0;
  EXPECT_TRUE(cli::ReadNumber("-1.5e3", value));
  EXPECT_EQ(value, -1500);
  EXPECT_TRUE(cli::ReadNumber("+2", value));
  for (char const* const none : {"", "1,5", "1 ", "x", "1e", "0x1"}) {
    EXPECT_FALSE(cli::ReadNumber(none, value)) << none;
  }
  EXPECT_EQ(cli::NumberText(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(cli::NumberText(1234567.891, 6), "1.23457e+06");
}

TEST(Text, KeepsLinesWholeAndHarmless) {
  EXPECT_EQ(cli::OneLine(" a\r\n\x1b[31mb\x7f\xC2\x9B"
                         "c é\t"),
            "a   [31mb  c é");
  EXPECT_EQ(cli::Width("é…x"), 3u);
  EXPECT_EQ(cli::Suggestion("Densty", {"Price", "Density"}), "; did you mean \"Density\"?");
  EXPECT_EQ(cli::Suggestion("xyz", {"Price", "Density"}), "; there is Price, Density");
  EXPECT_EQ(cli::Suggestion("xyz", std::vector<std::string>(9, "Price")), "");
}

TEST(Paths, KeepNamesThatHoldSlashes) {
  std::string path;
  std::vector<std::string> const names = {"a/b", "c\\", "", "d"};
  for (std::string const& name : names) path = cli::PathBelow(path, name);
  EXPECT_EQ(path, "a\\/b/c\\\\//d");
  EXPECT_THAT(cli::PathParts(path), ElementsAre("a/b", "c\\", "d"));
}

TEST(Plot, DrawsCurvesWithTheirLabels) {
  std::string const drawn = cli::Plot(Json::parse(R"({"unit":"MPa","xAxis":"Time","series":[
      {"parameters":{"Condition":"T6"},"points":[{"x":10,"y":5},{"x":0,"low":1,"high":3}]},
      {"parameters":{"Condition":"O"},"points":[{"x":0,"y":0},{"x":"word","y":9},{"y":7}]}]})"));
  EXPECT_THAT(drawn, AllOf(StartsWith("       MPa\n         5 |"), HasSubstr("*  Condition = T6\n"),
                           HasSubstr("o  Condition = O\n"), HasSubstr("         0 |o\n"),
                           HasSubstr("Time"), Not(HasSubstr("nan"))));
  EXPECT_EQ(cli::Plot(Json::parse(R"({"series":[{"parameters":{},"points":[]}]})")),
            "  no points\n");
  std::string const one =
      cli::Plot(Json::parse(R"({"series":[{"parameters":{},"points":[{"x":1e300,"y":-1e300}]}]})"));
  EXPECT_THAT(one, HasSubstr("*"));
}

/// Works on the numbers from 0 to `count` with so many threads; keeps the results in their order.
struct Numbers {
  explicit Numbers(int end) : count(end) {}

  void Run(std::size_t jobs, std::function<int(int)> const& process) {
    std::vector<std::unique_ptr<cli::Connection>> connections;
    for (std::size_t i = 0; i < jobs; ++i) {
      connections.push_back(std::make_unique<cli::Connection>(cli::ServerOptions(), ""));
    }
    cli::Work<int, int> work(
        [this]() -> std::optional<int> {
          if (made == count) return std::nullopt;
          most = std::max(most, made - static_cast<int>(taken.size()));
          return made++;
        },
        [&](cli::Connection&, int number) { return process(number); },
        [this](int&& result) {
          if (result == refused) throw cli::Failure(cli::ExitCode::PartlyDone, "full");
          taken.push_back(result);
        });
    work.Run(connections);
  }

  int count;
  int refused = -1;
  int made = 0;
  int most = 0;  ///< chunks that were under way at once
  std::vector<int> taken;
};

std::vector<int> UpTo(int end) {
  std::vector<int> numbers;
  for (int i = 0; i < end; ++i) numbers.push_back(i);
  return numbers;
}

TEST(Work, TakesResultsInOrderAndRunsNotFarAhead) {
  Numbers numbers(500);
  numbers.Run(8, [](int number) {
    if (number % 7 == 0) std::this_thread::yield();
    return number;
  });
  EXPECT_EQ(numbers.taken, UpTo(500));
  EXPECT_LE(numbers.most, 24);
}

TEST(Work, EndsAtTheFirstFaultWithAllThatCameBeforeIt) {
  Numbers numbers(500);
  auto const failing = [](int number) {
    if (number >= 100) throw cli::UsageFailure(std::to_string(number));
    return number;
  };
  try {
    numbers.Run(8, failing);
    FAIL() << "no fault";
  } catch (cli::UsageFailure const& failure) {
    EXPECT_STREQ(failure.what(), "100");
  }
  EXPECT_EQ(numbers.taken, UpTo(100));
  EXPECT_LT(numbers.made, 130);
}

TEST(Work, EndsWhenAResultCannotBeTaken) {
  Numbers numbers(500);
  numbers.refused = 50;
  EXPECT_THROW(numbers.Run(4, [](int number) { return number; }), cli::Failure);
  EXPECT_EQ(numbers.taken, UpTo(50));
}

/// The Materials table of a server in this process.
class ValuesTest : public testing::Test {
 protected:
  cli::TableOf& Materials() {
    static cli::InnerSandbox const sandbox(":memory:");
    static cli::Connection connection = [] {
      cli::ServerOptions options;
      options.url = sandbox.Url();
      return cli::Connection(options, "");
    }();
    static cli::TableOf table(connection, "ENG_MATERIALS", "Materials");
    return table;
  }
  SmartPtr<IDataValue> Build(std::string const& attribute, Json const& json) {
    return cli::ValueOf(json, Materials(), *Materials().Attribute(attribute));
  }
};

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
     R"({"points":[{"value":94,"parameters":{"Temperature":150,"Condition":"T6"}},{"value":9}],"unit":"HV"})",
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
     R"({"unit":"MPa","xAxis":"Temperature","series":[{"parameters":{"Condition":"T6"},"points":[{"x":20,"y":1},{"x":30.5,"low":1,"high":2,"estimated":true}]}],"logarithmic":true})",
     nullptr, "1 curve"},
    {"Fatigue strength by temperature",
     R"({"unit":"MPa","xAxis":"Temperature","values":[{"value":150,"parameters":{"Temperature":20}},{"low":1,"high":2,"parameters":{},"estimated":true}]})",
     nullptr, "2 values"},
};

TEST_F(ValuesTest, SurviveEveryForm) {
  for (Form const& form : kForms) {
    Json const json = Json::parse(form.json);
    auto const attribute = Materials().Attribute(form.attribute);
    std::string const unit = attribute->GetDatabaseUnit();
    EXPECT_EQ(cli::JsonOf(Build(form.attribute, json).get()).dump(), json.dump());
    std::string const cell = cli::CsvCell(json, unit);
    EXPECT_EQ(cell, form.cell == nullptr ? json.dump() : form.cell);
    EXPECT_EQ(cli::FromCsvCell(cell, *attribute, unit).dump(), json.dump());
    EXPECT_EQ(cli::ReadableCell(json, unit), form.readable);
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
    {"Number of suppliers", "5000000000", "takes a whole number"},
    {"Recyclable", "1", "takes true or false"},
    {"Durability: sea water", R"("Excellent")", "takes a list of words"},
    {"Durability: sea water", "[1]", "takes a text"},
    {"Density", "7", "takes an object"},
    {"Density", R"([{"low":1}])", "takes an object"},
    {"Density", R"({"low":"1"})", "needs a number for \"low\""},
    {"Density", R"({"unit":3})", "takes a text"},
    {"Density", R"({"value":3,"unit":"kg/m^3"})", "needs a number for \"low\""},
    {"Density", R"({"low":null,"high":null})", "needs a number for \"low\""},
    {"Designation", "\"\\u0001\"", "holds a character that cannot be sent"},
    {"Hardness by condition", R"({"points":3})", "needs a list \"points\""},
    {"Hardness by condition", R"({"points":[3]})", "needs a number for \"value\""},
    {"Hardness by condition", R"({"value":1,"parameters":{"Colour":"red"}})",
     "has no parameter \"Colour\""},
    {"Hardness by condition", R"({"value":1,"parameters":["Condition"]})", "parameter"},
    {"Hardness by condition", R"({"value":1,"parameters":{"Condition":null}})", "takes a text"},
    {"Photo", R"({"contentType":"image/png","url":"http://x/"})", "needs \"data\""},
    {"Composition", R"({"rows":[]})", "needs a list \"columns\""},
    {"Composition", R"({"columns":["Element"],"rows":["Al"]})", "row that does not fit"},
    {"Composition", R"({"columns":["Element"],"rows":[["Al","Cu"]]})", "row that does not fit"},
    {"Composition", R"({"columns":["Least"],"rows":[["much"]]})", "takes an object"},
    {"Yield strength against temperature", R"({"series":[{"points":[{"x":1}]}]})",
     "needs a number for \"low\""},
    {"Yield strength against temperature", R"({"series":[3]})", "needs a list \"points\""},
    {"Fatigue strength by temperature", R"({"values":[{"low":1}]})", "needs a number for \"high\""},
};

TEST_F(ValuesTest, OfTheWrongFormAreRefusedWithTheNameOfTheirAttribute) {
  for (WrongForm const& form : kWrongForms) {
    try {
      Build(form.attribute, Json::parse(form.json));
      ADD_FAILURE() << form.json << " is taken";
    } catch (cli::UsageFailure const& failure) {
      EXPECT_THAT(failure.what(), AllOf(HasSubstr(form.attribute), HasSubstr(form.says)));
    }
  }
}

TEST_F(ValuesTest, InCellsAreRefusedWhenTheyDoNotFit) {
  constexpr Form kCells[] = {{"Density", "", "a lot", "is no number"},
                             {"Density", "", "1..x", "is no number"},
                             {"Density", "", "inf", "is no number"},
                             {"Density", "", "{\"low\":", "is no JSON"},
                             {"Recyclable", "", "perhaps", "neither yes nor no"},
                             {"Number of suppliers", "", "1.5", "is no whole number"},
                             {"Composition", "", "Al 90", "is no value of this type"}};
  for (Form const& form : kCells) {
    try {
      cli::FromCsvCell(form.cell, *Materials().Attribute(form.attribute), "");
      ADD_FAILURE() << form.cell << " is taken";
    } catch (cli::UsageFailure const& failure) {
      EXPECT_THAT(failure.what(), HasSubstr(form.readable));
    }
  }
}

}  // namespace

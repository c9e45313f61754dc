// What the page is told of a server's data, and of its failures.

#include <gmock/gmock.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "cli/browse/Cells.h"
#include "cli/browse/ValueJson.h"
#include "tests/browse/Page.h"

using cli::browse::CellOf;
using cli::browse::Conditions;
using nlohmann::json;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

constexpr double kOpen = std::numeric_limits<double>::infinity();
constexpr char kMaterials[] = "db=ENG_MATERIALS&table=Materials";

/// Low and high of a value; empty when it has no place in a chart.
std::vector<double> Ends(lumo::Value const& value, Conditions const& conditions = {}) {
  auto const cell = CellOf(value, conditions);
  return cell ? std::vector<double>{cell->low, cell->high} : std::vector<double>{};
}

lumo::Parameter Degrees(double value) { return {"Temperature", value, "degC"}; }
lumo::Parameter Condition(std::string const& word) { return {"Condition", word, ""}; }

TEST(Cell, HasTheEndsOfFiguresAndRanges) {
  EXPECT_THAT(Ends(lumo::Quantity{5, "m"}), ElementsAre(5, 5));
  EXPECT_THAT(Ends(lumo::Range{2, 3, "m"}), ElementsAre(2, 3));
  EXPECT_THAT(Ends(lumo::Range{{}, 3, "m"}), ElementsAre(-kOpen, 3));
  EXPECT_THAT(Ends(lumo::Range{2, {}, "m"}), ElementsAre(2, kOpen));
  EXPECT_THAT(Ends(lumo::Range{}), ElementsAre());
  EXPECT_THAT(Ends(std::string("5")), ElementsAre());
  EXPECT_THAT(Ends(lumo::NotApplicable()), ElementsAre());
}

TEST(Cell, OfPointsIsFoundBetweenThoseThatFulfilTheConditions) {
  lumo::Points const points = {{{100, {Degrees(20), Condition("T6")}},
                                {50, {Degrees(120), Condition("T6")}},
                                {30, {Degrees(20), Condition("O")}}},
                               "HV"};
  EXPECT_THAT(Ends(points), ElementsAre(30, 100));
  EXPECT_THAT(Ends(points, {{"Condition", "T6"}}), ElementsAre(50, 100));
  EXPECT_THAT(Ends(points, {{"Condition", "T6"}, {"Temperature", 70.0}}), ElementsAre(75, 75));
  EXPECT_THAT(Ends(points, {{"Temperature", 20.0}}), ElementsAre(30, 100));
  EXPECT_THAT(Ends(points, {{"Temperature", 121.0}}), ElementsAre());
  EXPECT_THAT(Ends(points, {{"Condition", "H18"}}), ElementsAre());
  EXPECT_THAT(Ends(points, {{"Humidity", 3.0}}), ElementsAre(30, 100));
}

TEST(Cell, MeetsAllConditionsOnNumbers) {
  lumo::Points points{{}, "MPa"};
  lumo::Curves curves;
  for (double const degrees : {20.0, 100.0}) {
    for (double const hours : {1.0, 1000.0}) {
      std::vector<lumo::Parameter> const both = {Degrees(degrees), {"Time", hours, "h"}};
      points.points.push_back({1000 * degrees + hours, both});
      lumo::Curve curve;
      curve.x = {0, 10};
      curve.y = {0, 1000 * degrees + hours};
      curve.parameters = both;
      curves.curves.push_back(curve);
    }
  }
  points.points.push_back({5, {Degrees(60), {"Time", 1.0, "h"}}});
  for (lumo::Value const& value : {lumo::Value(points), lumo::Value(curves)}) {
    bool const isCurves = value.index() == lumo::Value(curves).index();
    auto const at = [&](double degrees, double hours) {
      return Ends(value, {{"Temperature", degrees}, {"Time", hours}}).back();
    };
    EXPECT_EQ(at(20, 1000), 21000) << isCurves;
    EXPECT_EQ(at(60, 1000), 61000) << isCurves;
    EXPECT_EQ(at(100, 500.5), 100500.5) << isCurves;
  }
  EXPECT_THAT(Ends(points, {{"Temperature", 60.0}, {"Time", 1.0}}), ElementsAre(5, 5));
  EXPECT_THAT(Ends(points, {{"Temperature", 20.0}, {"Time", 1001.0}}), ElementsAre());
}

TEST(Cell, OfCurvesIsReadOnTheAxisAndBetweenCurves) {
  auto const curve = [](double degrees, std::vector<double> y) {
    lumo::Curve one;
    one.xName = "Strain";
    one.x = {0, 10};
    one.y = std::move(y);
    one.parameters = {Degrees(degrees)};
    return one;
  };
  lumo::Curves const curves = {{curve(20, {0, 100}), curve(100, {0, 60})}};
  EXPECT_THAT(Ends(curves), ElementsAre(0, 100));
  EXPECT_THAT(Ends(curves, {{"Strain", 5.0}}), ElementsAre(30, 50));
  EXPECT_THAT(Ends(curves, {{"Strain", 5.0}, {"Temperature", 60.0}}),
              ElementsAre(DoubleNear(40, 1e-9), DoubleNear(40, 1e-9)));
  EXPECT_THAT(Ends(curves, {{"Strain", 11.0}}), ElementsAre());
}

TEST(Json, HasNoFigureThatIsNotOne) {
  EXPECT_EQ(cli::browse::TextOf(cli::browse::JsonOf(std::numeric_limits<double>::quiet_NaN())),
            "null");
  EXPECT_EQ(cli::browse::TextOf(cli::browse::JsonOf(249.99999999999997)), "250.0");
  EXPECT_NO_THROW(cli::browse::TextOf("\xff is not UTF-8"));
}

class Views : public testing::Test {
 protected:
  static void SetUpTestSuite() { s_page = std::make_unique<Page>(); }
  static void TearDownTestSuite() { s_page.reset(); }

  static json Ask(std::string const& path, int status = 200) {
    auto const reply = s_page->Get("/api/" + path);
    EXPECT_EQ(reply->status, status) << path << ": " << reply->body;
    EXPECT_EQ(reply->get_header_value("Content-Type"), "application/json");
    return json::parse(reply->body);
  }
  static inline std::unique_ptr<Page> s_page;
};

TEST_F(Views, ShowTablesTreeAndWhatIsFound) {
  json const server = Ask("server");
  EXPECT_EQ(server["databases"].size(), 2U);
  json const tree = Ask(std::string("tree?") + kMaterials);
  ASSERT_EQ(tree["children"][0]["name"], "Metals and alloys");
  EXPECT_EQ(tree["children"][0]["isFolder"], true);
  std::string const folder = tree["children"][0]["id"].dump();
  EXPECT_FALSE(Ask(std::string("tree?") + kMaterials + "&folder=" + folder)["children"].empty());
  json const found = Ask(std::string("search?text=6061&") + kMaterials);
  ASSERT_EQ(found["total"], 1);
  EXPECT_EQ(found["records"][0]["name"], "AW-6061-T6");
  EXPECT_EQ(found["records"][0]["folder"], "Metals and alloys/Aluminium alloys");
  json const light = Ask(std::string("search?text=density%20%3C%20100%20kg/m%5E3&") + kMaterials);
  EXPECT_EQ(light["isCondition"], true);
  EXPECT_GT(light["total"], 0);
}

TEST_F(Views, TakeForWordsWhatIsNoCondition) {
  auto const ask = [](std::string const& text, int status = 200) {
    return Ask("search?text=" + text + "&" + kMaterials, status);
  };
  json const found = Ask("search?text=anneal%20between%20passes&db=ENG_MATERIALS&table=Processes");
  EXPECT_EQ(found["isCondition"], false);
  EXPECT_EQ(found["total"], 1);
  for (char const* const text : {"Joint%20between%20plates", "densty%20%3C%206061%20kg/m%5E3"}) {
    EXPECT_THAT(ask(text, 404)["error"]["text"], HasSubstr("no attribute")) << text;
  }
  EXPECT_THAT(ask("price%20%3E%20wrought", 400)["error"]["text"], HasSubstr("number"));
}

TEST_F(Views, ShowARecordInTheUnitsThatAreAskedFor) {
  std::string const query = std::string("records?id=69&") + kMaterials;
  json const stored = Ask(query)["records"][0]["values"]["Density"];
  EXPECT_EQ(stored, json({{"kind", "range"},
                          {"low", 2690},
                          {"high", 2730},
                          {"unit", "kg/m^3"},
                          {"isEstimated", false}}));
  json const table = Ask(std::string("table?units=US%20Customary&") + kMaterials);
  json const other = Ask(query + "&units=US%20Customary")["records"][0]["values"]["Density"];
  EXPECT_NE(other["unit"], "kg/m^3");
  for (json const& attribute : table["attributes"]) {
    if (attribute["name"] != "Density") continue;
    EXPECT_EQ(attribute["unit"], other["unit"]);
    EXPECT_LE(attribute["least"], other["low"]);
    EXPECT_GE(attribute["most"], other["high"]);
  }
}

TEST_F(Views, ShowLinksWithTheirTablesAndVersions) {
  json const around = Ask(std::string("around?id=69&") + kMaterials);
  ASSERT_FALSE(around["links"].empty());
  EXPECT_EQ(around["links"][0]["name"], "Producers");
  EXPECT_EQ(around["links"][0]["records"][0]["table"], "Material Producers");
  EXPECT_EQ(around["versions"].size(), 3U);
}

TEST_F(Views, GiveAChartTheFiguresOfAllRecordsUnderConditions) {
  json const chart =
      Ask(std::string("columns?attribute=Density&attribute=Young%27s%20modulus&") + kMaterials);
  EXPECT_EQ(chart["records"].size(), 285U);
  EXPECT_EQ(chart["columns"][1]["low"].size(), 285U);
  EXPECT_EQ(chart["columns"][0]["unit"], "kg/m^3");
  EXPECT_TRUE(chart["parameters"].empty());
  std::string const hot =
      std::string("columns?attribute=Yield%20strength%20against%20temperature&") + kMaterials;
  json const any = Ask(hot);
  ASSERT_EQ(any["parameters"].size(), 2U);
  EXPECT_EQ(any["parameters"][1]["name"], "Temperature");
  EXPECT_EQ(any["parameters"][1]["unit"], "degC");
  json const at = Ask(hot + "&at=%7B%22Temperature%22%3A149%7D");
  std::size_t const place = [&] {
    for (std::size_t i = 0; i < at["records"].size(); ++i) {
      if (at["records"][i][1] == "AW-6061-T6") return i;
    }
    return std::size_t{0};
  }();
  EXPECT_EQ(at["columns"][0]["low"][place], 214);
  EXPECT_LT(at["columns"][0]["high"][place], any["columns"][0]["high"][place]);
}

TEST_F(Views, RefuseWhatMakesNoSense) {
  EXPECT_THAT(Ask("tree?db=ENG_MATERIALS", 400)["error"]["text"], HasSubstr("table"));
  EXPECT_EQ(Ask("tree?db=NONE&table=Materials", 404)["error"]["code"], "NotFound");
  Ask(std::string("records?id=6x9&") + kMaterials, 400);
  Ask(std::string("columns?attribute=Nothing&") + kMaterials, 404);
  Ask(std::string("columns?attribute=Density&at=%5B1%5D&") + kMaterials, 400);
  Ask(std::string("columns?attribute=Density&at=%7B%22a%22%3Anull%7D&") + kMaterials, 400);
  Ask(std::string("search?text=density%20%3C%20&") + kMaterials, 400);
}

TEST_F(Views, TellOfFailuresInTheErrorsWordsAndGoOnAfterwards) {
  std::string const query = std::string("records?id=69&") + kMaterials;
  Ask(query);
  s_page->Plan("GetRecordAttributesByRef fault");
  json const fault = Ask(query, 502)["error"];
  EXPECT_EQ(fault["code"], "ServerFault");
  EXPECT_EQ(fault["advice"], "ask the administrator");
  EXPECT_FALSE(fault["text"].get<std::string>().empty());
  s_page->Plan("GetRecordAttributesByRef cut 100");
  EXPECT_EQ(Ask(query, 502)["error"]["code"], "Connection");
  s_page->Plan("GetRecordAttributesByRef status 401");
  EXPECT_EQ(Ask(query, 502)["error"]["code"], "Unauthenticated");
  EXPECT_EQ(Ask(query)["records"].size(), 1U);
}

}  // namespace

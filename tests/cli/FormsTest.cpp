// How the command shows what it reads: on terminals of any width, beside each other, and in the
// forms of spreadsheets and data frames.

#include <algorithm>
#include <sstream>

#include "cli/Text.h"
#include "tests/cli/Command.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

using Words = std::vector<std::string>;

Words OnMaterials(std::string const& command, Words const& more) {
  Words words = {command, "ENG_MATERIALS", "Materials"};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

TEST_F(CommandTest, HelpsWhoAsksAndWhoMistypes) {
  Outcome const bare = Run({});
  EXPECT_EQ(bare.code, 0);
  EXPECT_THAT(bare.out, AllOf(HasSubstr("Usage: lumo "), HasSubstr("compare")));
  Outcome const get = Run({"help", "get"});
  EXPECT_THAT(get.out, AllOf(HasSubstr("Usage: lumo get "), HasSubstr("--match all"),
                             HasSubstr("--url URL, --server NAME")));
  EXPECT_EQ(get.out, Run({"get", "--help"}).out);
  for (Words const& words : {Words{"serach"}, Words{"help", "serach"}}) {
    Outcome const outcome = Run(words);
    EXPECT_EQ(outcome.code, 2);
    EXPECT_EQ(outcome.error, "lumo: there is no command \"serach\"; did you mean \"search\"?\n");
  }
}

TEST_F(CommandTest, FitsTheTerminal) {
  Start(sandbox::Content::Full);
  Words const two = {"304", "PEEK", "-a", "density", "-a", "designation"};
  Outcome const wide = RunOnTerminal(120, OnMaterials("get", two), {"TERM=xterm"});
  EXPECT_THAT(wide.out, StartsWith("\033[1mName  Density [kg/m^3]  Designation"));
  EXPECT_THAT(RunOnTerminal(30, OnMaterials("get", two), {"TERM=dumb"}).out,
              StartsWith("304  Stainless steel, austenitic, EN 1.4301, annealed\n"
                         "  Density      7850 to 8000 kg/m^3\n"));
  EXPECT_THAT(RunOnTerminal(120, OnMaterials("get", two), {"TERM=xterm", "NO_COLOR=1"}).out,
              StartsWith("Name"));
  Words const whole = {"-a", "density", "-a", "typical uses", "-a", "price"};
  std::string const shown = RunOnTerminal(120, OnMaterials("get", whole)).out;
  EXPECT_THAT(shown, HasSubstr("these are the first 100 records; --limit N prints more"));
  EXPECT_THAT(Run(OnMaterials("get", whole)).out, Not(HasSubstr("…")));
  std::string const plot = RunOnTerminal(60, OnMaterials("get", {"304", "Ti-6Al-4V", "-f", "plot",
                                                                 "-a", "yield strength against"}))
                               .out;
  std::string const beside =
      RunOnTerminal(60, OnMaterials("compare", {"304", "PEEK", "-a", "density", "-a", "typical"}))
          .out;
  EXPECT_THAT(beside, HasSubstr("…"));
  std::istringstream rows(beside);
  for (std::string row; std::getline(rows, row);) EXPECT_LE(cli::Width(row), 61u) << row;
  std::istringstream lines(plot.substr(plot.find('\n') + 1));
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 60u) << line;
  EXPECT_THAT(
      plot, AllOf(HasSubstr("Temperature [degC]"), HasSubstr("*  304"), HasSubstr("o  Ti-6Al-4V")));
}

TEST_F(CommandTest, ShowsThatItWaits) {
  Start();
  Plan("GetDatabases stall 3");
  EXPECT_THAT(RunOnTerminal(80, {"databases"}).out,
              AllOf(HasSubstr("waiting for the server"), HasSubstr("ENG_MATERIALS")));
  Plan("GetDatabases stall 3");
  EXPECT_THAT(RunOnTerminal(80, {"databases", "-q"}).out, Not(HasSubstr("waiting")));
}

TEST_F(CommandTest, SetsRecordsBesideEachOther) {
  Start();
  Words const what = {"304",        "PEEK", "-a",      "density",       "-a",
                      "recyclable", "-a",   "melting", "--unit-system", "SI"};
  Outcome const outcome = Run(OnMaterials("compare", what));
  EXPECT_THAT(outcome.out, StartsWith("Attribute      Unit    304"));
  EXPECT_THAT(outcome.out, AllOf(HasSubstr("7850 to 8000 !"), HasSubstr("1300 to 1320 *"),
                                 HasSubstr("Melting point  K")));
  EXPECT_THAT(outcome.error, HasSubstr("less is better for Density; --high NAME or --low NAME"));
  Words const melting = {"304", "PEEK", "-a", "melting"};
  auto const with = [&](Words const& more) {
    Words words = melting;
    words.insert(words.end(), more.begin(), more.end());
    return Run(OnMaterials("compare", words));
  };
  EXPECT_THAT(with({}).out, AllOf(Not(HasSubstr("*")), Not(HasSubstr("!"))));
  EXPECT_EQ(with({}).error, "--high NAME or --low NAME marks other attributes\n");
  EXPECT_THAT(with({"--low", "melting"}).error, HasSubstr("less is better for Melting point"));
  EXPECT_THAT(with({"--high", "melting"}).out, HasSubstr("1400 to 1450 *"));
  EXPECT_EQ(Run(OnMaterials("compare", {"304", "Unobtainium"})).code, 2);
  Words const asCsv = {"304", "PEEK", "-a", "density", "-f", "csv"};
  EXPECT_EQ(Run(OnMaterials("compare", asCsv)).out,
            "Attribute,Unit,304,PEEK\nDensity,kg/m^3,7850..8000,1300..1320\n");
}

TEST_F(CommandTest, CarriesUnitsOfAxesAndParametersIntoAnySystem) {
  Start();
  Words const curve = {"304", "-a", "yield strength against", "-f", "ndjson"};
  EXPECT_THAT(Run(OnMaterials("get", curve)).out,
              HasSubstr(R"("unit":"MPa","xAxis":"Temperature","xUnit":"degC")"));
  Words us = curve;
  us.insert(us.end(), {"--unit-system", "US customary"});
  EXPECT_THAT(Run(OnMaterials("get", us)).out,
              AllOf(HasSubstr(R"("unit":"ksi","xAxis":"Temperature","xUnit":"degF")"),
                    HasSubstr(R"({"x":68,)")));
  EXPECT_THAT(Run(OnMaterials("get", {"304", "--long", "yield strength against", "-f", "csv",
                                      "--unit-system", "US customary"}))
                  .out,
              HasSubstr("Temperature [degF]"));
  EXPECT_THAT(Run(OnMaterials("get", {"304", "PEEK", "-f", "plot", "-a", "strength against"})).out,
              HasSubstr("\nno curve: PEEK\n"));
  EXPECT_THAT(Run(OnMaterials("get", {"304", "-a", "density", "-f", "plot"})).out,
              HasSubstr("nothing to draw: 1 record without a curve"));
}

TEST_F(CommandTest, WritesNumbersForSpreadsheetsAndDataFrames) {
  Start();
  Words const what = {"AW-6061-T6", "-a", "density", "-a", "hardness by", "-f", "csv"};
  auto const with = [&](Words const& more) {
    Words words = what;
    words.insert(words.end(), more.begin(), more.end());
    return Run(OnMaterials("get", words)).out;
  };
  EXPECT_THAT(with({"--ranges", "split", "--delimiter", ";"}),
              AllOf(StartsWith("Folder;Name;Full name;Density low [kg/m^3];Density high [kg/m^3];"
                               "Density estimated;Hardness by condition [HV];"
                               "Hardness by condition estimated;Hardness by condition points\n"),
                    HasSubstr(";2690;2730;false;;;\"{")));
  EXPECT_THAT(with({"--ranges", "mean"}), HasSubstr(",2710,,"));
  std::string const file = File("m.xlsx");
  EXPECT_EQ(Run(OnMaterials("get", {"-f", "xlsx", "-o", file})).error, "");
  EXPECT_THAT(Read(file), StartsWith("PK"));
  EXPECT_EQ(RunOnTerminal(80, OnMaterials("get", {"-f", "xlsx"})).code, 2);
  EXPECT_EQ(Run(OnMaterials("get", {"--long", "density", "-f", "csv"})).code, 2);
}

}  // namespace

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>

#include "lumo/LumoServiceLayer.h"
#include "lumo/Version.h"
#include "tests/cli/Command.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

using Words = std::vector<std::string>;

constexpr char kDatabase[] = "ENG_MATERIALS";

Words OnMaterials(std::string const& command, Words const& more) {
  Words words = {command, kDatabase, "Materials"};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

std::size_t LinesIn(std::string const& text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

/// A mistake, the code that it ends with and what its one line says.
struct Mistake {
  Words arguments;
  int code;
  char const* says;
};

TEST_F(CommandTest, TellsOfEveryMistakeInOneLineAndByItsCode) {
  Start();
  Mistake const mistakes[] = {
      {{"frob"}, 2, "there is no command \"frob\""},
      {{"tables"}, 2, "DATABASE is required"},
      {{"tables", "GOLD"}, 2, "there is no database \"GOLD\"; there is ENG_MATERIALS, ELEMENTS"},
      {{"attributes", kDatabase, "Materiels"}, 2, "did you mean \"Materials\"?"},
      {OnMaterials("get", {"-a", "Densty"}), 2, "did you mean \"Density\"?"},
      {OnMaterials("get", {"Unobtainium"}), 2, "there is no record \"Unobtainium\""},
      {OnMaterials("get", {"--folder", "Polymers/Rubber"}), 2, "there is no folder \"Rubber\""},
      {OnMaterials("get", {"-f", "xml"}), 2, "--format takes text, csv, json, ndjson"},
      {OnMaterials("get", {"-j", "0"}), 2, "--jobs"},
      {OnMaterials("get", {"-o", "/nowhere/file"}), 2, "cannot write /nowhere/file"},
      {OnMaterials("get", {"--unit-system", "Old"}), 2, "there is no unit system \"Old\""},
      {OnMaterials("get", {"--currency", "XYZ"}), 2, "there is no currency \"XYZ\""},
      {OnMaterials("search", {"--subset", "Gold"}), 2, "there is no subset \"Gold\""},
      {{"units", kDatabase, "--from", "mPa"}, 2, "there is no unit \"mPa\"; did you mean"},
      {OnMaterials("get", {"--sort", "Colour"}), 2, "there is no attribute \"Colour\""},
      {OnMaterials("get", {"-a", "density,price"}), 2,
       "there is no attribute \"density,price\"; name each by itself: \"density\" and \"price\""},
      {OnMaterials("get", {"--descending"}), 2, "--sort"},
      {OnMaterials("get", {"--sort", "composition"}), 2, "cannot be sorted"},
      {OnMaterials("get", {"--ids", "--columns", "name"}), 2, "does not go together with"},
      {OnMaterials("get", {"--columns", "name,"}), 2, "a name is missing in --columns"},
      {OnMaterials("get", {"--ranges", "split"}), 2, "-f csv"},
      {OnMaterials("get", {"--limit", "2.5"}), 2, "--limit: takes a whole number from 1 to"},
      {OnMaterials("get", {"--lmit", "2"}), 2, "no option --lmit; did you mean \"--limit\"?"},
      {OnMaterials("get", {"--folder", "a", "--folder", "b"}), 2, "--folder is given more than"},
      {OnMaterials("get", {"--delimiter", "\""}), 2, "no quotation mark"},
      {OnMaterials("compare", {"304", "PEEK", "-a", "density", "--low", "price"}), 2,
       "\"Price\" is not compared"},
      {OnMaterials("compare", {"304", "PEEK", "--low", "price", "--high", "price"}), 2, "both"},
      {{"databases", "--sandbox", "--url", Url()}, 2, "does not go together with"},
      {{"databases", "-o", "new.xlsx"}, 2, "writes no spreadsheets"},
      {{"get"}, 2, "name a database and a table"},
      {{"get", "--partition", "/nowhere/part"}, 2, "neither a partition nor a file"},
      {{"get", "--partition", "lumo/1 x"}, 2, "not a part of a selection"},
      {OnMaterials("search", {}), 2, "say what to search for"},
      {OnMaterials("search", {"-w", "density"}), 2, "is missing"},
      {OnMaterials("search", {"-w", "density < heavy"}), 2,
       "at column 11: \"heavy\" is not a number"},
      {OnMaterials("search", {"-w", "density < 3 MPa"}), 2,
       "\"MPa\" is not a unit of \"Density\", which can be given in kg/m^3, g/cm^3, lb/in^3"},
      {OnMaterials("search", {"-w", "density < 3000"}), 2, "kg/m^3"},
      {OnMaterials("search", {"-w", "density < 300,5 kg/m^3"}), 2, "300,5"},
      {OnMaterials("search", {"-w", "density < 300 to 400 kg/m^3"}), 2, "300 to 400"},
      {OnMaterials("search", {"-w", "young = 3 GPa and x"}), 2,
       "\"young\" may be any of 2 attributes"},
      {OnMaterials("search", {"-w", "designation < 3"}), 2,
       "(text) has no order; try =, contains or exists"},
      {OnMaterials("search", {"-w", "recyclable = perhaps"}), 2, "is neither yes nor no"},
      {OnMaterials("search", {"-w", "density < 1e999"}), 2, "\"1e999\" is not a number"},
      {OnMaterials("search", {"-w", "density[x] < 1"}), 2, "has no columns"},
      {OnMaterials("search", {"-w", "composition[Gold] contains 1"}), 2,
       "there is no column \"Gold\""},
      {OnMaterials("search", {"-w", "density exists at all"}), 2, "goes on after its end"},
      {OnMaterials("search", {"-w", "last reviewed <= tomorrow"}), 2,
       "dates are written as 2026-03-17"},
      {OnMaterials("search", {"-w", "durability: sea water = Good"}), 2,
       "there is no word \"Good\"; there is Excellent"},
      {OnMaterials("search", {"-n", "304"}), 2, "there is no option -n"},
      {{"import", "--resume", "a.journal", "-n"}, 2, "does not go together with"},
      {{"import", "--undo", "a.journal", "--dry-run"}, 2, "does not go together with"},
      {OnMaterials("get", {"-t", ""}), 2, "is empty"},
      {OnMaterials("get", {"304", "--folder", "Polymers"}), 2, "does not go together with"},
      {{"tables", "a\nb\x1b[31m"}, 2, "\"a b [31m\""},
      {OnMaterials("export", {"304", "-e", "gold"}), 2, "there is no exporter"},
      {OnMaterials("import", {"/nowhere/file"}), 2, "cannot read /nowhere/file"},
      {{"databases", "--url", "http://127.0.0.1:1"}, 4, "no reply from http://127.0.0.1:1"},
      {{"databases", "--url", Url() + "/elsewhere"}, 6, "status 404. http"},
      {{"databases", "--url", "ftp://127.0.0.1/"}, 2, "address"},
      {{"databases", "--sandbox-file", "/nowhere/file"}, 2, "cannot keep a sandbox in"},
      {{"databases", "--user", "ann"}, 2, "no password for \"ann\"; set LUMO_PASSWORD"},
      {{"databases", "--user", "ann", "--password-file", "/nowhere/file"}, 2, "cannot be read"},
  };
  for (Mistake const& mistake : mistakes) {
    Outcome const outcome = Run(mistake.arguments);
    std::string const what = testing::PrintToString(mistake.arguments);
    EXPECT_EQ(outcome.code, mistake.code) << what;
    EXPECT_THAT(outcome.error, AllOf(StartsWith("lumo: "), HasSubstr(mistake.says))) << what;
    EXPECT_EQ(LinesIn(outcome.error), 1u) << what;
    EXPECT_THAT(outcome.out, IsEmpty()) << what;
  }
}

TEST_F(CommandTest, EndsByCodeWhenTheServerFails) {
  Start();
  struct Row {
    char const* fault;
    int code;
    char const* says;
  };
  constexpr Row kRows[] = {{"GetDatabases fault", 1, "the server says: "},
                           {"GetDatabases status 503", 1, "status 503"},
                           {"GetDatabases html", 6, "the reply is not well-formed XML"},
                           {"GetDatabases malformed", 6, "the reply is not well-formed XML"},
                           {"GetDatabases cut 100", 4, "no reply from"},
                           {"GetDatabases reset", 4, "no reply from"}};
  for (Row const& row : kRows) {
    Plan(row.fault);
    Outcome const outcome = Run({"databases", "--retries", "0"});
    EXPECT_EQ(outcome.code, row.code) << row.fault;
    EXPECT_THAT(outcome.error, HasSubstr(row.says)) << row.fault;
    EXPECT_EQ(LinesIn(outcome.error), 1u) << row.fault;
  }
  Plan("GetDatabases stall 60");
  EXPECT_EQ(Run({"databases", "--timeout", "1", "--retries", "0"}).code, 4);
  Plan("GetDatabases reset\nGetDatabases status 503");
  EXPECT_EQ(Run({"databases"}).code, 0) << "a read is not tried again";
  EXPECT_EQ(RunAndInterrupt({"databases"}).code, 130);
}

TEST_F(CommandTest, UnderstandsOnlyResponses) {
  Start();
  struct Row {
    char const* body;
    int code;
    char const* says;
  };
  constexpr Row kRows[] = {
      {"", 6, "the reply is empty"},
      {"<html><body>Log on, please</body></html>", 6, "has no GetDatabasesResponse: <html>"},
      {"<s:Envelope xmlns:s=\"x\"><s:Body><Other/></s:Body></s:Envelope>", 6,
       "has no GetDatabasesResponse"},
      {"<s:Envelope xmlns:s=\"x\"><s:Body/></s:Envelope>", 6, "has no GetDatabasesResponse"},
      {"<s:Envelope xmlns:s=\"x\"><s:Body><s:Fault><faultcode>c</faultcode>"
       "<faultstring>broken</faultstring></s:Fault></s:Body></s:Envelope>",
       1, "the server says: broken"}};
  for (Row const& row : kRows) {
    Outcome const outcome = RunOnServerThatSays(row.body, {"databases"});
    EXPECT_EQ(outcome.code, row.code) << row.body;
    EXPECT_THAT(outcome.error, HasSubstr(row.says)) << row.body;
  }
}

TEST_F(CommandTest, SpeaksTheNamespaceThatItIsGiven) {
  sandbox::ServerOptions options;
  options.namespaceBase = "http://vendor.example.com/";
  Start(sandbox::Content::Minimal, options);
  EXPECT_THAT(Run({"databases"}).error, HasSubstr("the server says: "));
  for (std::string const base : {"http://vendor.example.com", "http://vendor.example.com/"}) {
    EXPECT_EQ(Run({"databases", "--namespace", base}).error, "");
    EXPECT_EQ(Run({"databases"}, {"LUMO_NAMESPACE_BASE=" + base}).code, 0);
  }
  EXPECT_EQ(Run({"databases", "--sandbox", "--namespace", "urn:x"}).code, 0);
  EXPECT_EQ(Run({"databases", "--namespace", "a b"}).code, 2);
  EXPECT_EQ(Run({"--version"}).out, "lumo " + std::string(LUMO_VERSION) + "\n");
  std::string const more = "vendor namespace: " + LumoSession::GetVendorNamespaceBase() + "\n";
  EXPECT_THAT(Run({"--version", "-v"}).out, EndsWith(more));
  EXPECT_THAT(Run({"-v", "--version"}).out, EndsWith(more));
}

TEST_F(CommandTest, KeepsWhatWasDoneBeforeAFault) {
  Start();
  std::string const all = Run(OnMaterials("get", {"-f", "csv"})).out;
  Plan("GetRecordAttributesByRef stall 0 x3\nGetRecordAttributesByRef fault");
  Outcome const outcome = Run(OnMaterials("get", {"-f", "csv", "--chunk", "5", "-j", "1"}));
  EXPECT_EQ(outcome.code, 5);
  EXPECT_THAT(outcome.error, HasSubstr("(after 15 records)"));
  EXPECT_THAT(all, StartsWith(outcome.out));
  EXPECT_THAT(outcome.out, EndsWith("\n"));
  EXPECT_EQ(Run(OnMaterials("get", {"-f", "csv", "--chunk", "3", "-j", "8"})).out, all);
}

TEST_F(CommandTest, LogsOnWithAPasswordThatStandsOnNoCommandLine) {
  sandbox::ServerOptions options;
  options.logOn = sandbox::LogOn::Digest;
  options.password = "open sesame";
  Start(sandbox::Content::Minimal, options);
  EXPECT_EQ(Run({"databases"}).code, 3);
  EXPECT_EQ(Run({"databases", "--user", "lumo"}, {"LUMO_PASSWORD=guess"}).code, 3);
  EXPECT_EQ(Run({"databases"}, {"LUMO_USER=lumo", "LUMO_PASSWORD=open sesame"}).code, 0);
  std::string const file = File("password", "open sesame\r\n");
  for (char const* const name : {"doctor", "probe"}) {
    Outcome const doctor = Run({name, "--user", "lumo", "--password-file", file});
    EXPECT_EQ(doctor.code, 0);
    EXPECT_THAT(doctor.out, AllOf(HasSubstr("as lumo (--user), by Digest (offered: Digest)"),
                                  HasSubstr("EngineeringData")));
  }
  Outcome const refused = Run({"doctor", "--json"}, {"LUMO_USER=lumo", "LUMO_PASSWORD=guess"});
  EXPECT_EQ(refused.code, 3);
  EXPECT_THAT(refused.out + refused.error, Not(HasSubstr("guess")));
  nlohmann::json const report = nlohmann::json::parse(refused.out);
  EXPECT_EQ(report["fault"]["code"], "Unauthenticated");
  EXPECT_EQ(report["findings"].back()["stage"], "log-on");
  EXPECT_THAT(report["findings"].back()["next"], HasSubstr("password of lumo"));
}

/// Names of the records that meet the conditions.
struct Search {
  char const* condition;
  char const* names;
};

TEST_F(CommandTest, SearchesByConditions) {
  Start();
  constexpr Search kSearches[] = {{"density < 1 g/cm^3", "PE-HD\nOak\n"},
                                  {"melting point >= 2030 degC", "Al2O3-99.5\nSiC\n"},
                                  {"price between 70 and 80 EUR/kg", "PEEK\n"},
                                  {"year of first use = 1943", "AW-7075-T6\n"},
                                  {"durability: sea water = Unacceptable", "AZ91D\n"},
                                  {"recyclable = no", "Epoxy\nAl2O3-99.5\nSiC\nCFRP QI\nOak\n"},
                                  {"typical uses contains kitchen", "304\n"},
                                  {"composition[Element] contains V", "Ti-6Al-4V\n"},
                                  {"last reviewed >= 2026-03-01", "AW-6061-T6\n"},
                                  {"photo exists", "AW-6061-T6\n"}};
  for (Search const& search : kSearches) {
    Outcome const outcome = Run(OnMaterials(
        "get", {"-w", search.condition, "-a", "Designation", "-f", "csv", "--no-headings"}));
    std::string names;
    std::istringstream lines(outcome.out);
    for (std::string line; std::getline(lines, line);) {
      std::size_t const begin = line.find(',') + 1;
      names += line.substr(begin, line.find(',', begin) - begin) + '\n';
    }
    EXPECT_EQ(names, search.names) << search.condition << outcome.error;
  }
  std::string const found =
      Run(OnMaterials("search", {"-t", "aluminium", "-w", "density > 2750 kg/m^3"})).out;
  EXPECT_THAT(found, AllOf(HasSubstr("AW-7075-T6"), Not(HasSubstr("AW-6061-T6"))));
  EXPECT_EQ(Run(OnMaterials("search", {"aluminium", "-w", "density > 2750 kg/m^3"})).out, found);
}

TEST_F(CommandTest, PrintsValuesInEveryFormat) {
  Start();
  Words const what = {"AW-6061-T6",    "-a", "density",   "-a", "composition", "-a",
                      "last reviewed", "-a", "data sheet"};
  auto const printed = [&](Words more) {
    more.insert(more.begin(), what.begin(), what.end());
    return Run(OnMaterials("get", more)).out;
  };
  EXPECT_EQ(printed({}),
            "AW-6061-T6  Aluminium, EN AW-6061, wrought, T6\n"
            "  Density        2690 to 2730 kg/m^3\n"
            "  Composition    5 rows\n"
            "  Last reviewed  2026-03-17T09:30:00\n"
            "  Data sheet     https://www.example.com/materials/aw-6061\n");
  EXPECT_EQ(Run(OnMaterials("get", {"304", "PEEK", "-a", "density", "-a", "recyclable"})).out,
            "Name  Density [kg/m^3]  Recyclable\n"
            "304   7850 to 8000      yes\n"
            "PEEK  1300 to 1320      yes\n");
  EXPECT_THAT(printed({"-f", "list"}), AllOf(HasSubstr("  Composition    5 rows\n"
                                                       "      Element  Least [%]  Most [%]\n"),
                                             HasSubstr("      Mg       0.8        1.2\n")));
  EXPECT_THAT(printed({"-f", "csv", "--unit-system", "US customary"}),
              AllOf(StartsWith("Folder,Name,Full name,Density [lb/in^3],Composition,"),
                    HasSubstr("\nMetals and alloys/Aluminium alloys,AW-6061-T6,\"Aluminium, EN"),
                    HasSubstr(",0.09718")));
  EXPECT_THAT(printed({"-f", "ndjson"}),
              AllOf(HasSubstr(R"("Density":{"low":2690,"high":2730,"unit":"kg/m^3"})"),
                    HasSubstr(R"(["Mg",{"value":0.8,"unit":"%"},{"value":1.2,"unit":"%"}])"),
                    EndsWith("}}\n")));
  std::string const curve = Run(OnMaterials("get", {"304", "-f", "plot"})).out;
  EXPECT_THAT(curve, AllOf(StartsWith("304: Yield strength against temperature [MPa]\n"),
                           HasSubstr("     222.5 |*"), HasSubstr("Temperature")));
  EXPECT_THAT(Run(OnMaterials("links", {"304"})).out,
              AllOf(HasSubstr("Producers   "), HasSubstr("Rhine Steel")));
}

TEST_F(CommandTest, SortsLimitsAndChoosesColumns) {
  Start();
  EXPECT_EQ(
      Run(OnMaterials("search", {"--folder", "polymers", "--sort", "density", "--descending",
                                 "--limit", "2", "--columns", "name, \"density\"", "-f", "csv"}))
          .out,
      "Name,Density [kg/m^3]\nPEEK,1300..1320\nEpoxy,1110..1400\n");
  std::string const by = Run(OnMaterials("get", {"--subset", "Polymers", "--sort", "density", "-f",
                                                 "csv", "--columns", "name,id"}))
                             .out;
  EXPECT_THAT(by, StartsWith("Name,Identity\nPE-HD,"));
  EXPECT_EQ(Run(OnMaterials("search", {"--name", "304", "-f", "ndjson"})).out,
            Run(OnMaterials("get", {"304", "--columns", "id,name,full name", "-f", "ndjson"})).out);
  EXPECT_EQ(LinesIn(Run(OnMaterials("get", {"--limit", "3", "-f", "csv"})).out), 4u);
  Words const limited = {"--folder", "polymers", "--limit", "2"};
  EXPECT_THAT(Run(OnMaterials("search", limited)).error, HasSubstr("2 of 4 records"));
  EXPECT_THAT(Run(OnMaterials("get", {"-w", "density < 1 kg/m^3"})).error, HasSubstr("0 records"));
  std::string const all = Run(OnMaterials("search", {"-w", "density between 1.31 and 8 g/cm^3",
                                                     "--match", "all", "--columns", "name"}))
                              .out;
  EXPECT_THAT(all, AllOf(HasSubstr("304\n"), Not(HasSubstr("PEEK\n"))));
}

TEST_F(CommandTest, SplitsAReadIntoPartsForOtherProcesses) {
  Start();
  Words const what = {"--folder", "Metals", "-a", "Density"};
  Words words = what;
  words.insert(words.end(), {"--size", "3"});
  std::istringstream parts(Run(OnMaterials("partitions", words)).out);
  std::string rows;
  for (std::string part; std::getline(parts, part);) {
    Outcome const outcome = Run({"get", "--partition", part, "-f", "csv", "--no-headings"});
    EXPECT_EQ(outcome.error, "");
    EXPECT_LE(LinesIn(outcome.out), 3u);
    rows += outcome.out;
  }
  words = what;
  words.insert(words.end(), {"-f", "csv", "--no-headings"});
  EXPECT_EQ(rows, Run(OnMaterials("get", words)).out);
}

TEST_F(CommandTest, LeavesAnOlderFileWhenAReadFails) {
  Start();
  std::string const file = File("out.csv", "old\n");
  Plan("GetRecordAttributesByRef stall 0\nGetRecordAttributesByRef fault");
  Words const words = {"-f", "csv", "--chunk", "5", "-j", "1", "-o", file};
  EXPECT_EQ(Run(OnMaterials("get", words)).code, 5);
  EXPECT_EQ(Read(file), "old\n");
  EXPECT_EQ(Run(OnMaterials("get", words)).code, 0);
  EXPECT_THAT(Read(file), StartsWith("Folder,Name,Full name,"));
  EXPECT_EQ(Read(file + ".part"), "");
  EXPECT_EQ(Run(OnMaterials("get", {"304", "-f", "csv", "-o", "/dev/null"})).code, 0);
  // Nor what lies beside it, nor what others write to the same output.
  File("out.csv.part", "mine\n");
  Outcome const byEnding = Run(OnMaterials("get", {"304", "-a", "density", "-o", file}));
  EXPECT_EQ(byEnding.code, 0) << byEnding.error;
  EXPECT_THAT(Read(file), StartsWith("Folder,Name,Full name,"));
  EXPECT_EQ(Read(file + ".part"), "mine\n");
  for (std::string const output : {"-", "/dev/stdout"}) {
    EXPECT_THAT(Run(OnMaterials("get", {"304", "-f", "csv", "-o", output})).out,
                StartsWith("Folder,Name,"))
        << output;
  }
}

TEST_F(CommandTest, FindsServersByTheirProfiles) {
  Start();
  std::filesystem::create_directory(File("lumo"));
  File("lumo/servers.ini", "[plant]\nurl = " + Url() + "\n");
  Words const environment = {"XDG_CONFIG_HOME=" + File(""), "LUMO_URL="};
  EXPECT_EQ(Run({"databases", "--server", "plant"}, environment).code, 0);
  EXPECT_EQ(Run({"databases"}, environment).code, 0) << "the only profile";
  EXPECT_THAT(Run({"databases", "--server", "plan"}, environment).error,
              HasSubstr("there is no server \"plan\""));
}

TEST_F(CommandTest, ImportsWhatItReadAndReadsTheSameAgain) {
  Start(sandbox::Content::Full);
  std::vector<std::pair<std::string, std::string>> const tables = {
      {kDatabase, "Materials"},
      {kDatabase, "Processes"},
      {kDatabase, "Material Producers"},
      {kDatabase, "References"},
      {"ELEMENTS", "Elements"}};
  Words files;
  for (auto const& [database, table] : tables) {
    files.push_back(File(table + ".csv"));
    ASSERT_EQ(Run({"get", database, table, "-f", "csv", "-o", files.back()}).code, 0);
    EXPECT_GT(Read(files.back()).size(), 100u);
  }
  std::string const lines = Run(OnMaterials("get", {"-f", "ndjson"})).out;
  std::string const split = Run(OnMaterials("get", {"-f", "csv", "--ranges", "split"})).out;
  Start(sandbox::Content::Empty);
  for (std::size_t i = 0; i < tables.size(); ++i) {
    auto const& [database, table] = tables[i];
    Outcome const outcome = Run({"import", "--make-folders", database, table, files[i]});
    ASSERT_EQ(outcome.code, 0) << outcome.error;
    EXPECT_EQ(Run({"get", database, table, "-f", "csv"}).out, Read(files[i])) << table;
  }
  Start(sandbox::Content::Empty);
  ASSERT_EQ(Run(OnMaterials("import", {"--make-folders", File("lines", lines)})).code, 0);
  EXPECT_EQ(Run(OnMaterials("get", {"-f", "csv"})).out, Read(files[0]));
  Start(sandbox::Content::Empty);
  ASSERT_EQ(Run(OnMaterials("import", {"--make-folders", File("split.csv", split)})).code, 0);
  EXPECT_EQ(Run(OnMaterials("get", {"-f", "csv", "--ranges", "split"})).out, split);
  EXPECT_EQ(Run(OnMaterials("get", {"-f", "csv"})).out, Read(files[0])) << "marks of estimates too";
}

TEST_F(CommandTest, ImportsRecordsAndChangesThem) {
  Start();
  std::string const file =
      File("new.csv",
           "\xEF\xBB\xBF"
           "Folder,Name,Full name,Density [g/cm^3],Price,Recyclable,Durability: sea water\r\n"
           "Polymers/Foams,\"EPS, \"\"20\"\"\",Foam,~0.02..0.03,2..,no,Excellent; Acceptable\r\n"
           "Polymers/Thermoplastics,PEEK,,1.3 kg/m^3,,yes,\r\n");
  EXPECT_THAT(Run(OnMaterials("import", {file})).error,
              HasSubstr("row 2: there is no folder \"Polymers/Foams\""));
  Outcome const dry = Run(OnMaterials("import", {"-n", "--make-folders", "-f", "csv", file}));
  EXPECT_THAT(dry.out, HasSubstr(",new folder,,Polymers/Foams,,,,,\n"
                                 "2,create,,Polymers/Foams,\"EPS, \"\"20\"\"\",Density,,"
                                 "~20..30 kg/m^3,\n"));
  EXPECT_THAT(dry.out,
              testing::ContainsRegex("\n3,change,[0-9]+,Polymers/Thermoplastics,PEEK,Density,"
                                     "1300..1320 kg/m.3,1.3 kg/m.3,\n$"));
  EXPECT_THAT(Run(OnMaterials("get", {"EPS, \"20\""})).error, HasSubstr("there is no record"));
  ASSERT_EQ(Run(OnMaterials("import", {"--make-folders", file})).code, 0);
  Words const columns = {
      "-f",         "csv", "--no-headings",        "-a", "density", "-a", "price", "-a",
      "recyclable", "-a",  "durability: sea water"};
  auto const read = [&](char const* name) {
    Words words = columns;
    words.insert(words.begin(), name);
    return Run(OnMaterials("get", words)).out;
  };
  EXPECT_EQ(read("EPS, \"20\""),
            "Polymers/Foams,\"EPS, \"\"20\"\"\",Foam,~20..30,2..,no,Excellent; Acceptable\n");
  EXPECT_EQ(read("PEEK"),
            "Polymers/Thermoplastics,PEEK,Polyetheretherketone,1.3,75..95,yes,Excellent\n");
}

TEST_F(CommandTest, FindsFaultWithAFileBeforeAnythingIsWritten) {
  Start();
  struct Row {
    char const* content;
    int code;
    char const* says;
  };
  constexpr Row kRows[] = {
      {"Name,Colour\nX,red\n", 2, "there is no attribute \"Colour\""},
      {"Name,Density\nX,1\nY,heavy\n", 2, "row 3, Density: \"heavy\" is not a number"},
      {"Name,Density\nX,1,2\n", 2, "row 2: 3 cells under 2 headings"},
      {"Name,Density\nX,1\nX,2\n", 2, "row 3: the record stands in row 2, too"},
      {"Name,Density\n,1\n", 2, "row 2: the record has no name"},
      {"Name,Density,density\nX,1,2\n", 2, "density: the heading comes twice"},
      {"Name;Density\nX;1.234\n", 2, "\"1.234\" may mean two numbers"},
      {"\xFF\xFEN", 2, "ends in the middle of a UTF-16 character"},
      {"PK\x03\x04", 2, "cannot be opened"},
      {R"({"name":"X","values":{"Density":null}})", 2, "is null, which changes nothing"},
      {"Name,Designation\nX,J\xE4ger\n", 2, "a character that cannot be sent"},
      {"Folder,Name\nPolymers/Thermoplastics/PEEK,X\n", 2, "is a record and holds no others"},
      {R"({"name":"X","Density":3})", 2, "there is no member \"Density\""},
      {R"({"name":"X","values":[]})", 2, "\"values\" is not an object"},
      {"Name,Density\n\"X\"Y,1\n", 2, "misplaced quotation mark"},
      {"Name,Composition\nX,\"{\"\"columns\"\":[\"\"Gold\"\"],\"\"rows\"\":[]}\"\n", 2,
       "has no column \"Gold\""},
      {R"([{"name":"X","values":{"Density":{"low":"1"}}}])", 2, "needs a number for \"low\""},
      {R"({"name":"X","values":{"Recyclable":"yes"}})", 2, "takes true or false"},
      {R"({"name":"X")", 2, "row 1: \"{\"name\":\"X\"\" is not JSON"},
      {"Name,Density\nX,1 MPa\n", 2, "cannot be given in \"MPa\""},
      {"Name,Durability: sea water\nX,Fair\n", 2, "has no word \"Fair\"; it has Excellent"}};
  std::string const before = Run(OnMaterials("tree", {})).out;
  for (Row const& row : kRows) {
    std::string const file = File("bad", row.content);
    for (Words const& more : {Words{"-q", "-n", file}, Words{"-q", file}}) {
      Outcome const outcome = Run(OnMaterials("import", more));
      EXPECT_EQ(outcome.code, row.code) << row.content;
      EXPECT_THAT(outcome.error, HasSubstr(row.says)) << row.content;
      EXPECT_LE(LinesIn(outcome.error), 2u) << row.content;
    }
  }
  std::string const deep(100'000, '[');
  std::string const nested = R"([{"name":"X","values":{"Composition":)" + deep;
  EXPECT_THAT(Run(OnMaterials("import", {File("deep", nested)})).error,
              HasSubstr("nested too deeply"));
  EXPECT_EQ(Run(OnMaterials("tree", {})).out, before);
}

TEST_F(CommandTest, TakesJsonAsPeopleWriteIt) {
  Start();
  std::string const pretty = "\xEF\xBB\xBF{\n  \"name\": \"P\",\n  \"values\": {}\n}\n";
  EXPECT_EQ(Run(OnMaterials("import", {File("one", pretty)})).code, 0);
  EXPECT_EQ(Run(OnMaterials("import", {File("none", "[]")})).code, 0);
  EXPECT_EQ(Run(OnMaterials("get", {"P", "-a", "density", "-a", "Density", "-f", "csv"})).out,
            "Folder,Name,Full name,Density [kg/m^3]\n,P,P,\n");
}

TEST_F(CommandTest, LetsNoServerSteerTheTerminal) {
  Start();
  File("evil.json",
       "{\"name\":\"E\",\"values\":{\"Designation\":\"a\\nb\xC2\x9B"
       "c\\td\"}}");
  ASSERT_EQ(Run(OnMaterials("import", {File("evil.json")})).code, 0);
  EXPECT_THAT(Run(OnMaterials("get", {"E", "-a", "designation"})).out,
              HasSubstr("  Designation  a b c d\n"));
}

}  // namespace

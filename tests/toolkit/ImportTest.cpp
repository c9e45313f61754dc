// An import into a sandbox: what is told before anything is sent, which records are meant, and
// what becomes of them when the server or the network fails.

#include <algorithm>
#include <cctype>
#include <random>

#include "lumo/toolkit/Relations.h"
#include "lumo/toolkit/ValueBytes.h"
#include "tests/toolkit/ImportServer.h"
#include "tests/toolkit/Support.h"

using lumo::Quantity;
using lumo::Range;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr char kPlastics[] = "Polymers/Thermoplastics";

TEST_F(ImportTest, TellsAllFaultsOfAllRowsAndSendsNothing) {
  Start();
  struct Mistake {
    char const* heading;
    char const* cell;
    char const* why;
  };
  constexpr Mistake kMistakes[] = {
      {"Density", "3 furlong", "cannot be given in \"furlong\"; it is kept in \"kg/m^3\""},
      {"Density", "7,85", "\"7,85\" is not a number: write it with a point"},
      {"Density", "heavy", "\"heavy\" is not a number"},
      {"Density", "2900 to 2800", "ends are the wrong way round: 2900 to 2800"},
      {"Density", "2.8 g/cm3", "did you mean \"g/cm^3\"?"},
      {"Durability: sea water", "Fair", "has no word \"Fair\"; it has Excellent"},
      {"Last reviewed", "17.3.2026", "write 2026-03-17"},
      {"Last reviewed", "3/4/2026", "write 2026-04-03 or 2026-03-04"},
      {"Recyclable", "maybe", "\"maybe\" is neither yes nor no"},
      {"Year of first use", "19.5", "\"19.5\" is not a whole number"},
      {"Number of suppliers", "3000000000", "a whole number of 32 bits"},
      {"Hardness by condition", "100..110", "takes one number"},
      {"Designation", "J\xE4ger", "a character that cannot be sent"},
      {"Composition", "Al", "cannot be typed"},
      {"Folder", "Polymers/Thermoplastic", "did you mean \"Thermoplastics\"?"},
      {"Folder", "Polymers/Thermoplastics/PEEK", "is a record and holds no others"},
  };
  std::vector<std::string> headings = {"Name"};
  for (Mistake const& one : kMistakes) {
    if (std::find(headings.begin(), headings.end(), one.heading) == headings.end()) {
      headings.push_back(one.heading);
    }
  }
  Cells cells = {headings};
  for (std::size_t i = 0; i < std::size(kMistakes); ++i) {
    auto const place = std::find(headings.begin(), headings.end(), kMistakes[i].heading);
    std::vector<std::string> row(headings.size());
    row[0] = "M" + std::to_string(i);
    row[static_cast<std::size_t>(place - headings.begin())] = kMistakes[i].cell;
    cells.push_back(row);
  }
  cells.push_back({"", "1"});
  cells.push_back({"M0", "1"});
  std::string const longName(300, 'x');
  cells.push_back({longName});
  lumo::Import const import = SheetOf(cells);
  lumo::ImportReport const report = import.Preflight();
  std::vector<std::string> const faults = FaultsOf(report);
  ASSERT_THAT(faults, SizeIs(std::size(kMistakes) + 4));
  for (std::size_t i = 0; i < std::size(kMistakes); ++i) {
    std::string const row = "row " + std::to_string(i + 2);
    EXPECT_THAT(faults, Contains(AllOf(HasSubstr(row), HasSubstr(kMistakes[i].why))));
  }
  EXPECT_THAT(faults, Contains("row 19: the record stands in row 2, too"));
  EXPECT_THAT(faults, Contains(HasSubstr("the record has no name")));
  EXPECT_THAT(faults, Contains(HasSubstr("300 characters; no more than 255")));

  lumo::ImportReport const run = import.Run(Journal("none"));
  EXPECT_EQ(FaultsOf(run), faults);
  EXPECT_FALSE(run.isWritten);
  EXPECT_FALSE(std::filesystem::exists(Journal("none")));
  EXPECT_EQ(CountInLog("SetRecordAttributes 200"), 0u);
}

TEST_F(ImportTest, RefusesHeadingsThatMeanNothing) {
  Start();
  auto const faultsOf = [this](std::vector<std::string> const& headings) {
    return FaultsOf(SheetOf({headings, {"X", "1"}}).Preflight());
  };
  EXPECT_THAT(faultsOf({"Name", "Densty [kg/m^3]"}),
              ElementsAre(HasSubstr("did you mean \"Density\"?")));
  EXPECT_THAT(faultsOf({"Name", "Density [g/cm3]"}),
              ElementsAre(HasSubstr("did you mean \"g/cm^3\"?")));
  EXPECT_THAT(faultsOf({"Name", "Density", "density (g/cm^3)"}),
              ElementsAre("density (g/cm^3): the heading comes twice"));
  EXPECT_THAT(faultsOf({"Name"}), ElementsAre("row 2: 2 cells under 1 headings"));
  EXPECT_THAT(faultsOf({" name ", " Density ( g/cm^3 ) ", "", ""}), IsEmpty());
}

TEST_F(ImportTest, ReadsWhatPeopleType) {
  Start();
  auto const table = Materials();
  Cells const cells = {
      {"Name", "Density [g/cm^3]", "Price", "Recyclable", "Durability: sea water", "Last reviewed",
       "Year of first use", "Hardness by condition"},
      {"A", "2.8 to 2.9", "> 3", "YES", "excellent; limited use", "2026-03-17", "1999.0", "~100"},
      {"B", "2.8 - 2.9", "<4 EUR/kg", "0", "", "", "", "7 HV"},
      {"C", "2.8\u20132.9", "..5", "", "", "2026-03-17T09:30:00", "", ""},
      {"D", "2800..2900 kg/m^3", "2..", "", "", "", "", ""}};
  ASSERT_THAT(FaultsOf(SheetOf(cells).Run(Journal("a"))), IsEmpty());
  for (char const* const name : {"A", "B", "C", "D"}) {
    lumo::Record const record = table.Get(name, {"Density"});
    auto const* const density = std::get_if<Range>(&record["Density"]);
    ASSERT_NE(density, nullptr) << name;
    EXPECT_DOUBLE_EQ(*density->low, 2800) << name;
    EXPECT_DOUBLE_EQ(*density->high, 2900) << name;
  }
  auto const price = [&](char const* name) {
    return lumo::TextOf(table.Get(name, {"Price"})["Price"]);
  };
  EXPECT_EQ(price("A"), "3.. EUR/kg");
  EXPECT_EQ(price("B"), "..4 EUR/kg");
  EXPECT_EQ(price("C"), "..5 EUR/kg");
  lumo::Record const a = table.Get("A");
  EXPECT_TRUE(std::get<bool>(a["Recyclable"]));
  EXPECT_THAT(std::get<std::vector<std::string>>(a["Durability: sea water"]),
              ElementsAre("Excellent", "Limited use"));
  EXPECT_TRUE(std::get<Quantity>(a["Hardness by condition"]).estimated);

  lumo::Import german = table.NewImport();
  lumo::Import::SheetOptions options;
  options.hasDecimalComma = true;
  Cells rows = {{"E", "2,8"},
                {"F", "2,8..,5e4"},
                {"G", "0.123 - 0.5"},
                {"H", "1.5 to 3,25"},
                {"I", "12,5 kg.m^-3"}};
  std::size_t const good = rows.size();
  for (char const* const text : {"1.234", "1.234..1.5", ">= 1.234", "ca. -1.234", "1 to 1.234",
                                 "1.234,5", "1.234.567", "1 234", "1,5 to 2.345"}) {
    rows.push_back({text, text});
  }
  german.AddSheet({"Name", "Density"}, rows, options);
  std::vector<std::string> const faults = FaultsOf(german.Preflight());
  ASSERT_THAT(faults, SizeIs(rows.size() - good + 1)) << testing::PrintToString(faults);
  EXPECT_THAT(faults[0], HasSubstr("row 6, Density: cannot be given in \"kg.m^-3\""));
  EXPECT_THAT(faults[1], HasSubstr("\"1.234\" may mean two numbers: write 1,234 or 1234"));
  EXPECT_THAT(faults[6], HasSubstr("\"1.234,5\" is not a number: write 1234,5, without"));
  for (std::size_t i = good; i < rows.size(); ++i) {
    EXPECT_THAT(faults[i - good + 1], HasSubstr("row " + std::to_string(i + 2))) << rows[i][1];
  }
  EXPECT_THAT(
      FaultsOf(SheetOf({{"Name", "Density"}, {"J", "1,000"}, {"K", "1 000 kg/m^3"}}).Preflight()),
      ElementsAre(HasSubstr("may mean two numbers: write 1.000 or 1000"),
                  HasSubstr("is not a number: write 1234.5, without signs")));
}

TEST_F(ImportTest, ChangesTheRecordThatIsMeant) {
  Start();
  ASSERT_TRUE(SheetOf({{"Folder", "Name"}, {"Polymers", "Twin"}, {kPlastics, "Twin"}})
                  .Run(Journal("twins"))
                  .IsComplete());
  lumo::Record const peek = Materials().Get("PEEK", {"Price"});
  std::string const identity = std::to_string(peek.Id().identity);

  lumo::Import const import = SheetOf({{"Folder", "Name", "Identity", "Price"},
                                       {"", "PEEK", "", "70..90"},
                                       {"", "Twin", "", "1"},
                                       {"", "", identity, "1"},
                                       {"", "Fresh", "", "1"},
                                       {"Polymers", "PEEK", "", "1"},
                                       {"", "304", identity, "1"},
                                       {"Polymers/New/Deep", "Deep", "", "1"}});
  lumo::ImportReport report = import.Preflight();
  EXPECT_THAT(
      FaultsOf(report),
      ElementsAre("row 2: the record stands in row 4, too",
                  AllOf(HasSubstr("row 3: \"Twin\" may be any of 2 records: id:"),
                        HasSubstr("(Polymers/Twin)")),
                  "row 4: the record stands in row 2, too",
                  HasSubstr("row 7: id:" + identity + " is the record \"PEEK\", not \"304\""),
                  HasSubstr("row 8: there is no folder \"Polymers/New\"")));
  EXPECT_EQ(report.rows[3].kind, Kind::Create);
  EXPECT_EQ(report.rows[4].kind, Kind::Create) << "another one in another folder";
  EXPECT_THAT(report.rows[4].notes,
              ElementsAre("id:" + identity + " in another place has the same name"));
  EXPECT_THAT(SheetOf({{"Name"}, {"peek"}}).Preflight().rows[0].notes,
              ElementsAre("id:" + identity + " is called \"PEEK\""));

  lumo::ImportOptions options = Quick();
  options.makesFolders = true;
  lumo::Import const good = SheetOf({{"Name", "Price", "Full name", "Folder"},
                                     {"PEEK", "70..90", "", ""},
                                     {"304", "", "", ""},
                                     {"Deep", "1", "A deep one", "Polymers/New/Deep"}});
  report = good.Preflight(options);
  EXPECT_THAT(KindsOf(report), ElementsAre(Kind::Change, Kind::Same, Kind::Create));
  EXPECT_THAT(report.newFolders, ElementsAre("Polymers/New", "Polymers/New/Deep"));
  ASSERT_THAT(report.rows[0].changes, SizeIs(1));
  EXPECT_EQ(report.rows[0].changes[0].before, "75..95 EUR/kg");
  EXPECT_EQ(report.rows[0].changes[0].after, "70..90 EUR/kg");
  EXPECT_EQ(report.rows[0].folder, kPlastics);
  report = good.Run(Journal("good"), options);
  EXPECT_TRUE(report.IsComplete());
  EXPECT_EQ(Materials().Get("Deep").Folder(), "Polymers/New/Deep");
  EXPECT_EQ(Materials().Get("Deep").FullName(), "A deep one");
  EXPECT_EQ(Materials().Get("Deep").Id().identity, report.rows[2].id.identity);
  EXPECT_EQ(Materials().Get("PEEK").Id().identity, peek.Id().identity);
  // What has all of it already is not sent again.
  EXPECT_THAT(KindsOf(good.Run(Journal("again"))), ElementsAre(Kind::Same, Kind::Same, Kind::Same));
  EXPECT_FALSE(std::filesystem::exists(Journal("again")));
}

TEST_F(ImportTest, FindsRecordsByTheirGuids) {
  Start(sandbox::Content::Full);
  lumo::ReadOptions options;
  options.withGuids = true;
  auto const guidOf = [&](char const* name) {
    return Materials().Get(name, {"Density"}, options).Id().guid;
  };
  std::string const nobody = "00000000-0000-4000-8000-000000000000";
  Cells const cells = {{"GUID", "Name", "Folder", "Density"},
                       {guidOf("PEEK"), "", "", "1"},
                       {guidOf("304"), "304", "Metals and alloys/Ferrous/Stainless steels", "1"},
                       {guidOf("316L"), "304", "", "1"},
                       {guidOf("C45"), "", "Polymers", "1"},
                       {nobody, "AW-6061-T6", "", "1"}};
  lumo::ImportReport const report = SheetOf(cells).Preflight();
  EXPECT_THAT(KindsOf(report),
              ElementsAre(Kind::Change, Kind::Change, Kind::Refused, Kind::Refused, Kind::Refused));
  EXPECT_EQ(report.rows[0].name, "PEEK");
  EXPECT_EQ(report.rows[0].folder, kPlastics);
  EXPECT_THAT(FaultsOf(report),
              ElementsAre(HasSubstr("is the record \"316L\", not \"304\""),
                          HasSubstr("lies in \"Metals and alloys/Ferrous/Carbon steels\", and"),
                          HasSubstr("row 6: there is no record " + nobody)));
  std::string capitals = guidOf("PEEK");
  std::transform(capitals.begin(), capitals.end(), capitals.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  lumo::ImportReport const other = SheetOf({{"GUID", "Identity", "Name", "Density"},
                                            {capitals, "", "", "1"},
                                            {guidOf("304"), "1", "", "1"},
                                            {guidOf("316L"), "1", "316L", "1"}})
                                       .Preflight();
  EXPECT_EQ(other.rows[0].name, "PEEK");
  EXPECT_THAT(FaultsOf(other), ElementsAre(AllOf(HasSubstr("row 3: the GUID is that of id:"),
                                                 HasSubstr(", not of id:1"))));
  EXPECT_THAT(other.rows[2].notes, ElementsAre(HasSubstr(", not of id:1")));
  Cells good = {cells[0], cells[1], cells[2]};
  ASSERT_TRUE(SheetOf(good).Run(Journal("guids"), Quick()).IsComplete());
  EXPECT_EQ(lumo::TextOf(Materials().Get("PEEK", {"Density"})["Density"]), "1 kg/m^3");
  EXPECT_EQ(CountInLog("<zbt:create>"), 0u);
}

TEST_F(ImportTest, AsksLittleOfALargeTable) {
  Start(sandbox::Content::Minimal, static_cast<int>(Scaled("LUMO_TEST_RECORDS", 2000)));
  calls = 0;
  lumo::Table const fresh = Server().OpenTable("ENG_MATERIALS", "Materials");
  lumo::Import import = fresh.NewImport();
  import.AddSheet({"Name", "Folder", "Density"},
                  {{"GEN-7", "", "1"},
                   {"PEEK", kPlastics, "1"},
                   { "New",
                     kPlastics,
                     "1" }},
                  {});
  EXPECT_THAT(KindsOf(import.Run(Journal("few"))),
              ElementsAre(Kind::Change, Kind::Change, Kind::Create));
  EXPECT_LT(calls, 20u);
}

/// Marks steps of a journal as sent, and not as done.
void Mark(std::filesystem::path const& journal, std::string const& which) {
  sqlite3* file = nullptr;
  ASSERT_EQ(sqlite3_open(journal.c_str(), &file), SQLITE_OK);
  std::string const sql = "UPDATE step SET state = 1, identity = 0 WHERE " + which;
  EXPECT_EQ(sqlite3_exec(file, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(file);
}

// ---- what the server refuses

TEST_F(ImportTest, FindsTheRowsThatTheServerRefuses) {
  Start();
  Refuse("N23");
  Refuse("N61");
  Cells cells = {{"Name", "Density"}};
  for (int i = 0; i < 100; ++i) cells.push_back({"N" + std::to_string(i), std::to_string(i + 1)});
  lumo::Import const import = SheetOf(cells);
  lumo::ImportOptions options = Quick();
  options.chunkSize = 40;
  lumo::ImportReport report = import.Run(Journal("first"), options);
  ASSERT_TRUE(report.stopped);
  EXPECT_THAT(FaultsOf(report), ElementsAre(HasSubstr("row 25")));
  EXPECT_THAT(FaultsOf(report)[0], HasSubstr("not here"));
  EXPECT_EQ(report.Count(Kind::Create), 39u);
  EXPECT_EQ(report.Count(Kind::Waiting), 60u);

  options.keepsGoing = true;
  report = lumo::Import::Resume(Server(), Journal("first"), options);
  EXPECT_FALSE(report.stopped);
  EXPECT_THAT(FaultsOf(report), ElementsAre(HasSubstr("row 25"), HasSubstr("row 63")));
  EXPECT_EQ(report.Count(Kind::Create), 98u);
  All();
}

TEST_F(ImportTest, MakesNothingTwiceWhateverTheNetworkDoes) {
  Start();
  Cells cells = {{"Folder", "Name", "Full name", "Density", "Price"}};
  for (int i = 0; i < 60; ++i) {
    std::string const number = std::to_string(i);
    cells.push_back({i % 3 == 0 ? "New/A" : "New/B", "N" + number,
                     i % 4 == 0 ? "Full " + number : "", number, "2"});
  }
  cells.push_back({kPlastics, "PEEK", "Peek", "1300", "3"});
  lumo::ImportOptions options = Quick();
  options.makesFolders = true;
  options.chunkSize = 10;
  ASSERT_TRUE(SheetOf(cells).Run(Journal("undisturbed"), options).IsComplete());
  auto const undisturbed = All();

  for (char const* const fault :
       {"swallow", "cut 100", "reset", "status 503", "malformed", "html", "status 502"}) {
    Start();
    Plan(std::string("SetRecordAttributes ") + fault + " every 3 x1000");
    lumo::ImportReport const report = SheetOf(cells).Run(Journal(fault), options);
    ASSERT_FALSE(report.stopped) << fault << ": " << report.stopped->what();
    EXPECT_TRUE(report.IsComplete()) << fault;
    Plan("");
    ExpectSameRecords(undisturbed, All());
    for (lumo::RowVerdict const& row : report.rows) EXPECT_NE(row.id.identity, 0) << fault;
  }
}

TEST_F(ImportTest, GoesOnWhereARunEnded) {
  Start();
  Cells cells = {{"Folder", "Name", "Density"}};
  for (int i = 0; i < 50; ++i) {
    cells.push_back({"New", "N" + std::to_string(i), std::to_string(i + 1)});
  }
  lumo::ImportOptions options = Quick();
  options.chunkSize = 10;
  options.makesFolders = true;
  options.onProgress = [&](lumo::Progress const& progress) {
    if (progress.recordsDone == 20) options.cancel.Cancel();
  };
  lumo::ImportReport report = SheetOf(cells).Run(Journal("half"), options);
  ASSERT_TRUE(report.stopped);
  EXPECT_EQ(report.stopped->Code(), lumo::ErrorCode::Cancelled);
  EXPECT_EQ(report.Count(Kind::Create), 20u);
  EXPECT_EQ(report.Count(Kind::Waiting), 30u);
  // As if the process had been killed with a chunk under way, that came in or did not.
  Mark(Journal("half"), "number BETWEEN 11 AND 30");
  report = lumo::Import::Resume(Server(), Journal("half"), Quick(), std::chrono::milliseconds(50));
  EXPECT_TRUE(report.IsComplete()) << (report.stopped ? report.stopped->what() : "");
  EXPECT_THAT(ErrorOf([&] { SheetOf(cells).Run(Journal("half")); }).what(), HasSubstr("already"));
  EXPECT_THAT(ErrorOf([&] { lumo::Import::Resume(Server(), Journal("nothing")); }).what(),
              HasSubstr("there is no journal"));
  EXPECT_EQ(CountInLog("<zbt:create>"), 51u) << "and the folder";
}

/// Rows of new records with full name and links.
lumo::Import WithLinks(lumo::Table const& table, int count) {
  lumo::Import import = table.NewImport();
  for (int i = 0; i < count; ++i) {
    lumo::ImportRow row;
    row.name = "N" + std::to_string(i);
    row.fullName = "Full " + row.name;
    row.values = {{"Density", Quantity{7, "kg/m^3", false}}};
    row.links = {{"Producers", {"Rhine Steel"}}};
    import.Add(row);
  }
  return import;
}

TEST_F(ImportTest, MakesNothingTwiceWhenWhatFollowsFails) {
  for (char const* const fault :
       {"ModifyRecordLinks status 503 x20", "ModifyRecordLinks status 401",
        "ModifyRecordLinks reset x20",
        "SetRecordAttributes stall 0\nSetRecordAttributes status 401",
        "SetRecordAttributes stall 0\nSetRecordAttributes status 503 x20"}) {
    Start();
    lumo::Import const import = WithLinks(Materials(), 6);
    Plan(fault);
    lumo::ImportReport report = import.Run(Journal("follows"), Quick());
    EXPECT_TRUE(report.stopped) << fault;
    EXPECT_EQ(report.Count(Kind::Create), 6u) << fault;
    Plan("");
    report = lumo::Import::Resume(Server(), Journal("follows"), Quick());
    EXPECT_TRUE(report.IsComplete()) << fault;
    for (lumo::RowVerdict const& row : report.rows) EXPECT_NE(row.id.identity, 0) << fault;
    EXPECT_THAT(KindsOf(import.Preflight()), testing::Each(Kind::Same)) << fault;
    std::filesystem::remove(Journal("follows"));
    EXPECT_EQ(CountInLog("<zbt:create>"), 6u) << fault;
  }
}

TEST_F(ImportTest, WritesAllButTheFullNameThatTheServerRefuses) {
  Start();
  lumo::ImportOptions options = Quick();
  options.keepsGoing = true;
  // All names, the first half, and the first of that.
  Plan("SetRecordAttributes stall 0\nSetRecordAttributes fault x3");
  lumo::ImportReport report = WithLinks(Materials(), 4).Run(Journal("names"), options);
  EXPECT_FALSE(report.stopped);
  EXPECT_THAT(FaultsOf(report),
              ElementsAre(HasSubstr("row 1, Full name: all but the full name is written: ")));
  EXPECT_EQ(Materials().Get("N0", {"Density"}).FullName(), "N0");
  EXPECT_EQ(Materials().Get("N1", {"Density"}).FullName(), "Full N1");
  report = lumo::Import::Undo(Server(), Journal("names"), Quick());
  EXPECT_THAT(FaultsOf(report), testing::AllOf(SizeIs(4), testing::Each(HasSubstr("was made"))));
}

TEST_F(ImportTest, LooksForWhatATimeOutLeftOpen) {
  Start();
  lumo::ConnectOptions connect;
  connect.credentials = lumo::Anonymous{};
  connect.stall = std::chrono::milliseconds(200);
  lumo::Client const hasty = lumo::Client::Connect(Server().Url(), connect);
  lumo::ImportOptions patient = Quick();
  patient.settleAfter = std::chrono::seconds(3);  // the stalls are over then
  for (char const* const name : {"New", "PEEK"}) {
    lumo::Import import = hasty.OpenTable("ENG_MATERIALS", "Materials").NewImport();
    import.Add("", name, {{ "Density", Quantity { 1, "kg/m^3", false } }});
    Plan("SetRecordAttributes stall 1");
    lumo::ImportReport report = import.Run(Journal(name), Quick());
    ASSERT_TRUE(report.stopped) << name;
    EXPECT_EQ(report.stopped->Code(), lumo::ErrorCode::OutcomeUnknown);
    EXPECT_TRUE(lumo::MayBeDone(report.rows[0])) << name;
    report = lumo::Import::Resume(Server(), Journal(name), Quick());
    ASSERT_TRUE(report.stopped) << name;
    EXPECT_THAT(report.stopped->what(), HasSubstr("repeat this after "));
    EXPECT_THAT(ErrorOf([&] { lumo::Import::Undo(Server(), Journal(name), Quick()); }).what(),
                HasSubstr("may still be at work on it"));
    report = lumo::Import::Undo(Server(), Journal(name), patient);
    EXPECT_THAT(KindsOf(report),
                ElementsAre(std::string(name) == "New" ? Kind::Refused : Kind::Change));
    EXPECT_TRUE(lumo::Import::Resume(Server(), Journal(name), Quick()).IsComplete());
  }
  All();
  EXPECT_EQ(CountInLog("SetRecordAttributes 200"), 3u) << "and what is undone";
}

TEST_F(ImportTest, LeavesToOthersWhatTheyDidMeanwhile) {
  Start();
  auto const designation = [this](char const* name) {
    return lumo::TextOf(Materials().Get(name, {"Designation"})["Designation"]);
  };
  Cells const cells = {{"Folder", "Name", "Full name", "Designation"},
                       {"New", "Alike", "Full", "ours"},
                       {"New", "Other", "", "ours"},
                       {"", "Sent", "", "ours"},
                       {"New", "Ours", "", "ours"},
                       {"", "C45", "", "ours"},
                       {"", "PEEK", "", "ours"},
                       {"", "304", "", "ours"},
                       {"", "316L", "Renamed by us", ""}};
  lumo::ImportOptions options = Quick();
  options.makesFolders = true;
  std::string const peek = designation("PEEK");
  Plan("SetRecordAttributes status 401");
  EXPECT_EQ(SheetOf(cells).Run(Journal("a"), options).Count(Kind::Waiting), 8u);
  Plan("");
  Mark(Journal("a"), "number = 3");
  ASSERT_TRUE(SheetOf({cells[0],
                       cells[1],
                       {"New", "Other", "", "theirs"},
                       {"", "Sent", "", "theirs"},
                       {"", "C45", "", "theirs"},
                       {"", "304", "", "ours"},
                       {"", "316L", "Renamed by them", ""}})
                  .Run(Journal("theirs"), options)
                  .IsComplete());
  lumo::ImportReport report = lumo::Import::Resume(Server(), Journal("a"), options);
  EXPECT_FALSE(report.stopped) << report.stopped->what();
  EXPECT_THAT(KindsOf(report), ElementsAre(Kind::Same, Kind::Refused, Kind::Refused, Kind::Create,
                                           Kind::Refused, Kind::Change, Kind::Same, Kind::Refused));
  EXPECT_THAT(FaultsOf(report),
              ElementsAre(HasSubstr("came to be there since the run began, with other values"),
                          HasSubstr("row 4: id:"),
                          HasSubstr("row 6, Designation: has been changed since the run began, to "
                                    "\"theirs\", and is left alone"),
                          HasSubstr("row 9, Full name: has been changed since the run began, to "
                                    "\"Renamed by them\"")));
  EXPECT_THAT(report.newFolders, IsEmpty()) << "they made it";
  EXPECT_EQ(designation("C45"), "theirs");
  EXPECT_EQ(designation("Sent"), "theirs");
  EXPECT_EQ(designation("PEEK"), "ours");
  report = lumo::Import::Undo(Server(), Journal("a"), Quick());
  EXPECT_THAT(FaultsOf(report), ElementsAre(HasSubstr("row 5: was made by the import")));
  EXPECT_EQ(report.Count(Kind::Change), 1u);
  EXPECT_EQ(designation("PEEK"), peek);
  EXPECT_EQ(designation("304"), "ours");
  All();
}

TEST_F(ImportTest, KnowsWhatItMadeByItsValues) {
  Start(sandbox::Content::Full);
  lumo::Import import = Materials().NewImport();
  std::size_t count = 0;
  for (auto const& [path, record] : All()) {
    lumo::ImportRow row;
    row.name = "Copy " + std::to_string(++count);
    for (std::size_t i = 0; i < record.Values().size(); ++i) {
      lumo::Value const& value = record.Values()[i];
      if (std::holds_alternative<lumo::NotApplicable>(value)) continue;
      row.values.push_back({record.Attributes()[i].name, value});
    }
    import.Add(std::move(row));
  }
  ASSERT_TRUE(import.Run(Journal("copies"), Quick()).IsComplete());
  Mark(Journal("copies"), "1");
  lumo::ImportReport const report = lumo::Import::Resume(Server(), Journal("copies"), Quick());
  EXPECT_THAT(FaultsOf(report), IsEmpty());
  EXPECT_THAT(KindsOf(report), testing::Each(Kind::Create));
  All();
}

// ---- undo

TEST_F(ImportTest, PutsOldValuesBack) {
  Start(sandbox::Content::Full);
  auto const before = All();
  lumo::Import import = Materials().NewImport();
  std::size_t changed = 0;
  // Every record gets the values of the one before it, so that all types are among the changes.
  lumo::Record const* last = nullptr;
  for (auto const& [path, record] : before) {
    if (last != nullptr) {
      lumo::ImportRow row;
      row.folder = record.Folder();
      row.name = record.Name();
      row.fullName = record.FullName() + " (changed)";
      for (std::size_t i = 0; i < last->Values().size(); ++i) {
        bool const holdsValue = !std::holds_alternative<lumo::NotApplicable>(last->Values()[i]) &&
                                !std::holds_alternative<lumo::NotApplicable>(record.Values()[i]);
        if (holdsValue) row.values.push_back({last->Attributes()[i].name, last->Values()[i]});
      }
      import.Add(std::move(row));
      ++changed;
    }
    last = &record;
  }
  lumo::ImportRow made;
  made.name = "Made";
  import.Add(made);
  lumo::ImportReport report = import.Run(Journal("all"), Quick());
  ASSERT_THAT(FaultsOf(report), IsEmpty());
  ASSERT_TRUE(report.IsComplete()) << (report.stopped ? report.stopped->what() : "");
  EXPECT_EQ(report.Count(Kind::Change), changed);
  lumo::ImportReport const other =
      SheetOf({{"Name", "Density"}, {"PEEK", "1"}}).Run(Journal("other"));
  ASSERT_TRUE(other.IsComplete());

  report = lumo::Import::Undo(Server(), Journal("all"), Quick());
  EXPECT_THAT(FaultsOf(report),
              ElementsAre(HasSubstr("Density: has been changed since, to \"1 kg/m^3\""),
                          HasSubstr("cannot be deleted")));
  EXPECT_TRUE(lumo::Import::Undo(Server(), Journal("other"), Quick()).IsComplete());
  report = lumo::Import::Undo(Server(), Journal("all"), Quick());
  EXPECT_THAT(FaultsOf(report), ElementsAre(HasSubstr("cannot be deleted")));
  auto after = All();
  EXPECT_EQ(after.erase("/Made"), 1u);
  ExpectSameRecords(before, after);
}

// ---- links and subsets

lumo::ImportRow Related(std::string const& name, std::vector<lumo::ImportLinks> links,
                        std::optional<std::vector<std::string>> subsets = {}) {
  lumo::ImportRow row;
  row.name = name;
  row.links = std::move(links);
  row.subsets = std::move(subsets);
  return row;
}

/// "Producers: Northern Alloys; ... | Metals; ..." of a record of the table.
std::string RelationsOf(lumo::Table const& table, std::string const& name) {
  lumo::Relations const all = lumo::RelationsOf(table, {table.Get(name, {"Density"}).Head()}).at(0);
  std::string text;
  for (auto const& links : all.links) {
    text += links.group + ": " + lumo::TextOf(links.records) + " | ";
  }
  return text + lumo::TextOf(all.subsets);
}

TEST_F(ImportTest, ChangesLinksAndSubsetsAndPutsThemBack) {
  Start(sandbox::Content::Full);
  std::string const alloy = RelationsOf(Materials(), "AW-6061-T6");
  std::string const steel = RelationsOf(Materials(), "304");
  EXPECT_THAT(alloy, AllOf(HasSubstr("Producers: Metals/Northern Alloys; Metals/Lowland"),
                           HasSubstr("| All materials; Metals and alloys; Structural metals")));
  lumo::Import import = Materials().NewImport();
  import.Add(Related("AW-6061-T6",
                     {{ "Producers",
                        { "Rhine Steel",
                          "Metals/Northern Alloys" } }},
                     std::vector<std::string>{"Polymers", "all materials"}));
  import.Add(Related("304", {{ "producers", {} }}));
  import.Add(Related("316L", {{ "Producers", { "Rhine Steel", "Lakeland Stainless" } }}));
  lumo::ImportRow made = Related("Made", {{"Producers", {"Rhine Steel"}}}, {{"Polymers"}});
  made.fullName = "A made one";
  made.values = {{"Density", Quantity{7, "kg/m^3", false}}};
  import.Add(made);
  lumo::ImportReport report = import.Run(Journal("links"), Quick());
  ASSERT_TRUE(report.IsComplete()) << (report.stopped ? report.stopped->what() : "");
  EXPECT_THAT(KindsOf(report), ElementsAre(Kind::Change, Kind::Change, Kind::Same, Kind::Create));
  ASSERT_THAT(report.rows[0].changes, SizeIs(2));
  EXPECT_EQ(report.rows[0].changes[0].attribute, "links: Producers");
  EXPECT_EQ(report.rows[0].changes[0].before,
            "Metals/Northern Alloys; Metals/Lowland Light Metals");
  EXPECT_EQ(report.rows[0].changes[0].after, "Metals/Northern Alloys; Metals/Rhine Steel");
  EXPECT_EQ(report.rows[0].changes[1].after, "All materials; Polymers");
  EXPECT_THAT(RelationsOf(Materials(), "AW-6061-T6"),
              AllOf(HasSubstr("Producers: Metals/Northern Alloys; Metals/Rhine Steel |"),
                    HasSubstr("Processes: "), HasSubstr("| All materials; Polymers")));
  EXPECT_THAT(RelationsOf(Materials(), "304"), Not(HasSubstr("Producers")));
  EXPECT_EQ(RelationsOf(Materials(), "Made"), "Producers: Metals/Rhine Steel | Polymers");
  EXPECT_THAT(KindsOf(import.Preflight()), testing::Each(Kind::Same));

  lumo::Import other = Materials().NewImport();
  other.Add(Related("304", {{"Producers", {"Polymer House"}}}));
  ASSERT_TRUE(other.Run(Journal("other"), Quick()).IsComplete());
  report = lumo::Import::Undo(Server(), Journal("links"), Quick());
  EXPECT_THAT(FaultsOf(report),
              ElementsAre(HasSubstr("row 2, links: Producers: has been changed since, to "
                                    "\"Polymers/Polymer House\""),
                          HasSubstr("cannot be deleted")));
  EXPECT_EQ(RelationsOf(Materials(), "AW-6061-T6"), alloy);
  EXPECT_TRUE(lumo::Import::Undo(Server(), Journal("other"), Quick()).IsComplete());
  lumo::Import::Undo(Server(), Journal("links"), Quick());
  EXPECT_EQ(RelationsOf(Materials(), "304"), steel);
  EXPECT_EQ(CountInLog("<zbt:update>"), 3u) << "of the alloy's subsets and back, and of a name";
}

TEST_F(ImportTest, UndoesAnUndo) {
  Start();
  std::string const before = RelationsOf(Materials(), "C45");
  auto const summary = [this] { return Materials().Get("C45")["Composition (summary)"]; };
  ASSERT_TRUE(std::holds_alternative<std::monostate>(summary())) << "it is put back by itself";
  lumo::Import import = Materials().NewImport();
  lumo::ImportRow row = Related("C45", {}, {{"Metals and alloys"}});
  row.values = {{"Designation", "ours"}, {"Composition (summary)", "new"}};
  import.Add(row);
  ASSERT_TRUE(import.Run(Journal("a"), Quick()).IsComplete());
  EXPECT_TRUE(lumo::Import::Undo(Server(), Journal("a"), Quick()).IsComplete());
  EXPECT_EQ(RelationsOf(Materials(), "C45"), before);
  lumo::ImportReport const report = lumo::Import::Undo(Server(), Journal("a.undo"), Quick());
  EXPECT_TRUE(report.IsComplete()) << testing::PrintToString(FaultsOf(report));
  EXPECT_THAT(KindsOf(import.Preflight()), ElementsAre(Kind::Same));
}

TEST_F(ImportTest, TellsWhichLinksAndSubsetsThereAreNot) {
  Start();
  lumo::Table const producers = Server().OpenTable("ENG_MATERIALS", "Material Producers");
  lumo::Import twins = producers.NewImport();
  lumo::ImportOptions options = Quick();
  options.makesFolders = true;
  twins.Add("A", "Twin", {}).Add("B", "Twin", {}).Add("", "Top", {}).Add("A", "Top", {});
  twins.Add("C/D", "Slash/ed", {});
  ASSERT_TRUE(twins.Run(Journal("twins"), options).IsComplete());
  std::string const peek =
      "id:" + std::to_string(Materials().Get("PEEK", {"Density"}).Id().identity);
  lumo::Import import = Materials().NewImport();
  import.Add(Related("PEEK", {{"Producers", { "Twin", "Rhine Stel" }}, { "Producer", {} }}));
  import.Add(Related("304", {{ "Producers", { peek } }}, {{ "Polymer", "Nothing at all" }}));
  import.Add(Related("316L", {{"Producers", { "C/D/Nobody" }}, { "producers", {} }}));
  EXPECT_THAT(
      FaultsOf(import.Preflight()),
      ElementsAre(AllOf(HasSubstr("row 1, links: Producers: \"Twin\" may be any of 2 records: id:"),
                        HasSubstr("(A/Twin)")),
                  HasSubstr("row 1, links: Producer: there is no link group \"Producer\"; did you "
                            "mean \"Producers\"?"),
                  HasSubstr("row 2, links: Producers: \"" + peek +
                            "\" is not a record of \"Material Producers\""),
                  HasSubstr("row 2, subsets: there is no subset \"Polymer\"; did you mean"),
                  HasSubstr("row 3, links: Producers: there is no record \"C/D/Nobody\"")));
  lumo::Import good = Materials().NewImport();
  good.Add(Related("PEEK", {{"Producers", {"Top", "B/Twin", "Slash/ed", "C/D/Slash\\/ed"}}}));
  ASSERT_THAT(FaultsOf(good.Run(Journal("good"), Quick())), IsEmpty());
  EXPECT_THAT(RelationsOf(Materials(), "PEEK"),
              HasSubstr("Producers: B/Twin; Top; C/D/Slash\\/ed |"));
}

TEST_F(ImportTest, LinksOnceWhateverTheNetworkDoes) {
  for (char const* const fault : {"swallow", "cut 100", "status 503", "status 502"}) {
    Start();
    lumo::Import import = Materials().NewImport();
    for (char const* const name : {"PEEK", "304", "AW-6061-T6"}) {
      lumo::ImportRow row = Related(name, {{"Producers", {"Polymer House"}}});
      row.values = {{"Density", Quantity{7, "kg/m^3", false}}};
      import.Add(row);
    }
    lumo::ImportOptions options = Quick();
    options.chunkSize = 1;
    Plan(std::string("ModifyRecordLinks ") + fault + " every 2 x1000");
    lumo::ImportReport const report = import.Run(Journal(fault), options);
    ASSERT_FALSE(report.stopped) << fault << ": " << report.stopped->what();
    Plan("");
    EXPECT_THAT(KindsOf(import.Preflight()), testing::Each(Kind::Same)) << fault;
  }
}

TEST_F(ImportTest, WritesAllButTheLinksThatTheServerRefuses) {
  Start();
  lumo::Import import = Materials().NewImport();
  for (char const* const name : {"PEEK", "304", "AW-6061-T6", "C45"}) {
    lumo::ImportRow row = Related(name, {{"Producers", {"Polymer House"}}});
    row.values = {{"Density", Quantity{7, "kg/m^3", false}}};
    import.Add(row);
  }
  lumo::ImportOptions options = Quick();
  options.keepsGoing = true;
  Plan("ModifyRecordLinks fault x3");  // all, the first half, and the first of that
  lumo::ImportReport report = import.Run(Journal("links"), options);
  EXPECT_THAT(FaultsOf(report),
              ElementsAre(HasSubstr("row 1, links: Producers: all but the links is written: ")));
  EXPECT_THAT(RelationsOf(Materials(), "304"), HasSubstr("Producers: Polymer House |"));
  report = lumo::Import::Undo(Server(), Journal("links"), Quick());
  EXPECT_TRUE(report.IsComplete()) << testing::PrintToString(FaultsOf(report));
  EXPECT_EQ(report.Count(Kind::Change), 4u) << "the first one's density, too";
}

// ---- what passes is taken

/// Rows as people and programs get them wrong.
class RandomRows {
 public:
  explicit RandomRows(std::vector<lumo::Attribute> const& attributes) : m_attributes(attributes) {}

  std::vector<std::string> Headings() const {
    std::vector<std::string> headings = {"Folder", "Name"};
    for (lumo::Attribute const& one : m_attributes) headings.push_back(one.name);
    return headings;
  }
  std::vector<std::string> Row(std::size_t number) {
    std::vector<std::string> cells = {
        Any({"", "Polymers", kPlastics, "Polymers/Thermoplastics/PEEK", "Nowhere", "/Polymers//"}),
        Any({"R" + std::to_string(number), "PEEK", "", " ", std::string(Up(300), 'n'), "a\tb"}, 8)};
    for (lumo::Attribute const& one : m_attributes) cells.push_back(Up(24) == 0 ? Cell(one) : "");
    return cells;
  }

 private:
  std::size_t Up(std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(m_random);
  }
  /// One of them, the first more often.
  std::string Any(std::vector<std::string> const& texts, std::size_t weight = 1) {
    std::size_t const place = Up(texts.size() - 1 + weight);
    return place < weight ? texts[0] : texts[place - weight == texts.size() ? 0 : place - weight];
  }
  std::string Number() {
    return Any({std::to_string(Up(9999)), "-3.5", "1e3", "0", "1e400", "2,5", "x", "1e-320"}, 4);
  }
  std::string Cell(lumo::Attribute const& one) {
    using Type = lumo::AttributeType;
    std::string const unit =
        Any({"", " " + one.unit, " furlong", " MPa", " g/cm^3", " GPa", " K", " USD/kg"}, 3);
    switch (one.type) {
      case Type::Range:
        return Any({Number() + unit, Number() + ".." + Number() + unit,
                    Number() + " to " + Number(), "> " + Number(), "<" + Number() + unit, ".."});
      case Type::Number: return Any({Number() + unit, "~" + Number(), "1..2"});
      case Type::Integer: return Any({Number(), "12", "2147483647", "2147483648", "-1"});
      case Type::Logical: return Any({"yes", "No", "TRUE", "perhaps"});
      case Type::Date:
        return Any({"2026-02-28", "2026-02-30", "2026-03-17T09:30:00Z", "1.2.2026", "0000-00-00",
                    "2026-03-17T25:00:00"});
      case Type::Discrete:
        return Any({one.words.at(Up(one.words.size() - 1)), "excellent; EXCELLENT",
                    one.words.front() + ";" + one.words.back(), "Fair"});
      default:
        return Any({"text", std::string(Up(400), 'x'), "\x01", "a & b <c>", "J\xC3\xA4ger", "\xFF",
                    "line\r\nline", " blank ", "]]>"});
    }
  }

  std::vector<lumo::Attribute> const& m_attributes;
  std::mt19937 m_random{20260317};
};

TEST_F(ImportTest, PassesNothingThatTheServerRefuses) {
  Start();
  RandomRows random(Materials().Attributes());
  Cells cells = {random.Headings()};
  std::size_t const count = Scaled("LUMO_TEST_IMPORT_ROWS", 400);
  for (std::size_t i = 0; i < count; ++i) cells.push_back(random.Row(i));
  lumo::ImportOptions options = Quick();
  options.keepsGoing = true;
  lumo::Import const import = SheetOf(cells);
  lumo::ImportReport const before = import.Preflight(options);
  lumo::ImportReport const after = import.Run(Journal("random"), options);
  EXPECT_FALSE(after.stopped) << after.stopped->what();
  EXPECT_EQ(FaultsOf(after), FaultsOf(before));
  EXPECT_EQ(after.Count(Kind::Refused), before.Count(Kind::Refused));
  EXPECT_GT(before.Count(Kind::Refused), count / 4);
  EXPECT_GT(after.Count(Kind::Create), count / 40);
  // The same rows once more change nothing.
  lumo::ImportReport const again = import.Preflight(options);
  EXPECT_EQ(again.Count(Kind::Create), 0u);
  for (lumo::RowVerdict const& row : again.rows) {
    if (row.kind != Kind::Change) continue;
    ADD_FAILURE() << row.changes[0].attribute << ": " << row.changes[0].before << " -> "
                  << row.changes[0].after;
  }
  EXPECT_EQ(CountInLog("refused: "), 0u);
}

// ---- values as bytes

TEST_F(ImportTest, KeepsValuesToTheLastBit) {
  Start(sandbox::Content::Full);
  lumo::Units const& units = Materials().Units();
  for (auto const& [path, record] : All()) {
    for (std::size_t i = 0; i < record.Values().size(); ++i) {
      lumo::Value const& value = record.Values()[i];
      EXPECT_TRUE(lumo::Same(lumo::ValueFromBytes(lumo::BytesOf(value)), value)) << path;
      EXPECT_TRUE(lumo::MeansTheSame(value, value, record.Attributes()[i], units)) << path;
    }
  }
  std::string const bytes = lumo::BytesOf(Range{1.0, 2.0, "MPa", true});
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_THROW(lumo::ValueFromBytes(bytes.substr(0, size)), lumo::Error) << size;
  }
  auto const attribute = AttributeNamed("R", lumo::AttributeType::Range, "kg/m^3");
  auto const same = [&](lumo::Value const& a, lumo::Value const& b) {
    return lumo::MeansTheSame(a, b, attribute, SomeUnits());
  };
  EXPECT_TRUE(same(Range{2.7, 2.7, "g/cm^3", false}, Quantity{2700, "kg/m^3", false}));
  EXPECT_FALSE(same(Range{2.7, 2.7, "g/cm^3", false}, Quantity{2700.0001, "kg/m^3", false}));
  EXPECT_FALSE(same(Range{1, 2, "kg/m^3", true}, Range{1, 2, "kg/m^3", false}));
  EXPECT_FALSE(same({}, Range{1, 2, "kg/m^3", false}));
  EXPECT_TRUE(same({}, Range{}));
}

}  // namespace

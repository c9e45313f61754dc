// Imports by the command: sheets as people make them, runs that end early, and undo.

#include <xlsxwriter.h>
#include <zip.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <sstream>

#include "cli/ImportInput.h"
#include "cli/Xlsx.h"
#include "tests/cli/Command.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

using Words = std::vector<std::string>;

class ImportCommand : public CommandTest {
 protected:
  static Words OnMaterials(char const* command, Words const& more) {
    Words words = {command, "ENG_MATERIALS", "Materials"};
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }
  std::string Values(Words names) const {
    names.insert(names.end(), {"-a", "density", "-a", "price", "-f", "csv", "--no-headings"});
    return Run(OnMaterials("get", names)).out;
  }
  /// What is in the table, without identities.
  std::string All() const { return Run(OnMaterials("get", {"-f", "csv"})).out; }

  static std::string Utf16(std::string const& ascii) {
    std::string text = "\xFF\xFE";
    for (char const c : ascii) text += {c, '\0'};
    return text;
  }
  /// Takes the results away from the formulas of a workbook, as programs write it that do not
  /// count.
  static void WithoutResults(std::string const& file) {
    zip_t* const zip = zip_open(file.c_str(), 0, nullptr);
    ASSERT_NE(zip, nullptr);
    constexpr char kPart[] = "xl/worksheets/sheet1.xml";
    std::string text(1'000'000, '\0');
    zip_file_t* const part = zip_fopen(zip, kPart, 0);
    text.resize(static_cast<std::size_t>(zip_fread(part, text.data(), text.size())));
    zip_fclose(part);
    std::size_t const result = text.find("</f><v>") + 4;
    text.erase(result, text.find("</v>", result) + 4 - result);
    zip_file_add(zip, kPart, zip_source_buffer(zip, text.data(), text.size(), 0), ZIP_FL_OVERWRITE);
    ASSERT_EQ(zip_close(zip), 0);
  }
  static std::size_t Scaled(char const* variable, std::size_t usual) {
    char const* const text = std::getenv(variable);
    return text == nullptr ? usual : std::strtoul(text, nullptr, 10);
  }
};

TEST_F(ImportCommand, TakesSheetsAsPeopleMakeThem) {
  Start();
  std::string const german = "Name;Density (g/cm^3);Price;;\r\n1;2,8 - 2,9;1,5;;\r\n\r\n";
  std::string const tabs = "Name\tDensity [g/cm^3]\tPrice\n2\t2.8 to 2.9\t1.5\n";
  std::string const bars = "Name|Density [g/cm^3]|Price\n4|2.8 to 2.9|1.5\n";
  EXPECT_EQ(Run(OnMaterials("import", {File("german.csv", german)})).code, 0);
  EXPECT_EQ(Run(OnMaterials("import", {File("tabs", tabs)})).code, 0);
  std::string third = german;
  third[third.find("\r\n1") + 2] = '3';
  EXPECT_EQ(Run(OnMaterials("import", {File("utf16.csv", Utf16(third))})).code, 0);
  EXPECT_EQ(Run(OnMaterials("import", {"--delimiter", "|", File("bars", bars)})).code, 0);
  for (std::string const name : {"1", "2", "3", "4"}) {
    EXPECT_EQ(Values({name}), "," + name + "," + name + ",2800..2900,1.5\n");
  }
  EXPECT_EQ(cli::Utf8Of("\xFE\xFF\x20\xAC"), "\xE2\x82\xAC");
}

TEST_F(ImportCommand, ReadsSheetsAndWritesOnesToFillIn) {
  Start();
  std::string const file = File("filled.xlsx");
  lxw_workbook* const book = workbook_new(file.c_str());
  lxw_worksheet* const sheet = workbook_add_worksheet(book, nullptr);
  lxw_format* const date = workbook_add_format(book);
  format_set_num_format(date, "d. mmm yyyy");
  lxw_format* const percent = workbook_add_format(book);
  format_set_num_format(percent, "0.0\\\\ %");
  lxw_format* const figure = workbook_add_format(book);
  format_set_num_format(figure, "0.0\"%\"");  // shows a sign that is none
  lxw_col_t column = 0;
  for (char const* const heading : {"Name", "Density [g/cm^3]", "Price", "Recyclable",
                                    "Last reviewed", "Designation", "Elongation"}) {
    worksheet_write_string(sheet, 0, column++, heading, nullptr);
  }
  lxw_datetime day{2026, 3, 17, 0, 0, 0};
  worksheet_write_string(sheet, 2, 0, "X", nullptr);  // the row above is empty
  worksheet_write_string(sheet, 2, 1, "2.8 to 2.9", nullptr);
  worksheet_write_number(sheet, 2, 2, 0.1 + 0.2, nullptr);
  worksheet_write_boolean(sheet, 2, 3, 1, nullptr);
  worksheet_write_datetime(sheet, 2, 4, &day, date);
  worksheet_write_string(sheet, 2, 5, "a & b <c>", nullptr);
  worksheet_write_number(sheet, 2, 6, 0.07, percent);
  worksheet_write_string(sheet, 3, 0, "Y", nullptr);
  worksheet_write_number(sheet, 3, 6, 7, figure);
  worksheet_write_formula(sheet, 3, 2, "=1+1", nullptr);
  ASSERT_EQ(workbook_close(book), LXW_NO_ERROR);
  Outcome const outcome = Run(OnMaterials("import", {file}));
  ASSERT_EQ(outcome.code, 0) << outcome.error;
  EXPECT_EQ(Run(OnMaterials("get", {"X", "-a", "density", "-a", "price", "-a", "recyclable", "-a",
                                    "last reviewed", "-a", "designation", "-a", "elongation", "-f",
                                    "csv", "--no-headings"}))
                .out,
            ",X,X,2800..2900,0.3,yes,2026-03-17,a & b <c>,7\n");
  EXPECT_THAT(Run(OnMaterials("get", {"Y", "-a", "elongation", "-f", "csv"})).out,
              HasSubstr(",Y,Y,7\n"));
  WithoutResults(file);
  EXPECT_THAT(Run(OnMaterials("import", {file})).error,
              HasSubstr("the cell C4 has a formula that was never computed"));

  std::string const name = File("new.xlsx");
  ASSERT_EQ(Run(OnMaterials("template", {"-a", "density", "-a", "recyclable", "-o", name})).code,
            0);
  auto const rows = cli::ReadXlsx(Read(name));
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0], (Words{"Folder", "Name", "Full name", "Density [kg/m^3]", "Recyclable"}));
  EXPECT_THAT(Run(OnMaterials("import", {name})).error, HasSubstr("no rows"));
  std::string const all = Run(OnMaterials("template", {})).out;
  EXPECT_EQ(Run(OnMaterials("import", {File("new.csv", all + ",Y\n")})).code, 0);
}

TEST_F(ImportCommand, KeepsTheMarkOfEstimatedFigures) {
  Start();
  EXPECT_EQ(Run(OnMaterials("import", {File("a.csv", "Name,Density\nA,~1..2\n")})).code, 0);
  Words const get = OnMaterials("get", {"A", "-a", "density", "-f", "xlsx", "-o", File("a.xlsx")});
  ASSERT_EQ(Run(get).code, 0);
  EXPECT_THAT(Run(OnMaterials("import", {File("a.xlsx")})).error, HasSubstr("1 as they are"));
  std::string const head = "Name,Density low [kg/m^3],Density high [kg/m^3],Density estimated\n";
  Words const dry = {"-n", File("b.csv", head + "A,1,2,1\nB,3,4,no\nC,3,4,\n"), "-f", "csv"};
  EXPECT_THAT(Run(OnMaterials("import", dry)).out,
              AllOf(HasSubstr("2,same,"), HasSubstr("B,Density,,3..4 kg/m^3,"),
                    HasSubstr("C,Density,,3..4 kg/m^3,")));
  Outcome const outcome = Run(OnMaterials("import", {File("c.csv", head + "B,1,2,\nA,1,2,so\n")}));
  EXPECT_EQ(outcome.code, 2);
  EXPECT_THAT(outcome.error, HasSubstr("Density estimated: row 3: \"so\" is neither yes nor no"));
}

TEST_F(ImportCommand, GivesRowsWithFaultsBackToBeMended) {
  Start();
  std::string const file = File("new.csv", "Name,Density\nA,1\nB,heavy\nC,\"2\"\nD,9 furlong\n");
  Outcome outcome = Run(OnMaterials("import", {"--keep-going", file}));
  EXPECT_EQ(outcome.code, 5);
  EXPECT_THAT(outcome.error, AllOf(HasSubstr("row 3, Density: \"heavy\" is not a number"),
                                   HasSubstr("2 created, 2 refused"),
                                   HasSubstr("to undo it: lumo import --undo '")));
  std::string faults = Read(file + ".faults.csv");
  EXPECT_THAT(faults, AllOf(HasSubstr("why,Name,Density\n\"Density: \"\"heavy\"\" is not a number\""
                                      ",B,heavy\n"),
                            HasSubstr(",D,9 furlong\n")));
  faults.replace(faults.find("B,heavy"), 7, "B,7");
  faults.replace(faults.find("9 furlong"), 9, "9");
  EXPECT_EQ(Run(OnMaterials("import", {File("mended.csv", faults)})).code, 0);
  EXPECT_EQ(Values({"B", "D"}), ",B,B,7,\n,D,D,9,\n");
}

TEST_F(ImportCommand, TakesLinksAndSubsetsAsGetWritesThem) {
  Start(sandbox::Content::Full);
  Words const get = OnMaterials("get", {"AW-6061-T6", "PEEK", "-a", "density", "-f", "ndjson"});
  Words related = get;
  related.emplace_back("--relations");
  std::string lines = Run(related).out;
  EXPECT_THAT(lines, AllOf(HasSubstr("\"links\":{\"Producers\":[\"Metals/Northern Alloys\""),
                           HasSubstr("\"subsets\":[\"All materials\",\"Metals and alloys\"")));
  EXPECT_THAT(Run(OnMaterials("import", {File("same", lines)})).error,
              HasSubstr("2 as they are; nothing was written"));
  std::string const gone = "\"Metals/Northern Alloys\",";
  lines.erase(lines.find(gone), gone.size());
  Outcome outcome = Run(OnMaterials("import", {File("less", lines), "-f", "csv"}));
  EXPECT_THAT(outcome.out, AllOf(HasSubstr(",links: Producers,Metals/Northern Alloys; Metals/Low"),
                                 HasSubstr(",Metals/Lowland Light Metals,\n")));
  EXPECT_EQ(Run(related).out, lines);
  Words plain = OnMaterials("get", {"PEEK", "--columns", "name", "--relations", "-f", "ndjson"});
  EXPECT_THAT(Run(plain).out, HasSubstr("{\"name\":\"PEEK\",\"links\":{\"Producers\":["));
  plain.back() = "csv";
  EXPECT_THAT(Run(plain).error, HasSubstr("--relations takes -f json or ndjson"));

  std::string const wrong = "{\"name\":\"PEEK\",\"links\":{\"Producers\":null},\"subsets\":[1]}";
  EXPECT_THAT(Run(OnMaterials("import", {File("wrong", wrong)})).error,
              AllOf(HasSubstr("row 1, links: Producers: takes a list of names"),
                    HasSubstr("row 1, subsets: takes a list of names")));
}

TEST_F(ImportCommand, TakesFiguresBackFromOtherUnits) {
  Start(sandbox::Content::Full);
  for (char const* const format : {"csv", "ndjson"}) {
    Outcome const us = Run(OnMaterials("get", {"--unit-system", "US customary", "-f", format}));
    Outcome const outcome = Run(OnMaterials("import", {File("us", us.out), "--dry-run"}));
    EXPECT_THAT(outcome.error, HasSubstr("285 as they are; nothing was written")) << outcome.out;
  }
}

TEST_F(ImportCommand, TakesValuesAwayOnlyWhenItIsTold) {
  Start();
  std::string const before = All();
  std::string const nulls = "{\"name\":\"PEEK\",\"values\":{\"Density\":null,\"Recyclable\":null}}";
  std::string const file = File("nulls.json", nulls);
  Outcome outcome = Run(OnMaterials("import", {file}));
  EXPECT_EQ(outcome.code, 2);
  EXPECT_THAT(outcome.error,
              HasSubstr("row 1, Density: is null, which changes nothing; --clear-nulls takes"));
  std::string const empties =
      R"({"name":"PEEK","values":{"Designation":"","Durability: sea water":[],)"
      R"("Composition":{"columns":["Element"],"rows":[]}}})";
  EXPECT_THAT(Run(OnMaterials("import", {File("empty.json", empties)})).error,
              AllOf(HasSubstr("row 1, Designation: is empty, which changes nothing"),
                    HasSubstr("row 1, Durability: sea water: is empty"),
                    HasSubstr("row 1, Composition: is empty")));
  std::string const both = R"({"name":"PEEK","values":{"Designation":null,"designation":"x"}})";
  EXPECT_THAT(Run(OnMaterials("import", {File("both.json", both), "--clear-nulls"})).error,
              HasSubstr("has two values in this row"));
  std::string const journal = File("nulls.journal");
  outcome = Run(OnMaterials("import", {file, "--clear-nulls", "--journal", journal, "-f", "csv"}));
  EXPECT_EQ(outcome.code, 0) << outcome.error;
  EXPECT_THAT(outcome.out,
              AllOf(HasSubstr(",Density,1300..1320 kg/m^3,,"), HasSubstr(",Recyclable,yes,,")));
  EXPECT_THAT(Values({"PEEK"}), HasSubstr(",,"));
  EXPECT_THAT(Run(OnMaterials("import", {file, "--clear-nulls"})).error,
              HasSubstr("1 as they are; nothing was written"));
  EXPECT_EQ(Run({"import", "--undo", journal}).code, 0);
  EXPECT_EQ(All(), before);
}

TEST_F(ImportCommand, SaysThatASandboxForgets) {
  Start();
  std::string const file = File("new.csv", "Name,Density\nNew,1\n");
  auto const journals = [&] {
    return std::count_if(std::filesystem::directory_iterator(File("")), {},
                         [](auto const& one) { return one.path().extension() == ".journal"; });
  };
  Outcome outcome = Run(OnMaterials("import", {"--sandbox", file}));
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.error,
              AllOf(HasSubstr("1 created"), Not(HasSubstr("to undo it")),
                    HasSubstr("the sandbox's data end with this command; --sandbox-file FILE keeps "
                              "them")));
  EXPECT_EQ(journals(), 0) << "nothing is left to be undone";
  EXPECT_EQ(Run(OnMaterials("get", {"--sandbox", "New"})).code, 2);
  outcome = Run(OnMaterials("import", {"--sandbox-file", File("kept"), file}));
  EXPECT_EQ(outcome.code, 0);
  EXPECT_THAT(outcome.error,
              AllOf(HasSubstr("to undo it: lumo import --undo"), Not(HasSubstr("data end"))));
  EXPECT_EQ(journals(), 1);
  EXPECT_EQ(Run(OnMaterials("get", {"--sandbox-file", File("kept"), "New"})).code, 0);
}

TEST_F(ImportCommand, GoesOnAndGoesBack) {
  Start();
  std::string const before = All();
  std::string file = "Name,Density\nPEEK,1\n304,2\nOak,3\n";
  for (int i = 0; i < 7; ++i) file += "X" + std::to_string(i) + ",1\n";
  std::string const journal = File("run.journal");
  // The second chunk, its first half and the first row of that.
  Plan("SetRecordAttributes stall 0\nSetRecordAttributes fault x3");
  Outcome outcome =
      Run(OnMaterials("import", {"--chunk", "4", "--journal", journal, File("ten.csv", file)}));
  EXPECT_EQ(outcome.code, 5);
  EXPECT_THAT(outcome.error, AllOf(HasSubstr("row 6, Density: "), HasSubstr("4 created, 3 changed"),
                                   HasSubstr("2 not sent"), HasSubstr("to go on: lumo import")));
  outcome = Run({"import", "--resume", journal, "-f", "csv"});
  EXPECT_EQ(outcome.code, 5) << "one row stays refused";
  EXPECT_THAT(outcome.error, HasSubstr("6 created, 3 changed, 1 refused"));
  EXPECT_THAT(outcome.out, HasSubstr("\n2,change,"));
  EXPECT_EQ(Run(OnMaterials("get", {"X1"})).code, 2);
  EXPECT_EQ(Values({"X6"}), ",X6,X6,1,\n");

  outcome = Run({"import", "--undo", journal});
  EXPECT_EQ(outcome.code, 5) << "records stay";
  EXPECT_THAT(outcome.error,
              AllOf(HasSubstr("undo: 3 changed"), HasSubstr("row 5: was made by the import")));
  std::istringstream lines(All());
  std::string after;
  for (std::string line; std::getline(lines, line);) {
    if (line.compare(0, 2, ",X") != 0) after += line + "\n";
  }
  EXPECT_EQ(after, before);
}

TEST_F(ImportCommand, SaysWhatMayBeDone) {
  Start();
  std::string const file = File("one.csv", "Folder,Name\nNew,A\n");
  Words const import =
      OnMaterials("import", {"--make-folders", "--retries", "0", file, "-f", "csv"});
  Plan("SetRecordAttributes stall 0\nSetRecordAttributes status 503");
  Outcome outcome = Run(import);
  EXPECT_EQ(outcome.code, 5) << "the folder is made";
  EXPECT_THAT(outcome.error, AllOf(HasSubstr("new folder: New"), HasSubstr("1 not sent")));
  Plan("SetRecordAttributes reset");
  outcome = Run(OnMaterials("import", {"--retries", "0", File("top.csv", "Name\nB\n")}));
  EXPECT_EQ(outcome.code, 4) << "it was looked up";
  EXPECT_THAT(outcome.error, HasSubstr("1 not sent"));
  Words hasty = import;
  hasty.insert(hasty.end(), {"--timeout", "1"});
  Plan("SetRecordAttributes stall 3");
  outcome = Run(hasty);
  EXPECT_EQ(outcome.code, 5);
  EXPECT_THAT(outcome.error, AllOf(HasSubstr("1 may be done or not"), Not(HasSubstr("not sent"))));
  EXPECT_THAT(outcome.out, HasSubstr("note: was sent, and may have happened or not"));
}

TEST_F(ImportCommand, MakesTheSameTableHoweverOftenItIsKilled) {
  std::size_t const rows = Scaled("LUMO_TEST_KILL_ROWS", 200);
  std::size_t const kills = Scaled("LUMO_TEST_KILLS", 5);
  std::string content = "Folder,Name,Full name,Density,Price\nPolymers/Thermoplastics,PEEK,,7,8\n";
  for (std::size_t i = 0; i < rows; ++i) {
    std::string const number = std::to_string(i);
    content +=
        (i % 2 == 0 ? "New/A,N" : "New/B,N") + number + ",Full " + number + "," + number + ",2\n";
  }
  std::string const file = File("many.csv", content);
  Words const import = OnMaterials(
      "import", {"--make-folders", "--chunk", "20", "--journal", File("journal"), file});
  Start();
  auto const begin = std::chrono::steady_clock::now();
  ASSERT_EQ(Run(import).code, 0);
  auto const time = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - begin);
  std::string const undisturbed = All();
  std::filesystem::remove(File("journal"));

  StartWithLog();
  std::mt19937 random(std::random_device{}());
  Words const resume = {"import", "--resume", File("journal"), "--resend-after", "3"};
  auto const runOnce = [&](std::chrono::microseconds after) {
    bool const hasBegun = std::filesystem::exists(File("journal"));
    Outcome outcome = RunAndKill(hasBegun ? resume : import, after);
    // A journal without a plan is from a run that ended before anything was sent.
    if (outcome.code == 2 && hasBegun) std::filesystem::remove(File("journal"));
    return outcome;
  };
  for (std::size_t i = 0; i < kills; ++i) {
    std::uniform_int_distribution<std::chrono::microseconds::rep> moment(0, time.count());
    runOnce(std::chrono::microseconds(moment(random)));
  }
  Outcome last;
  for (int tries = 0; last.code != 0 && tries < 3; ++tries) last = runOnce(std::chrono::minutes(5));
  EXPECT_EQ(last.code, 0) << last.error;
  EXPECT_EQ(All(), undisturbed);
  std::size_t creates = 0;
  std::string const text = Log();
  for (std::size_t at = 0; (at = text.find("<zbt:create>", at)) != std::string::npos; ++at) {
    ++creates;
  }
  EXPECT_EQ(creates, rows + 3) << "and three folders";
}

}  // namespace

// How names find what they mean: as plain lists, and on a sandbox with its full content.

#include <gmock/gmock.h>

#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Tree.h"
#include "tests/toolkit/Sandbox.h"
#include "tests/toolkit/Support.h"

using lumo::ErrorCode;
using lumo::HintCode;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::vector<std::string> const kNames = {"Density",
                                         "Yield strength (elastic limit)",
                                         "Yield strength against temperature",
                                         "Young's modulus",
                                         "Durability: sea water",
                                         "Price",
                                         "Größe der Körner",
                                         "price",
                                         "Density: source"};

TEST(Names, MeanWhatIsMostAlike) {
  std::pair<char const*, std::size_t> const cases[] = {
      {"Density", 0}, {"density", 0}, {"yield strength (", 1},
      {"young", 3},   {"sea wat", 4}, {"water dur", 4},
      {"Price", 5},   {"price", 7},   {"körn", 6},
      {"modulus", 3}, {"elastic", 1}, {"temperature", 2},
  };
  for (auto const& [name, place] : cases) {
    EXPECT_EQ(lumo::FindName(kNames, name, "attribute"), place) << name;
  }
  EXPECT_EQ(lumo::TryName(kNames, "", "attribute"), std::nullopt);
  EXPECT_EQ(lumo::TryName(kNames, " - ", "attribute"), std::nullopt);
}

TEST(Names, ThatMeanNothingOrTooMuchAreRefusedWithCandidates) {
  lumo::Error const unknown = ErrorOf([] { lumo::FindName(kNames, "Densty", "attribute"); });
  EXPECT_EQ(unknown.Code(), ErrorCode::NotFound);
  EXPECT_STREQ(unknown.what(), "there is no attribute \"Densty\"");
  EXPECT_EQ(unknown.Hint().code, HintCode::DidYouMean);
  EXPECT_THAT(unknown.Hint().arguments, ElementsAre("Density"));
  lumo::Error const list = ErrorOf([] { lumo::FindName(kNames, "density, x,", "attribute"); });
  EXPECT_EQ(list.Hint().code, HintCode::NameEach);
  EXPECT_THAT(list.Hint().arguments, ElementsAre("density", "x"));
  EXPECT_EQ(ErrorOf([] { lumo::FindName(kNames, "x, y", "attribute"); }).Hint().code,
            HintCode::None);
  lumo::Error const several = ErrorOf([] { lumo::FindName(kNames, "yield", "attribute"); });
  EXPECT_EQ(several.Code(), ErrorCode::Ambiguous);
  EXPECT_STREQ(several.what(),
               "\"yield\" may be any of 2 attributes: Yield strength (elastic limit), "
               "Yield strength against temperature");
  EXPECT_EQ(several.Hint().arguments.size(), 2u);
  EXPECT_EQ(ErrorOf([] { lumo::FindName(kNames, "PRICE", "attribute"); }).Code(),
            ErrorCode::Ambiguous);
  lumo::Error const few = ErrorOf([] { lumo::FindName({"SI", "Metric"}, "xyzzy", "unit system"); });
  EXPECT_EQ(few.Hint().code, HintCode::OneOf);
}

TEST(Paths, KeepNamesThatHoldSlashes) {
  std::string path;
  for (char const* const name : {"a/b", "c\\", "", "d"}) path = lumo::PathBelow(path, name);
  EXPECT_EQ(path, "a\\/b/c\\\\//d");
  EXPECT_THAT(lumo::PathParts(path), ElementsAre("a/b", "c\\", "d"));
}

class NamesOnTheSandbox : public SandboxTest {
 protected:
  lumo::RecordHead Find(std::string const& name) {
    return lumo::FindRecord(Link(), Materials(), name);
  }
};

TEST_F(NamesOnTheSandbox, FindDatabasesAndTables) {
  for (char const* const name :
       {"ENG_MATERIALS", "eng_m", "engineering materials", "Engineering"}) {
    EXPECT_EQ(lumo::FindDatabase(Link(), name).key, "ENG_MATERIALS") << name;
  }
  EXPECT_EQ(ErrorOf([&] { lumo::FindDatabase(Link(), "ENG_MATERIAL5"); }).Hint().arguments,
            std::vector<std::string>{"ENG_MATERIALS"});
  EXPECT_EQ(lumo::TableInfo(Link(), "ELEMENTS", "elem").Name(), "Elements");
  EXPECT_EQ(ErrorOf([&] { lumo::TableInfo(Link(), "ENG_MATERIALS", "material"); }).Code(),
            ErrorCode::Ambiguous);
}

TEST_F(NamesOnTheSandbox, FindAttributesWithAllThatIsKnownOfThem) {
  lumo::TableInfo const& table = Materials();
  lumo::Attribute const& curve = table.FindAttribute(Link(), "yield strength ag");
  ASSERT_EQ(curve.parameters.size(), 2u);
  EXPECT_EQ(curve.parameters[0].name + " " + curve.parameters[0].unit, "Temperature degC");
  EXPECT_EQ(curve.parameters[0].interpolation, lumo::Interpolation::Linear);
  EXPECT_TRUE(curve.parameters[1].isDiscrete);
  EXPECT_THAT(curve.parameters[1].words, Contains("T6"));
  lumo::Attribute const& grid = table.FindAttribute(Link(), "Composition");
  ASSERT_EQ(grid.columns.size(), 3u);
  EXPECT_EQ(grid.columns[1].unit, "%");
  lumo::Attribute const& words = table.FindAttribute(Link(), "sea water");
  EXPECT_TRUE(words.isMultiValued);
  EXPECT_THAT(words.words, Contains("Limited use"));
  EXPECT_EQ(&table.FindAttribute(Link(), "Density"), &table.FindAttribute(Link(), "density"));
}

TEST_F(NamesOnTheSandbox, FindSubsetsUnitsAndSystems) {
  lumo::TableInfo const& table = Materials();
  EXPECT_EQ(table.FindSubset(Link(), "struct"), "Structural metals");
  EXPECT_EQ(ErrorOf([&] { table.FindSubset(Link(), "Metalls and alloys"); }).Hint().code,
            HintCode::DidYouMean);
  lumo::Units const& units = table.KnownUnits(Link());
  EXPECT_DOUBLE_EQ(units.Convert(2.7e3, "kg/m^3", "g/cm^3"), 2.7);
  EXPECT_THAT(units.TargetsOf("degC"), ElementsAre("degC", "K", "degF", "degR"));
  lumo::UnitSystem const si = table.SystemOf(Link(), "si", "");
  EXPECT_EQ(si.UnitFor("MPa") + si.UnitFor("degC") + si.UnitFor("HV"), "PaKHV");
  EXPECT_EQ(table.SystemOf(Link(), "US", "usd").UnitFor("EUR/kg"), "USD/lb");
  EXPECT_EQ(table.SystemOf(Link(), "", "USD").UnitFor("EUR/kg"), "USD/kg");
  EXPECT_EQ(ErrorOf([&] { table.SystemOf(Link(), "Imperial", ""); }).Code(), ErrorCode::NotFound);
  EXPECT_EQ(ErrorOf([&] { table.SystemOf(Link(), "", "GBP"); }).Code(), ErrorCode::NotFound);
}

TEST_F(NamesOnTheSandbox, FindRecordsByEveryHandle) {
  lumo::RecordHead const named = Find("aw-6061-t6");
  EXPECT_EQ(named.name, "AW-6061-T6");
  std::string const identity = std::to_string(named.id.identity);
  std::vector<lumo::RecordHead> there = {named};
  lumo::FolderPaths().Fill(Link(), there);
  std::string const guid = GuidOf(named.id);
  for (std::string const& handle :
       {lumo::IdentityText(named.id), "ID:" + identity, identity, guid, HistoryGuidOf(named.id),
        there[0].folder + "/AW-6061-T6", std::string("AW-6061")}) {
    EXPECT_EQ(Find(handle).id.identity, named.id.identity) << handle;
  }
}

TEST_F(NamesOnTheSandbox, TellNoRecordFromSeveral) {
  lumo::Error const several = ErrorOf([&] { Find("AW-"); });
  EXPECT_EQ(several.Code(), ErrorCode::Ambiguous);
  EXPECT_THAT(several.what(), HasSubstr("AW-"));
  EXPECT_THAT(several.Hint().arguments, testing::Each(HasSubstr("-")));
  for (char const* const none :
       {"Unobtainium", "id:999999", "id:x", "id:", "999999", "", "/",
        "00000000-0000-0000-0000-000000000000", "Metals and alloys/Unobtainium"}) {
    EXPECT_EQ(ErrorOf([&] { Find(none); }).Code(), ErrorCode::NotFound) << none;
  }
}

TEST_F(NamesOnTheSandbox, ProposeRecordsThatAreAlike) {
  for (auto const& [typed, meant] : {std::pair{"AW-6061-T7", "AW-6061-T6"},
                                     {"AW-6061T6", "AW-6061-T6"},
                                     {"C46", "C45"},
                                     {"304x", "304"},
                                     {"42CrMo5", "42CrMo4"},
                                     {"S235J\u00e4", "S235JR"}}) {
    lumo::Error const error = ErrorOf([&, name = typed] { Find(name); });
    EXPECT_EQ(error.Code(), ErrorCode::NotFound) << typed;
    EXPECT_EQ(error.Hint().code, HintCode::DidYouMean) << typed;
    EXPECT_THAT(error.Hint().arguments, testing::Contains(meant)) << typed;
  }
}

TEST_F(NamesOnTheSandbox, FindFoldersLevelByLevel) {
  lumo::FolderTree tree(Materials());
  std::size_t const before = Calls();
  lumo::FolderAt const folder = tree.Find(Link(), "metals/ALUM");
  EXPECT_THAT(folder.path, HasSubstr("/Aluminium"));
  EXPECT_LE(Calls() - before, 3u);
  EXPECT_EQ(tree.Find(Link(), "metals/ALUM").id.identity, folder.id.identity);
  EXPECT_LE(Calls() - before, 3u);
  EXPECT_EQ(ErrorOf([&] { tree.Find(Link(), "metals/xyzzy"); }).Code(), ErrorCode::NotFound);
  EXPECT_EQ(tree.Child(Link(), tree.Root(Link()), "metals"), std::nullopt);

  auto const record = lumo::FindIn(Link(), Materials(), folder, "AW-6061-T6");
  ASSERT_TRUE(record);
  EXPECT_EQ(record->folder, folder.path);
  EXPECT_FALSE(lumo::FindIn(Link(), Materials(), tree.Root(Link()), "AW-6061-T6"));
}

TEST_F(NamesOnTheSandbox, WalkTheTreeAsTheFoldersSay) {
  lumo::TreeWalk walk(Link(), Materials(), "", "");
  std::vector<lumo::RecordHead> records;
  for (lumo::TreeWalk::Step step; walk.Next(Link(), step, 100);) {
    if (!step.isFolder) records.push_back(step.record);
  }
  ASSERT_GT(records.size(), 200u);
  std::vector<lumo::RecordHead> filled = records;
  for (lumo::RecordHead& record : filled) record.folder.clear();
  std::size_t const before = Calls();
  lumo::FolderPaths().Fill(Link(), filled);
  EXPECT_LE(Calls() - before, 6u);
  for (std::size_t i = 0; i < records.size(); ++i) {
    ASSERT_EQ(filled[i].folder, records[i].folder) << records[i].name;
  }
}

}  // namespace

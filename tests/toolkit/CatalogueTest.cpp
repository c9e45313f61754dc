// What there is on a server beside values, as programs ask for it, on a sandbox with its full
// content.

#include "lumo/toolkit/Catalogue.h"
#include "lumo/toolkit/Tree.h"
#include "tests/toolkit/Sandbox.h"

using testing::Contains;
using testing::Field;
using testing::HasSubstr;

namespace {

constexpr char kDatabase[] = "ENG_MATERIALS";

class Catalogue : public SandboxTest {
 protected:
  static lumo::Client Server() { return lumo::Client::Connect(Link().Url()); }
  static lumo::Table Table() { return Server().OpenTable(kDatabase, "Materials"); }
};

TEST_F(Catalogue, ListsTablesUnitsAndSystems) {
  EXPECT_THAT(lumo::TablesIn(Server(), "eng"),
              Contains(Field(&lumo::TableEntry::name, "Processes")));
  EXPECT_THAT(lumo::UnitsIn(Server(), kDatabase), Contains(Field(&lumo::UnitEntry::symbol, "MPa")));
  EXPECT_THAT(lumo::ConversionsOf(Server(), kDatabase, "MPa"),
              Contains(Field(&lumo::UnitStep::target, "ksi")));
  EXPECT_THROW(lumo::ConversionsOf(Server(), kDatabase, "mPa"), lumo::Error);
  lumo::UnitSystemEntries const systems = lumo::UnitSystemsIn(Server(), kDatabase);
  EXPECT_THAT(systems.systems, Contains("US customary"));
  EXPECT_THAT(systems.currencies, Contains(Field(&lumo::UnitEntry::symbol, "EUR")));
}

TEST_F(Catalogue, TellsTheEndsOfEveryAttribute) {
  lumo::Table const table = Table();
  auto const extents = lumo::ExtentsOf(table);
  ASSERT_EQ(extents.size(), table.Attributes().size());
  for (std::size_t i = 0; i < extents.size(); ++i) {
    if (table.Attributes()[i].name != "Density") continue;
    EXPECT_EQ(lumo::UnitIn(extents[i].most), "kg/m^3");
    EXPECT_LT(*lumo::NumberIn(extents[i].least), *lumo::NumberIn(extents[i].most));
  }
}

TEST_F(Catalogue, WalksTheTreeAndFollowsLinks) {
  std::size_t folders = 0;
  lumo::WalkTree(Table(), "Metals", "", 1, [&](lumo::TreeEntry const& entry) {
    EXPECT_EQ(entry.depth, 0);
    folders += entry.isFolder ? 1 : 0;
  });
  EXPECT_GT(folders, 5u);
  std::vector<std::string> producers;
  lumo::ReadLinks(Table().All().Named({"304"}), {}, [&](lumo::RecordLink const& link) {
    EXPECT_EQ(link.from.name, "304");
    if (link.group == "Producers") producers.push_back(link.to.name);
  });
  EXPECT_THAT(producers, Contains("Rhine Steel"));
}

TEST_F(Catalogue, FindsNamesakesAndWhereTheyAre) {
  auto const heads = Table().All().Called("304").Below("metals").Heads();
  ASSERT_EQ(heads.size(), 1u);
  EXPECT_THAT(heads[0].folder, HasSubstr("Ferrous"));
  EXPECT_TRUE(Table().All().Called("304").Below("Polymers").Heads().empty());
}

TEST_F(Catalogue, RunsExporters) {
  auto const exporters = lumo::ExportersOf(Table());
  ASSERT_THAT(exporters, Contains(Field(&lumo::ExporterInfo::key, "card-2")));
  auto const some = lumo::ExporterParametersOf(Table(), "card-2", "");
  ASSERT_EQ(some.size(), 1u) << "each once, whatever the number of records";
  EXPECT_EQ(some[0].name, "Temperature");
  auto const parameters = lumo::ExporterParametersOf(Table(), "card-2", "AW-6061-T6");
  ASSERT_EQ(parameters.size(), 1u);
  EXPECT_EQ(parameters[0].name, "Temperature");
  EXPECT_EQ(parameters[0].unit, "degC");
  EXPECT_THAT(parameters[0].words, Contains("100"));
  auto const ids = Table().All().Named({"AW-6061-T6"}).Ids();
  EXPECT_THAT(lumo::RunExporter(Table(), "card-2", ids, {{"Temperature", 100.0, "degC"}}),
              HasSubstr("at 100 degC"));
  try {
    lumo::RunExporter(Table(), "gold", ids, {});
    FAIL() << "there is an exporter of gold";
  } catch (lumo::Error const& error) {
    EXPECT_EQ(error.Code(), lumo::ErrorCode::NotFound);
  }
}

TEST_F(Catalogue, EndsAllCallsByTheTokenOfTheServer) {
  lumo::ConnectOptions options;
  lumo::Client const client = lumo::Client::Connect(Link().Url(), options);
  options.cancel.Cancel();
  try {
    client.Databases();
    FAIL() << "a call was made";
  } catch (lumo::Error const& error) {
    EXPECT_EQ(error.Code(), lumo::ErrorCode::Cancelled);
  }
}

}  // namespace

#include <gmock/gmock.h>

#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(GetTables, SendsKeyFilterAndSelectorsInOrder) {
  auto const request = GetTables::CreateOne();
  EXPECT_EQ(Written(*request), "<brow:dbKey/>");
  request->SetDBKey("K");
  request->SetTableFilter(TableFilters::CoatingsTablesOnly);
  request->SetAttributeSelectors({GetTables::MetaAttributes});
  request->AddAttributeSelector(GetTables::StandardAttributes);
  request->AddAttributeSelector(static_cast<GetTables::eAttributeSelector>(7));
  EXPECT_EQ(Written(*request),
            "<brow:dbKey>K</brow:dbKey><brow:tableFilter>CoatingsTablesOnly</brow:tableFilter>"
            "<brow:attributeSelectors><brow:attributeSelector>MetaAttributes"
            "</brow:attributeSelector><brow:attributeSelector>StandardAttributes"
            "</brow:attributeSelector><brow:attributeSelector/></brow:attributeSelectors>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*request));
}

TEST(GetSubsets, SendsTableAndSubsetsWhenGiven) {
  auto const request = GetSubsets::CreateOne();
  EXPECT_EQ(Written(*request), "");
  request->SetTable(TableReference::CreateOne());
  auto const subset = SubsetReference::CreateOne();
  subset->SetSubsetIdentity(2);
  request->AddSubsetRefernece(subset);
  request->AddSubsetRefernece(nullptr);
  EXPECT_EQ(Written(*request),
            "<brow:table><zbt:dbKey/></brow:table><zbt:subsetReferences><zbt:subset><zbt:dbKey/>"
            "<zbt:subsetIdentity>2</zbt:subsetIdentity></zbt:subset><zbt:subset/>"
            "</zbt:subsetReferences>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*request));
}

TEST(GetDatabasesResponse, ReadsDatabasesInOrder) {
  auto const response = Read<GetDatabasesResponse>(
      "<x><p:databaseDetails><database><dbKey>A</dbKey></database><other/><q:database>"
      "<dbKey>B</dbKey><volumeName>Name</volumeName></q:database></p:databaseDetails></x>");
  ASSERT_THAT(response->AccessDatabases(), SizeIs(2));
  EXPECT_EQ(response->AccessDatabases()[0]->GetDBKey(), "A");
  EXPECT_EQ(response->AccessDatabases()[1]->GetName(), "Name");
}

TEST(GetTablesResponse, ReadsEveryDetail) {
  auto const response = Read<GetTablesResponse>(R"(
    <GetTablesResponse><tableDetails><table>
      <table><tableIdentity>4</tableIdentity></table>
      <attributeReferences><attribute><attributeIdentity>1</attributeIdentity></attribute>
        <attribute><attributeIdentity>2</attributeIdentity></attribute></attributeReferences>
      <standardAttributeReferences><attribute/></standardAttributeReferences>
      <tableFilters><tableFilter>ShapeTablesOnly</tableFilter><tableFilter>Tomorrow</tableFilter>
      </tableFilters>
    </table><table/></tableDetails></GetTablesResponse>)");
  ASSERT_THAT(response->AccessTableDetails(), SizeIs(2));
  auto const& table = *response->AccessTableDetails()[0];
  EXPECT_EQ(table.GetTableReference()->GetTableID(), 4);
  EXPECT_THAT(table.AccessStandardAttributeReferences(), SizeIs(1));
  EXPECT_THAT(table.AccessTableFilters(),
              ElementsAre(TableFilters::ShapeTablesOnly, TableFilters::NoFilter));
  EXPECT_EQ(Written(table),
            "<zbt:table><zbt:tableIdentity>4</zbt:tableIdentity><zbt:dbKey/></zbt:table>"
            "<zbt:attributeReferences><zbt:attribute><zbt:dbKey/><zbt:attributeIdentity>1"
            "</zbt:attributeIdentity></zbt:attribute><zbt:attribute><zbt:dbKey/>"
            "<zbt:attributeIdentity>2</zbt:attributeIdentity></zbt:attribute>"
            "</zbt:attributeReferences>");
  auto const& empty = *response->AccessTableDetails()[1];
  EXPECT_EQ(empty.GetTableReference(), nullptr);
  EXPECT_EQ(Written(empty), "<zbt:attributeReferences/>");
  EXPECT_THAT(Read<GetTablesResponse>("<x/>")->AccessTableDetails(), IsEmpty());
}

TEST(GetSubsetsResponse, ReadsSubsetsWithTheirTables) {
  auto const response = Read<GetSubsetsResponse>(
      "<x><subsetDetails><subsetDetail><name>Edu</name><subset><subsetIdentity>3</subsetIdentity>"
      "</subset><table><tableName>T</tableName></table></subsetDetail></subsetDetails></x>");
  ASSERT_THAT(response->AccessSubsetDetails(), SizeIs(1));
  auto const& subset = *response->AccessSubsetDetails()[0];
  EXPECT_EQ(subset.GetName(), "Edu");
  EXPECT_EQ(subset.GetSubset()->GetSubsetIdentity(), 3);
  EXPECT_EQ(subset.GetTable()->GetTableName(), "T");
}

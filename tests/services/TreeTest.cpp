#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

SmartPtr<RecordReference> RecordOf(std::string const& dbKey) {
  auto record = RecordReference::CreateOne();
  record->SetDBKey(dbKey);
  return record;
}

}  // namespace

TEST(TreeRequests, SendTheirFieldsInOrder) {
  auto const root = GetRootNode::CreateOne();
  EXPECT_EQ(Written(*root), "");
  root->SetTable(TableReference::CreateOne());
  EXPECT_EQ(Written(*root), "<brow:table><zbt:dbKey/></brow:table>");

  auto const children = GetChildNodes::CreateOne();
  EXPECT_EQ(Written(*children),
            "<brow:recurse>false</brow:recurse><brow:recurseMaxDepth>0</brow:recurseMaxDepth>"
            "<brow:populateGUIDs>false</brow:populateGUIDs>");
  children->SetParent(RecordOf("K"));
  children->SetPopulateGUIDs(true);
  children->SetRecurse(true);
  children->SetRecurseMaxDepth(-1);
  children->SetRecordFilter(RecordFilter::CreateOne());
  children->GetRecordFilter()->SetProfileKey("P");
  EXPECT_EQ(Written(*children),
            "<brow:parent><zbt:dbKey>K</zbt:dbKey></brow:parent><brow:recordFilter><zbt:Profile>"
            "<zbt:Key>P</zbt:Key></zbt:Profile></brow:recordFilter><brow:recurse>true"
            "</brow:recurse><brow:recurseMaxDepth>-1</brow:recurseMaxDepth><brow:populateGUIDs>"
            "true</brow:populateGUIDs>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*children));
}

TEST(RecordListRequests, SendTheListEvenWhenEmpty) {
  EXPECT_EQ(Written(*GetTreeRecordsRequest::CreateOne()), "<zbt:recordReferences/>");
  auto const records = GetTreeRecordsRequest::CreateOne();
  records->AddRecord(RecordOf("A"));
  records->AddRecord(nullptr);
  EXPECT_EQ(Written(*records),
            "<zbt:recordReferences><zbt:record><zbt:dbKey>A</zbt:dbKey></zbt:record><zbt:record/>"
            "</zbt:recordReferences>");

  auto const versions = GetRecordVersionsRequest::CreateOne();
  EXPECT_EQ(Written(*versions), "<brow:versions>All</brow:versions><zbt:recordReferences/>");
  versions->SetVersionPolicy(static_cast<VersionPolicies::eVersionPolicy>(4));
  versions->AddRecordReference(RecordOf("A"));
  EXPECT_EQ(Written(*versions),
            "<brow:versions>Unknown</brow:versions><zbt:recordReferences><zbt:record><zbt:dbKey>A"
            "</zbt:dbKey></zbt:record></zbt:recordReferences>");
}

TEST(TreeRecord, ReadsItselfAndWhatIsBelow) {
  auto const response = Read<GetRootNodeResponse>(
      "<r><rootNode color='Red' type='Folder'><shortName>MU</shortName><fullName>Universe"
      "</fullName><recordReference><dbKey>K</dbKey></recordReference><children><treeRecord>"
      "<shortName>Metals</shortName><parentRecordHistoryIdentity>7</parentRecordHistoryIdentity>"
      "<children/></treeRecord><other/><treeRecord/></children></rootNode></r>");
  TreeRecord const& root = *response->GetRootNode();
  EXPECT_EQ(root.GetShortName() + root.GetLongName() + root.GetRecordReference()->GetDBKey(),
            "MUUniverseK");
  EXPECT_EQ(root.GetColor() + root.GetType(), "RedFolder");
  EXPECT_FALSE(root.GetHasChildren());
  ASSERT_THAT(root.AccessChildren(), SizeIs(2));
  TreeRecord const& metals = *root.AccessChildren()[0];
  EXPECT_EQ(metals.GetColor() + metals.GetShortName(), "BlackMetals");
  EXPECT_EQ(metals.GetParentRecordHistoryIdentity(), 7);
  EXPECT_THAT(metals.AccessChildren(), IsEmpty());
  EXPECT_EQ(Read<GetRootNodeResponse>("<r/>")->GetRootNode(), nullptr);
  EXPECT_THROW(Read<TreeRecord>("<t><parentRecordHistoryIdentity/></t>"), std::invalid_argument);
}

TEST(TreeRecord, MayLieDeep) {
  constexpr int kDepth = 200;
  std::string text;
  for (int i = 0; i < kDepth; ++i) text += "<children><treeRecord>";
  for (int i = 0; i < kDepth; ++i) text += "</treeRecord></children>";
  auto record = Read<TreeRecord>("<treeRecord>" + text + "</treeRecord>");
  int depth = 0;
  for (; !record->AccessChildren().empty(); ++depth) record = record->AccessChildren()[0];
  EXPECT_EQ(depth, kDepth);
}

TEST(TreeResponses, ListTheirRecords) {
  std::string const reply =
      "<r><treeRecords><treeRecord><shortName>A</shortName></treeRecord><x/><b:treeRecord/>"
      "</treeRecords></r>";
  EXPECT_THAT(Read<GetTreeRecordsResponse>(reply)->AccessTreeRecords(), SizeIs(2));
  EXPECT_EQ(Read<GetChildNodesResponse>(reply)->AccessTreeRecords().at(0)->GetShortName(), "A");
}

TEST(GetRecordVersionsResponse, ReadsStatesByTheirExactWord) {
  auto const state = [](std::string const& word) {
    return Read<RecordVersionState>("<s><versionState>" + word + "</versionState></s>")
        ->GetVersionState();
  };
  EXPECT_EQ(state("Released"), RecordVersionState::Released);
  EXPECT_EQ(state("Superseded"), RecordVersionState::Superseded);
  EXPECT_EQ(state("Withdrawn"), RecordVersionState::Withdrawn);
  EXPECT_EQ(state("Unreleased"), RecordVersionState::Unreleased);
  EXPECT_EQ(state("Unversioned"), RecordVersionState::Unversioned);
  EXPECT_EQ(state("released"), 5);
  EXPECT_EQ(RecordVersionState::CreateOne()->GetVersionState(), RecordVersionState::Unknown);
  auto const response = Read<GetRecordVersionsResponse>(
      "<r><recordVersionStates><recordVersionState><record><dbKey>K</dbKey></record>"
      "</recordVersionState></recordVersionStates></r>");
  RecordVersionState const& first = *response->AccessRecordVersionStates().at(0);
  EXPECT_EQ(first.GetRecord()->GetDBKey(), "K");
  EXPECT_EQ(first.GetVersionState(), 5);
}

TEST(RevisionInfo, ReadsEveryField) {
  auto const info = Read<RevisionInfo>(
      "<i><modified>2026-01-02T03:04:05</modified><modifiedUser>ann</modifiedUser><created>2025"
      "</created><createdUser>bob</createdUser><updateCount>12</updateCount></i>");
  EXPECT_EQ(
      info->GetModified() + info->GetModifiedUser() + info->GetCreated() + info->GetCreatedUser(),
      "2026-01-02T03:04:05ann2025bob");
  EXPECT_EQ(info->GetUpdateCount(), 12);
  EXPECT_EQ(Read<RevisionInfo>("<i/>")->GetUpdateCount(), 0);
}

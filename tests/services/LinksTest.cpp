#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

SmartPtr<RecordLinkGroupReference> Group4() {
  auto group = RecordLinkGroupReference::CreateOne();
  group->SetRecordLinkGroupIdentity(4);
  return group;
}

std::string const kGroup4 =
    "<zbt:recordLinkGroups><zbt:recordLinkGroup><zbt:dbKey/><zbt:recordLinkGroupIdentity"
    " zbt:recordLinkGroupType=\"Unknown\">4</zbt:recordLinkGroupIdentity></zbt:recordLinkGroup>";

}  // namespace

TEST(GetRecordAttributesRequest, SendsSetFlagsAsTheNumberOne) {
  auto const request = GetRecordAttributesRequest::CreateOne();
  EXPECT_EQ(Written(*request), "<zbt:recordReferences/>");
  request->AddRecordReference(nullptr);
  request->SetIncludeParameterDetails(true);
  EXPECT_EQ(Written(*request),
            "<zbt:recordReferences><zbt:record/></zbt:recordReferences>"
            "<brow:includeParameterDetails>1</brow:includeParameterDetails>");
  request->SetIncludeFullAttributeDetail(true);
  request->SetIncludeEmptyAttributes(true);
  request->SetIncludeMetaAttributes(true);
  EXPECT_EQ(Written(*request),
            "<zbt:recordReferences><zbt:record/></zbt:recordReferences>"
            "<brow:includeMetaAttributes>1</brow:includeMetaAttributes>"
            "<brow:includeEmptyAttributes>1</brow:includeEmptyAttributes>"
            "<brow:includeParameterDetails>1</brow:includeParameterDetails>"
            "<brow:includeFullAttributeDetail>1</brow:includeFullAttributeDetail>");
}

TEST(GetRecordLinkGroups, SendsTheDatabaseOnlyWithAKey) {
  auto const request = GetRecordLinkGroups::CreateOne();
  request->SetStandardNamesOnly(true);
  EXPECT_EQ(Written(*request), "");
  request->SetDBKey("K");
  request->AddRecordLinkGroup(Group4());
  request->AddRecordLinkGroup(nullptr);
  EXPECT_EQ(Written(*request),
            kGroup4 +
                "<zbt:recordLinkGroup/></zbt:recordLinkGroups><brow:database><brow:dbKey>K"
                "</brow:dbKey><brow:standardNamesOnly>true</brow:standardNamesOnly>"
                "</brow:database>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*request));
}

TEST(GetLinkedRecordsRequest, SendsListsWhenFilledAndTheFlagAsANumber) {
  auto const request = GetLinkedRecordsRequest::CreateOne();
  EXPECT_EQ(Written(*request), "<brow:populateGUIDs>0</brow:populateGUIDs>");
  request->AddRecordLinkGroup(nullptr);
  request->SetRecordLinkGroups({Group4()});
  request->AddRecordReference(RecordReference::CreateOne());
  request->SetPopulateGUIDs(true);
  request->SetRecordFilter(RecordFilter::CreateOne());
  EXPECT_EQ(Written(*request),
            kGroup4 +
                "</zbt:recordLinkGroups><zbt:recordReferences><zbt:record><zbt:dbKey/>"
                "</zbt:record></zbt:recordReferences><brow:populateGUIDs>1"
                "</brow:populateGUIDs><brow:recordFilter/>");
}

TEST(RecordAttribute, ReadsEveryField) {
  auto const response = Read<GetRecordAttributesResponse>(
      "<r><recordAttributes><recordAttribute><record><dbKey>K</dbKey></record><attribute><name>N"
      "</name></attribute><hasData>Y</hasData><dataRevisionInfo><createdUser>ann</createdUser>"
      "</dataRevisionInfo><dataCreatedRecordVersion>1</dataCreatedRecordVersion>"
      "<dataRetiredRecordVersion>2</dataRetiredRecordVersion><dataVersionNumber>3"
      "</dataVersionNumber><parameterDetails><parameterDetail><Name>T</Name></parameterDetail>"
      "</parameterDetails></recordAttribute><recordAttribute/></recordAttributes></r>");
  ASSERT_THAT(response->AccessRecordAttributes(), SizeIs(2));
  RecordAttribute const copy(*response->AccessRecordAttributes()[0]);
  EXPECT_EQ(copy.GetRecordReference()->GetDBKey() + copy.GetAttribute()->GetName() +
                copy.GetDataRevisionInfo()->GetCreatedUser() +
                copy.AccessParameterDetails().at(0)->GetName(),
            "KNannT");
  EXPECT_TRUE(copy.GetHasData());
  EXPECT_EQ(copy.GetDataCreatedRecordVersion(), 1);
  EXPECT_EQ(copy.GetDataRetiredRecordVersion(), 2);
  EXPECT_EQ(copy.GetDataVersionNumber(), 3);
  RecordAttribute const& bare = *response->AccessRecordAttributes()[1];
  EXPECT_FALSE(bare.GetHasData());
  EXPECT_EQ(bare.GetDataVersionNumber(), -1);
  EXPECT_EQ(bare.GetDataCreatedRecordVersion() + bare.GetDataRetiredRecordVersion(), -2);
  EXPECT_THROW(Read<RecordAttribute>("<a><hasData/></a>"), std::runtime_error);
}

TEST(RecordLinkGroupDetail, ReadsBothSides) {
  auto const response = Read<GetRecordLinkGroupsResponse>(
      "<r><recordLinkGroupDetails><recordLinkGroup><linkGroupType>static</linkGroupType>"
      "<recordLinkGroup><dbKey>A</dbKey></recordLinkGroup><reverseRecordLinkGroup><dbKey>B</dbKey>"
      "</reverseRecordLinkGroup><reverseName>Made of</reverseName><from><dbKey>C</dbKey></from>"
      "<to><dbKey>D</dbKey></to><name>Producers</name><standardNames><standardName>S1"
      "</standardName><standardName>S2</standardName></standardNames></recordLinkGroup>"
      "</recordLinkGroupDetails></r>");
  RecordLinkGroupDetail const& detail = *response->AccessRecordLinkGroupDetails().at(0);
  EXPECT_EQ(detail.GetLinkGroupType() + detail.GetRecordLinkGroup()->GetDBKey() +
                detail.GetReverseRecordLinkGroup()->GetDBKey() + detail.GetReverseName() +
                detail.GetFromTable()->GetDBKey() + detail.GetToTable()->GetDBKey() +
                detail.GetName(),
            "staticABMade ofCDProducers");
  EXPECT_THAT(detail.AccessStandardNames(), ElementsAre("S1", "S2"));
}

TEST(SourceRecord, TakesEveryElementForAGroup) {
  auto const response = Read<GetLinkedRecordsResponse>(
      "<r><sourceRecords><sourceRecord><record><dbKey>K</dbKey></record><recordLinkGroups>"
      "<recordLinkGroup><name>A</name><linkedRecords><record/><record/></linkedRecords>"
      "</recordLinkGroup>text<dynamicGroup><name>B</name></dynamicGroup></recordLinkGroups>"
      "</sourceRecord><sourceRecord/></sourceRecords></r>");
  ASSERT_THAT(response->AccessSourceRecords(), SizeIs(2));
  SourceRecord const& source = *response->AccessSourceRecords()[0];
  EXPECT_EQ(source.GetRecord()->GetDBKey(), "K");
  ASSERT_THAT(source.AccessRecordLinkGroups(), SizeIs(2));
  EXPECT_THAT(source.AccessRecordLinkGroups()[0]->AccessLinkedRecords(), SizeIs(2));
  EXPECT_EQ(source.AccessRecordLinkGroups()[1]->GetName(), "B");
  EXPECT_THAT(response->AccessSourceRecords()[1]->AccessRecordLinkGroups(), IsEmpty());
}

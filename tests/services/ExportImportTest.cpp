#include <gmock/gmock.h>

#include <string>

#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Pseudo = AttributeReference::PseudoAttrs;

SmartPtr<RecordReference> RecordOf(std::string const& dbKey) {
  auto record = RecordReference::CreateOne();
  record->SetDBKey(dbKey);
  return record;
}

SmartPtr<AttributeReference> AttributeOf(int identity) {
  auto attribute = AttributeReference::CreateOne();
  attribute->SetAttributeID(identity);
  return attribute;
}

std::string const kAttribute3 = "<zbt:dbKey/><zbt:attributeIdentity>3</zbt:attributeIdentity>";

std::string KeyOf(std::string const& dbKey) { return "<zbt:dbKey>" + dbKey + "</zbt:dbKey>"; }

std::string const kEmptyRecord =
    "<zbt:importAttributeValues/><zbt:releaseRecord>1</zbt:releaseRecord><zbt:isFolder>0"
    "</zbt:isFolder>";

}  // namespace

// ---------- values by reference

TEST(GetRecordAttributesByRefRequest, SendsAttributesBeforeRecords) {
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  std::string const end =
      "<exp:populateGUIDs>false</exp:populateGUIDs><exp:useFallback>false</exp:useFallback>"
      "<exp:binaryDataRepresentation>URL</exp:binaryDataRepresentation>";
  EXPECT_EQ(Written(*request), end);
  request->AddRecordReference(RecordOf("R"));
  request->AddAttributeReference(AttributeOf(3));
  request->AddAttributeReference(nullptr);
  std::string const lists =
      "<exp:result xsi:type=\"zbt:LumoAttributeReference\">" + kAttribute3 +
      "</exp:result><exp:result xsi:type=\"zbt:LumoAttributeReference\"/><exp:recordReference>" +
      KeyOf("R") + "</exp:recordReference>";
  EXPECT_EQ(Written(*request), lists + end);
  request->SetUnitConversionContext(UnitConversionContext::CreateOne());
  request->SetFilter(RecordFilter::CreateOne());
  request->SetPopulateGUIDs(true);
  request->SetUseFallback(true);
  request->SetBinaryDataRepresentation(BinaryDataRepresentations::Inline);
  EXPECT_EQ(Written(*request),
            lists +
                "<exp:unitConversionContext/><exp:filter/><exp:populateGUIDs>true"
                "</exp:populateGUIDs><exp:useFallback>true</exp:useFallback>"
                "<exp:binaryDataRepresentation>Inline</exp:binaryDataRepresentation>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*request));
}

TEST(RecordData, KeepsValuesOfKnownTypesAndPropertiesOfTheRecord) {
  auto const response = Read<GetRecordAttributesByRefResponse>(
      "<r><results><recordData><record><dbKey>K</dbKey></record><attributeValues>"
      "<attributeValue><AttributeName>Density</AttributeName><PointDataValue/></attributeValue>"
      "<attributeValue><IntegerDataValue>no name, so never read</IntegerDataValue></attributeValue>"
      "<attributeValue><AttributeName>[recordGUID]</AttributeName><ShortTextDataValue>g1"
      "</ShortTextDataValue></attributeValue>"
      "<attributeValue><AttributeName>[recordGUID]</AttributeName><ShortTextDataValue>g2"
      "</ShortTextDataValue></attributeValue>"
      "<attributeValue><AttributeName>List</AttributeName><ListDataValue/></attributeValue>"
      "<attributeValue><AttributeName>Table</AttributeName><TabularDataValue/></attributeValue>"
      "<attributeValue><AttributeName/><LogicalDataValue>1</LogicalDataValue></attributeValue>"
      "</attributeValues></recordData><recordData/></results></r>");
  ASSERT_THAT(response->AccessRecordData(), SizeIs(2));
  RecordData const& record = *response->AccessRecordData()[0];
  EXPECT_EQ(record.GetRecordReference()->GetDBKey(), "K");
  std::string types;
  for (auto const& value : record.AccessAttributeValues()) types += value->GetDataType() + " ";
  EXPECT_EQ(types, "POIN STXT STXT TABL LOGI ");
  EXPECT_EQ(record.AccessAttributeValues()[3]->GetDataValue(), nullptr);
  EXPECT_EQ(record.AccessPseudoAttribute(Pseudo::RecordGUID), record.AccessAttributeValues()[2]);
  EXPECT_EQ(record.AccessPseudoAttribute(Pseudo::Name), nullptr);
  EXPECT_EQ(record.AccessPseudoAttribute(Pseudo::ParentRecordHistoryGUID), nullptr);
  EXPECT_EQ(record.AccessPseudoAttribute(static_cast<Pseudo::eLumoPseudoAttributeReference>(-1)),
            nullptr);
  RecordData const& bare = *response->AccessRecordData()[1];
  ASSERT_NE(bare.GetRecordReference(), nullptr);
  EXPECT_THAT(bare.AccessAttributeValues(), IsEmpty());
  EXPECT_THAT(Read<GetRecordAttributesByRefResponse>("<r/>")->AccessRecordData(), IsEmpty());
}

// ---------- import

TEST(SetRecordAttributesRequest, SendsTheListEvenWhenEmpty) {
  auto const request = SetRecordAttributesRequest::CreateOne();
  std::string const mode = "<dat:importErrorMode>LogAndContinueWherePossible</dat:importErrorMode>";
  EXPECT_EQ(Written(*request), "<dat:importRecords/>" + mode);
  request->AddImportRecord(ImportRecord::CreateOne());
  request->AddImportRecord(nullptr);
  auto const dropped = ImportRecord::CreateOne();
  dropped->SetImportRecordMode(ImportRecordModes::Unknown);
  request->AddImportRecord(dropped);
  request->SetCommitThreshold(0);
  std::string const records = "<dat:importRecords><zbt:create>" + kEmptyRecord +
                              "<zbt:parentRecord/></zbt:create></dat:importRecords>";
  EXPECT_EQ(Written(*request), records + mode);
  request->SetImportErrorMode(ImportErrorModes::FaultAndRollbackOnAnyError);
  request->SetCommitThreshold(50);
  EXPECT_EQ(Written(*request),
            records +
                "<dat:importErrorMode>FaultAndRollbackOnAnyError</dat:importErrorMode>"
                "<dat:transactionControl zbtCommitThreshold=\"50\"/>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*request));
}

TEST(ImportRecord, SendsItsFieldsInOrder) {
  auto const text = ShortTextDataType::CreateOne();
  text->SetValue("x");
  ImportRecord record(RecordOf("R"), "X", ImportRecordModes::Update, false);
  record.AddImportAttributeValue({new ImportAttributeValue(text, AttributeOf(3))});
  record.AddImportAttributeValue(ImportAttributeValue::CreateOne());
  record.AddImportAttributeValue({new ImportAttributeValue(TabularDataType::CreateOne(), nullptr)});
  std::string const values =
      "<zbt:importAttributeValues><zbt:importAttributeValue><zbt:attribute>" + kAttribute3 +
      "</zbt:attribute><zbt:value><zbt:ShortTextDataValue>x</zbt:ShortTextDataValue></zbt:value>"
      "</zbt:importAttributeValue><zbt:importAttributeValue/><zbt:importAttributeValue><zbt:value>"
      "<zbt:TabularDataImportValue><zbt:Rows/></zbt:TabularDataImportValue></zbt:value>"
      "</zbt:importAttributeValue></zbt:importAttributeValues>";
  EXPECT_EQ(Written(record),
            values +
                "<zbt:releaseRecord>1</zbt:releaseRecord><zbt:recordName>X</zbt:recordName>"
                "<zbt:isFolder>0</zbt:isFolder><zbt:record>" +
                KeyOf("R") + "</zbt:record>");
  record.SetReleaseRecord(false);
  record.SetIsFolder(true);
  record.SetUpdateSubsetsMode(ImportRecord::Replace);
  record.AddSubsetReference(nullptr);
  record.SetImportRecordMode(ImportRecordModes::Copy);
  record.SetCopyParentRecord(RecordOf("P"));
  EXPECT_EQ(Written(record), values +
                                 "<zbt:recordName>X</zbt:recordName><zbt:isFolder>1</zbt:isFolder>"
                                 "<zbt:UpdateSubsetsMode>Replace</zbt:UpdateSubsetsMode>"
                                 "<zbt:subsetReferences><zbt:subset/></zbt:subsetReferences>"
                                 "<zbt:sourceRecord>" +
                                 KeyOf("R") + "</zbt:sourceRecord><zbt:parentRecord>" + KeyOf("P") +
                                 "</zbt:parentRecord>");
  ImportRecord copy;
  copy = record;
  EXPECT_EQ(Written(copy), Written(record));
  ImportRecord odd;
  odd.SetUpdateSubsetsMode(7);
  odd.SetImportRecordMode(static_cast<ImportRecordModes::eImportRecordMode>(9));
  EXPECT_EQ(Written(odd), kEmptyRecord + "<zbt:UpdateSubsetsMode/>");
  odd.SetUpdateSubsetsMode(ImportRecord::Append);
  EXPECT_EQ(Written(odd), kEmptyRecord + "<zbt:UpdateSubsetsMode>Append</zbt:UpdateSubsetsMode>");
}

TEST(SetRecordAttributesResponse, ReadsTheRecordsImported) {
  auto const response = Read<SetRecordAttributesResponse>(
      "<r><recordsImported><record><shortName>A</shortName></record><other/><record/>"
      "</recordsImported></r>");
  ASSERT_THAT(response->AccessRecordsImported(), SizeIs(2));
  EXPECT_EQ(response->AccessRecordsImported()[0]->GetShortName(), "A");
}

// ---------- links

TEST(ModifyRecordLinksRequest, SendsItsElementsEvenWhenNull) {
  auto const request = ModifyRecordLinksRequest::CreateOne();
  std::string const modes =
      "<dat:importErrorMode>FaultAndRollbackOnAnyError</dat:importErrorMode>"
      "<dat:recordLinkCheckMode>CheckOnlyForwardLinks</dat:recordLinkCheckMode>";
  EXPECT_EQ(Written(*request), "<dat:recordLinkGroup/>" + modes + "<dat:recordLinkModifications/>");
  request->SetImportErrorMode("whatever");
  request->SetRecordLinkCheckMode("CheckForwardAndReverseLinks");
  EXPECT_EQ(request->GetImportErrorMode(), "LogAndContinueWherePossible");
  EXPECT_EQ(request->GetRecordLinkCheckMode(), "CheckForwardAndReverseLinks");
  request->SetRecordLinkCheckMode("checkforwardandreverselinks");
  EXPECT_EQ(request->GetRecordLinkCheckMode(), "CheckOnlyForwardLinks");
  request->SetRecordLinkGroupReference(RecordLinkGroupReference::CreateOne());
  request->SetRecordLinkModifications(RecordLinkModifications::CreateOne());
  request->GetRecordLinkGroupReference()->SetRecordLinkGroupIdentity(4);
  EXPECT_EQ(Written(*request).substr(0, 62),
            "<dat:recordLinkGroup><zbt:dbKey/><zbt:recordLinkGroupIdentity ");
  EXPECT_TRUE(WritesOnlyWhenAttached(*request));
}

TEST(RecordLinkModifications, AreGroupedByKindUnlinksFirst) {
  RecordLinkModifications changes;
  auto const combinations = LinkAllCombinations::CreateOne();
  combinations->AddSourceRecord(RecordOf("S"));
  combinations->AddTargetRecord(RecordOf("T"));
  combinations->AddTargetRecord(nullptr);
  changes.AddLinkAllCombinations(combinations);
  auto const link = LinkRecords::CreateOne();
  auto const source = NotatedTargettedSourceRecord::CreateOne();
  source->SetRecord(RecordOf("S"));
  auto const target = NotatedTargetRecord::CreateOne();
  target->SetRecord(RecordOf("T1"));
  target->SetNotes("a");
  source->AddRecord(target);
  source->AddRecord(NotatedTargetRecord::CreateOne());
  link->AddSourceRecord(source);
  changes.AddLinkRecords(link);
  changes.AddLinkRecords(nullptr);
  auto const unlink = UnlinkRecords::CreateOne();
  auto const parted = TargettedSourceRecord::CreateOne();
  parted->AddRecord(RecordOf("T"));
  unlink->AddSourceRecord(parted);
  changes.AddUnlinkRecords(unlink);
  changes.AddUnlinkAllRecords(UnlinkAllRecords::CreateOne());
  EXPECT_EQ(
      Written(changes),
      "<dat:unlinkAllRecords><dat:sourceRecords/></dat:unlinkAllRecords>"
      "<dat:unlinkRecords><dat:sourceRecords><dat:sourceRecord><dat:record/><dat:targetRecords>"
      "<dat:targetRecord>" +
          KeyOf("T") +
          "</dat:targetRecord></dat:targetRecords></dat:sourceRecord></dat:sourceRecords>"
          "</dat:unlinkRecords><dat:linkRecords><dat:sourceRecords><dat:sourceRecord><dat:record>" +
          KeyOf("S") + "</dat:record><dat:targetRecords><dat:targetRecord><dat:record>" +
          KeyOf("T1") +
          "</dat:record><dat:notes>a</dat:notes><dat:reverseNotes/></dat:targetRecord>"
          "<dat:targetRecord><dat:record/><dat:notes/><dat:reverseNotes/></dat:targetRecord>"
          "</dat:targetRecords></dat:sourceRecord></dat:sourceRecords></dat:linkRecords>"
          "<dat:linkAllCombinations><dat:sourceRecords><dat:sourceRecord>" +
          KeyOf("S") +
          "</dat:sourceRecord></dat:sourceRecords><dat:targetRecords>"
          "<dat:targetRecord>" +
          KeyOf("T") +
          "</dat:targetRecord><dat:targetRecord/></dat:targetRecords></dat:linkAllCombinations>");
  LinkPoint point;
  EXPECT_EQ(Written(point), "");
  point.SetRecord(RecordOf("S"));
  EXPECT_EQ(Written(point), KeyOf("S"));
}

TEST(ModifyRecordLinksResponse, ReadsChangesOfBothKinds) {
  auto const response = Read<ModifyRecordLinksResponse>(
      "<r><unlinked><sourceRecord><record><shortName>S</shortName></record><targetRecords>"
      "<targetRecord><shortName>T</shortName></targetRecord><targetRecord/></targetRecords>"
      "</sourceRecord><sourceRecord/></unlinked></r>");
  RecordLinkChanges const& changes = *response->GetRecordLinkChanges();
  EXPECT_THAT(changes.AccessLinked(), IsEmpty());
  ASSERT_THAT(changes.AccessUnlinked(), SizeIs(2));
  NamedTargettedSourceRecord const& source = *changes.AccessUnlinked()[0];
  EXPECT_EQ(source.GetRecord()->GetShortName() + source.AccessTargetRecords().at(0)->GetShortName(),
            "ST");
  EXPECT_EQ(changes.AccessUnlinked()[1]->GetRecord(), nullptr);
}

// ---------- upload addresses

TEST(GetUploadAddresses, AsksAndReads) {
  auto const request = GetUploadAddressesRequest::CreateOne();
  EXPECT_EQ(Written(*request), "<dat:records/><dat:attributes/>");
  request->AddRecord(RecordOf("A"));
  request->AddRecord(nullptr);
  request->AddAttributeReference(AttributeOf(3));
  EXPECT_EQ(Written(*request), "<dat:records><dat:record>" + KeyOf("A") +
                                   "</dat:record><dat:record/></dat:records><dat:attributes>"
                                   "<dat:attribute>" +
                                   kAttribute3 + "</dat:attribute></dat:attributes>");
  auto const response = Read<GetUploadAddressesResponse>(
      "<r><records><record><attributes><attribute><AttributeName>Photo</AttributeName><URL>http:u"
      "</URL></attribute><attribute><url>x</url></attribute></attributes></record><record>"
      "<recordReference><dbKey>K</dbKey></recordReference></record></records></r>");
  ASSERT_THAT(response->AccessRecordsWithAttributeAddresses(), SizeIs(2));
  RecordWithAttributeAddresses const& first = *response->AccessRecordsWithAttributeAddresses()[0];
  EXPECT_EQ(first.GetRecordReference(), nullptr);
  ASSERT_THAT(first.AccessAttributeAddresses(), SizeIs(2));
  EXPECT_EQ(first.AccessAttributeAddresses()[0]->GetAttributeName() +
                first.AccessAttributeAddresses()[0]->GetUrl(),
            "Photohttp:u");
  EXPECT_EQ(first.AccessAttributeAddresses()[1]->GetUrl(), "");
}

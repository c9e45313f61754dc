#include <gmock/gmock.h>

#include <string>

#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::SizeIs;

namespace {

SmartPtr<PartialTableReference> Steels() {
  return PartialTableReference::CreateOneFromTableName("Steels");
}

}  // namespace

// ---------- what holds for every class

template <class T>
class EveryReadClass : public testing::Test {};
using ReadClasses =
    testing::Types<LumoEntityReference, LumoDatabase, PartialTableReference, LumoTableReference,
                   TableReference, RecordReference, SubsetReference, AttributeReference,
                   RecordLinkGroupReference, ParameterReference, UnitConversionContext, NamedRecord,
                   NamedAttribute, NamedSubset, AttributeIdentifier, TableDetail, SubsetDetail,
                   AttributeValue, GetDatabasesResponse, GetTablesResponse, GetSubsetsResponse>;
TYPED_TEST_SUITE(EveryReadClass, ReadClasses);

TYPED_TEST(EveryReadClass, TakesANullNode) {
  EXPECT_EQ(TypeParam::CreateOne(nullptr), nullptr);
  TypeParam const fromNull(static_cast<XmlNode<char> const*>(nullptr));
  auto const empty = Read<TypeParam>("<r>text<unknown/></r>");
  ASSERT_NE(empty, nullptr);
  auto const made = TypeParam::CreateOne();
  *made = fromNull;
  *made = *empty;
}

template <class T>
class EveryWrittenClass : public testing::Test {};
using WrittenClasses =
    testing::Types<LumoEntityReference, PartialTableReference, LumoTableReference, TableReference,
                   RecordReference, SubsetReference, AttributeReference, RecordLinkGroupReference,
                   ParameterReference, UnitConversionContext, NamedAttribute, NamedSubset,
                   RecordFilter, TableDetail, GetTables, GetSubsets>;
TYPED_TEST_SUITE(EveryWrittenClass, WrittenClasses);

TYPED_TEST(EveryWrittenClass, WritesNothingIntoADetachedElement) {
  auto const object = TypeParam::CreateOne();
  object->CreateXMLNode(nullptr);
  auto const document = std::make_unique<XmlDocument<char>>();
  XmlNode<char>* const parent = XMLUtilites::CreateNode("p", "", document.get());
  XmlNode<char>* const detached = XMLUtilites::CreateNode("r", "", document.get());
  parent->append_node(detached);
  object->CreateXMLNode(detached);
  EXPECT_EQ(detached->first_node(), nullptr);
  EXPECT_EQ(detached->first_attribute(), nullptr);
}

// ---------- element forms

TEST(EntityReference, AlwaysSendsItsKey) {
  EXPECT_EQ(Written(*LumoEntityReference::CreateOne()), "<zbt:dbKey/>");
  EXPECT_EQ(Read<LumoDatabase>("<d><x:dbKey>K</x:dbKey><volumeName>N</volumeName></d>")->GetName(),
            "N");
}

TEST(TableReferences, SendEveryIdentifierAndTheKeyLast) {
  auto const table = TableReference::CreateOne();
  EXPECT_EQ(Written(*table), "<zbt:dbKey/>");
  table->SetDBKey("K");
  table->SetTableName("T");
  table->SetTableGUID("G");
  table->SetTableID(-3);
  std::string const identifiers =
      "<zbt:tableIdentity>-3</zbt:tableIdentity><zbt:tableGUID>G</zbt:tableGUID>"
      "<zbt:tableName>T</zbt:tableName>";
  EXPECT_EQ(Written(*table), identifiers + "<zbt:dbKey>K</zbt:dbKey>");
  EXPECT_EQ(Written(static_cast<PartialTableReference const&>(*table)), identifiers);
  EXPECT_EQ(Written(*PartialTableReference::CreateOneFromTableID(4)),
            "<zbt:tableIdentity>4</zbt:tableIdentity>");
  EXPECT_EQ(Written(*PartialTableReference::CreateOneFromTableGUID("g")),
            "<zbt:tableGUID>g</zbt:tableGUID>");
  auto const read = Read<LumoTableReference>(
      "<t><dbKey>K</dbKey><tableName>T</tableName><tableGUID>G</tableGUID>"
      "<tableIdentity>-3</tableIdentity></t>");
  EXPECT_EQ(Written(*read), Written(*table));
  EXPECT_THROW(Read<TableReference>("<t><tableIdentity>x</tableIdentity></t>"),
               std::invalid_argument);
}

TEST(RecordReference, SendsEveryIdentifier) {
  std::string const all =
      "<zbt:dbKey>K</zbt:dbKey><zbt:identity><zbt:recordHistoryIdentity>5"
      "</zbt:recordHistoryIdentity></zbt:identity><zbt:recordGUID>R</zbt:recordGUID>"
      "<zbt:recordHistoryGUID>H</zbt:recordHistoryGUID>";
  auto const record = Read<RecordReference>("<r>" + all + "</r>");
  EXPECT_EQ(record->GetIdentity(), 5);
  EXPECT_EQ(record->GetRecordGUID(), "R");
  EXPECT_EQ(record->GetHistoryGUID(), "H");
  EXPECT_EQ(Written(*record), all);
  record->SetIdentity(0);
  record->SetRecordGUID("");
  EXPECT_EQ(Written(*record),
            "<zbt:dbKey>K</zbt:dbKey><zbt:recordHistoryGUID>H</zbt:recordHistoryGUID>");
}

TEST(SubsetReference, SendsItsNameOnlyWithoutAnIdentity) {
  auto const subset = SubsetReference::CreateOne();
  EXPECT_EQ(Written(*subset), "<zbt:dbKey/><zbt:name><zbt:subsetName/></zbt:name>");
  subset->SetName("Edu");
  subset->SetPartialTableReference(Steels());
  std::string const named =
      "<zbt:dbKey/><zbt:name><zbt:table><zbt:tableName>Steels</zbt:tableName></zbt:table>"
      "<zbt:subsetName>Edu</zbt:subsetName></zbt:name>";
  EXPECT_EQ(Written(*subset), named);
  EXPECT_EQ(Written(*Read<SubsetReference>("<s>" + named + "</s>")), named);
  subset->SetSubsetIdentity(5);
  EXPECT_EQ(Written(*subset), "<zbt:dbKey/><zbt:subsetIdentity>5</zbt:subsetIdentity>");
}

TEST(AttributeReference, ChoosesBetweenIdentityAndName) {
  auto const attribute = AttributeReference::CreateOne();
  EXPECT_EQ(Written(*attribute), "<zbt:dbKey/>");
  attribute->SetName("Density");
  attribute->SetPartialTableReference(Steels());
  EXPECT_EQ(Written(*attribute),
            "<zbt:dbKey/><zbt:name zbt:isStandard=\"false\"><zbt:table>"
            "<zbt:tableName>Steels</zbt:tableName></zbt:table>"
            "<zbt:attributeName>Density</zbt:attributeName></zbt:name>");
  attribute->SetIsStandardName(true);
  EXPECT_EQ(Written(*attribute),
            "<zbt:dbKey/><zbt:name zbt:isStandard=\"true\">"
            "<zbt:attributeName>Density</zbt:attributeName></zbt:name>");
  attribute->SetAttributeID(9);
  EXPECT_EQ(Written(*attribute), "<zbt:dbKey/><zbt:attributeIdentity>9</zbt:attributeIdentity>");

  auto const read = Read<AttributeReference>(
      "<a><dbKey>K</dbKey><attributeIdentity>3</attributeIdentity><name b:isStandard='YES'>"
      "<table><tableIdentity>2</tableIdentity></table><attributeName>D</attributeName>"
      "<pseudo>name</pseudo></name></a>");
  EXPECT_EQ(read->GetAttributeID(), 3);
  EXPECT_EQ(read->GetPartialTableReference()->GetTableID(), 2);
  EXPECT_EQ(read->GetName(), "D");
  EXPECT_TRUE(read->GetIsStandardName());
  EXPECT_FALSE(read->GetIsPseudo());
  EXPECT_THROW(Read<AttributeReference>("<a><name isStandard='perhaps'/></a>"), std::runtime_error);
}

TEST(AttributeReference, BecomesAPseudoAttribute) {
  using Pseudo = AttributeReference::PseudoAttrs;
  auto const attribute = AttributeReference::CreateOne();
  attribute->SetDBKey("K");
  attribute->SetAttributeID(9);
  attribute->SetPartialTableReference(Steels());
  for (int const outside : {21, -1}) {
    attribute->MakePseudoAttribute(static_cast<Pseudo::eLumoPseudoAttributeReference>(outside));
    EXPECT_FALSE(attribute->GetIsPseudo());
  }
  attribute->MakePseudoAttribute(Pseudo::ParentRecordHistoryGUID);
  EXPECT_EQ(attribute->GetAttributeID(), 0);
  EXPECT_EQ(attribute->GetPartialTableReference(), nullptr);
  EXPECT_EQ(Written(*attribute),
            "<zbt:name zbt:isStandard=\"true\"><zbt:pseudo>parentRecordHistoryGUID</zbt:pseudo>"
            "</zbt:name>");
}

TEST(AttributeReference, RecognisesTwentyBracketedNames) {
  std::vector<std::string> const names = {"name",
                                          "shortName",
                                          "subsets",
                                          "releasedDate",
                                          "modifiedDate",
                                          "recordType",
                                          "recordHistoryIdentity",
                                          "recordColor",
                                          "linkedRecords",
                                          "versionState",
                                          "recordGUID",
                                          "recordHistoryGUID",
                                          "recordVersionNumber",
                                          "tableName",
                                          "childRecords",
                                          "tableFilters",
                                          "writable",
                                          "parentName",
                                          "parentShortName",
                                          "parentRecordHistoryIdentity"};
  for (std::size_t i = 0; i < names.size(); ++i) {
    int index = -1;
    EXPECT_TRUE(AttributeReference::IsPseudoAttributeName("[" + names[i] + "]", &index));
    EXPECT_EQ(index, static_cast<int>(i));
    auto const attribute = AttributeReference::CreateOne();
    attribute->MakePseudoAttribute(
        static_cast<AttributeReference::PseudoAttrs::eLumoPseudoAttributeReference>(i));
    EXPECT_EQ(attribute->GetName(), names[i]);
  }
  int index = 77;
  for (std::string const other : {"name", "[Name]", "[parentRecordHistoryGUID]", "[", "[]", ""}) {
    EXPECT_FALSE(AttributeReference::IsPseudoAttributeName(other, &index)) << other;
  }
  EXPECT_EQ(index, 77);
}

TEST(RecordLinkGroupReference, ChoosesBetweenIdentityAndName) {
  auto const group = RecordLinkGroupReference::CreateOne();
  group->SetName("Used by");
  group->SetPartialTableReference(Steels());
  std::string const named =
      "<zbt:dbKey/><zbt:name><zbt:table><zbt:tableName>Steels</zbt:tableName></zbt:table>"
      "<zbt:recordLinkGroupName zbt:isStandard=\"false\">Used by</zbt:recordLinkGroupName>"
      "</zbt:name>";
  EXPECT_EQ(Written(*group), named);
  EXPECT_EQ(Written(*Read<RecordLinkGroupReference>("<g>" + named + "</g>")), named);
  group->SetStandard(true);
  EXPECT_EQ(Written(*group),
            "<zbt:dbKey/><zbt:name><zbt:recordLinkGroupName zbt:isStandard=\"true\">Used by"
            "</zbt:recordLinkGroupName></zbt:name>");
  group->SetRecordLinkGroupIdentity(4);
  group->SetRecordLinkGroupType("crossDatabase");
  std::string const identified =
      "<zbt:dbKey/><zbt:recordLinkGroupIdentity zbt:recordLinkGroupType=\"crossDatabase\">4"
      "</zbt:recordLinkGroupIdentity>";
  EXPECT_EQ(Written(*group), identified);
  EXPECT_EQ(Written(*Read<RecordLinkGroupReference>("<g>" + identified + "</g>")), identified);
}

TEST(ParameterReference, ChoosesBetweenIdentityAndName) {
  auto const parameter =
      Read<ParameterReference>("<p><name>Time</name><parameterIdentity>6</parameterIdentity></p>");
  EXPECT_EQ(Written(*parameter), "<zbt:dbKey/><zbt:parameterIdentity>6</zbt:parameterIdentity>");
  parameter->SetID(0);
  EXPECT_EQ(Written(*parameter), "<zbt:dbKey/><zbt:name>Time</zbt:name>");
  parameter->SetName("");
  EXPECT_EQ(Written(*parameter), "<zbt:dbKey/>");
}

TEST(UnitConversionContext, SendsWhatWasSet) {
  auto const context = UnitConversionContext::CreateOne();
  EXPECT_EQ(Written(*context), "");
  EXPECT_FALSE(Read<UnitConversionContext>("<c/>")->GetAbsoluteUnitsSet());
  context->SetCurrency("EUR");
  context->SetAbsoluteUnits(false);
  std::string const xml =
      "<zbt:currency>EUR</zbt:currency><zbt:absoluteUnits>false</zbt:absoluteUnits>";
  EXPECT_EQ(Written(*context), xml);
  EXPECT_EQ(Written(*Read<UnitConversionContext>("<c>" + xml + "</c>")), xml);
}

TEST(NamedThings, ReadAndWriteTheirForms) {
  auto const record = Read<NamedRecord>(
      "<r><shortName>S</shortName><fullName>L</fullName><recordReference><dbKey>K</dbKey>"
      "</recordReference></r>");
  EXPECT_EQ(record->GetShortName() + record->GetLongName(), "SL");
  EXPECT_EQ(record->GetRecordReference()->GetDBKey(), "K");

  auto const attribute = Read<NamedAttribute>(
      "<a><name>meta</name><isMeta>1</isMeta><about><name>main</name><about><name>top</name>"
      "</about></about></a>");
  EXPECT_TRUE(attribute->GetIsMeta());
  EXPECT_EQ(attribute->GetAbout()->GetAbout()->GetName(), "top");
  EXPECT_EQ(Written(*attribute), "<zbt:attribute/><zbt:name>meta</zbt:name>");
  attribute->SetAttribute(AttributeReference::CreateOne());
  EXPECT_EQ(Written(*attribute),
            "<zbt:attribute><zbt:dbKey/></zbt:attribute><zbt:name>meta</zbt:name>");

  auto const subset = Read<NamedSubset>(
      "<s><name>own</name><subset><dbKey>K</dbKey><name><table><tableName>Steels</tableName>"
      "</table><subsetName>other</subsetName></name></subset></s>");
  EXPECT_EQ(Written(*subset),
            "<zbt:dbKey>K</zbt:dbKey><zbt:name><zbt:table><zbt:tableName>Steels</zbt:tableName>"
            "</zbt:table><zbt:subsetName>own</zbt:subsetName></zbt:name>");
  subset->SetSubset(nullptr);
  EXPECT_EQ(Written(*subset),
            "<zbt:name><zbt:table/><zbt:subsetName>own</zbt:subsetName></zbt:name>");

  auto const identifier = Read<AttributeIdentifier>(
      "<i><AttributeName>A</AttributeName><attributeName>no</attributeName>"
      "<AttributeIdentity>3</AttributeIdentity><StandardAttributeName>S</StandardAttributeName></"
      "i>");
  EXPECT_EQ(identifier->GetAttributeName() + identifier->GetStandardAttributeName(), "AS");
  EXPECT_EQ(identifier->GetAttributeID(), 3);
}

TEST(RecordFilter, NeedsExactlyOneOfProfileAndSubsets) {
  auto const filter = RecordFilter::CreateOne();
  EXPECT_EQ(Written(*filter), "");
  filter->SetProfileKey("P");
  EXPECT_EQ(Written(*filter), "<zbt:Profile><zbt:Key>P</zbt:Key></zbt:Profile>");
  auto const subset = SubsetReference::CreateOne();
  subset->SetSubsetIdentity(1);
  filter->AddSubsetReference(subset);
  filter->AddSubsetReference(nullptr);
  EXPECT_EQ(Written(*filter), "");
  filter->SetProfileKey("");
  EXPECT_EQ(Written(*filter),
            "<zbt:subsetReferences><zbt:subset><zbt:dbKey/><zbt:subsetIdentity>1"
            "</zbt:subsetIdentity></zbt:subset><zbt:subset/></zbt:subsetReferences>");
}

TEST(Assignment, CopiesFieldsAndSharesPointers) {
  auto const from = Read<SubsetDetail>(
      "<s><name>N</name><subset><dbKey>K</dbKey></subset><table><dbKey>T</dbKey></table></s>");
  auto const to = SubsetDetail::CreateOne();
  *to = *from;
  EXPECT_EQ(to->GetName(), "N");
  EXPECT_EQ(to->GetSubset(), from->GetSubset());
  EXPECT_EQ(to->GetTable(), from->GetTable());
}

#include <gmock/gmock.h>

#include <functional>
#include <ostream>
#include <regex>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/Xml.h"

namespace {

SmartPtr<PartialTableReference> Steels() {
  return PartialTableReference::CreateOneFromTableName("Steels");
}

template <class T, class = void>
struct CanWrite : std::false_type {};
template <class T>
struct CanWrite<T, std::void_t<decltype(&T::CreateXMLNode)>> : std::true_type {};

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

TYPED_TEST(EveryReadClass, IsADefaultObjectWithoutANodeOrInAForeignElement) {
  EXPECT_EQ(TypeParam::CreateOne(nullptr), nullptr);
  TypeParam const fromNull(static_cast<XmlNode<char> const*>(nullptr));
  auto const foreign = Read<TypeParam>("<r dbKey='K'>text<unknown><dbKey>K</dbKey></unknown></r>");
  ASSERT_NE(foreign, nullptr);
  auto const assigned = TypeParam::CreateOne();
  *assigned = fromNull;
  if constexpr (CanWrite<TypeParam>::value) {
    std::string const nothingSet = Written(*TypeParam::CreateOne());
    EXPECT_EQ(Written(fromNull), nothingSet);
    EXPECT_EQ(Written(*foreign), nothingSet);
    EXPECT_EQ(Written(*assigned), nothingSet);
  }
}

/// A class by an element form of its own.
struct Form {
  std::string name;
  std::string xml;
  /// Reads the text, assigns the object to another one and writes that one.
  std::function<std::string(std::string const&)> passOn;
  std::function<bool(std::string const&)> writesOnlyWhenAttached;
};

void PrintTo(Form const& form, std::ostream* out) { *out << form.xml; }

template <class T>
Form FormOf(std::string const& name, std::string const& xml) {
  auto const passOn = [](std::string const& text) {
    auto const copy = T::CreateOne();
    *copy = *Read<T>(text);
    return Written(*copy);
  };
  return {name, xml, passOn,
          [](std::string const& text) { return WritesOnlyWhenAttached(*Read<T>(text)); }};
}

std::vector<Form> Forms() {
  std::string const key = "<zbt:dbKey>K</zbt:dbKey>";
  std::string const table =
      "<zbt:tableIdentity>-3</zbt:tableIdentity><zbt:tableGUID>G</zbt:tableGUID>"
      "<zbt:tableName>T &amp; U</zbt:tableName>";
  std::string const qualified = "<zbt:table>" + table + "</zbt:table>";
  std::string const attribute = key + "<zbt:name zbt:isStandard=\"false\">" + qualified +
                                "<zbt:attributeName>Density</zbt:attributeName></zbt:name>";
  return {
      FormOf<LumoEntityReference>("Entity", key),
      FormOf<PartialTableReference>("PartialTable", table),
      FormOf<LumoTableReference>("LumoTable", table + key),
      FormOf<TableReference>("Table", table + key),
      FormOf<RecordReference>(
          "Record", key + "<zbt:identity><zbt:recordHistoryIdentity>5</zbt:recordHistoryIdentity>"
                          "</zbt:identity><zbt:recordGUID>R</zbt:recordGUID>"
                          "<zbt:recordHistoryGUID>H</zbt:recordHistoryGUID>"),
      FormOf<SubsetReference>("NamedSubset", key + "<zbt:name>" + qualified +
                                                 "<zbt:subsetName>Edu</zbt:subsetName></zbt:name>"),
      FormOf<SubsetReference>("Subset", key + "<zbt:subsetIdentity>5</zbt:subsetIdentity>"),
      FormOf<AttributeReference>("OwnNamedAttribute", attribute),
      FormOf<AttributeReference>("StandardAttribute",
                                 key + "<zbt:name zbt:isStandard=\"true\">"
                                       "<zbt:attributeName>D</zbt:attributeName></zbt:name>"),
      FormOf<AttributeReference>("Attribute",
                                 key + "<zbt:attributeIdentity>9</zbt:attributeIdentity>"),
      FormOf<RecordLinkGroupReference>(
          "NamedLinkGroup", key + "<zbt:name>" + qualified +
                                "<zbt:recordLinkGroupName zbt:isStandard=\"false\">Used by"
                                "</zbt:recordLinkGroupName></zbt:name>"),
      FormOf<RecordLinkGroupReference>(
          "StandardLinkGroup", key + "<zbt:name><zbt:recordLinkGroupName zbt:isStandard=\"true\">U"
                                     "</zbt:recordLinkGroupName></zbt:name>"),
      FormOf<RecordLinkGroupReference>("LinkGroup",
                                       key + "<zbt:recordLinkGroupIdentity zbt:recordLinkGroupType="
                                             "\"crossDatabase\">4</zbt:recordLinkGroupIdentity>"),
      FormOf<ParameterReference>("Parameter",
                                 key + "<zbt:parameterIdentity>6</zbt:parameterIdentity>"),
      FormOf<ParameterReference>("NamedParameter", key + "<zbt:name>Time</zbt:name>"),
      FormOf<UnitConversionContext>(
          "Units",
          "<zbt:unitSystem>Metric</zbt:unitSystem><zbt:currency>EUR</zbt:currency>"
          "<zbt:absoluteUnits>false</zbt:absoluteUnits>"),
      FormOf<NamedAttribute>("AttributeWithName", "<zbt:attribute>" + attribute +
                                                      "</zbt:attribute><zbt:name>own</zbt:name>"),
      FormOf<TableDetail>("TableDetail",
                          "<zbt:table>" + table + key + "</zbt:table><zbt:attributeReferences>" +
                              "<zbt:attribute>" + attribute + "</zbt:attribute><zbt:attribute>" +
                              key + "</zbt:attribute></zbt:attributeReferences>"),
  };
}

class ElementForm : public testing::TestWithParam<Form> {};

TEST_P(ElementForm, IsReadWithAnyPrefixAssignedAndWrittenAlike) {
  Form const& form = GetParam();
  for (std::string const prefix : {"zbt:", "", "b:"}) {
    std::string const xml = std::regex_replace(form.xml, std::regex("zbt:"), prefix);
    EXPECT_EQ(form.passOn("<r>" + xml + "</r>"), form.xml);
  }
  EXPECT_TRUE(form.writesOnlyWhenAttached("<r>" + form.xml + "</r>"));
}

INSTANTIATE_TEST_SUITE_P(All, ElementForm, testing::ValuesIn(Forms()),
                         [](auto const& row) { return row.param.name; });

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

TEST(RecordReference, SendsOnlyIdentifiersThatAreSet) {
  auto const record = RecordReference::CreateOne();
  EXPECT_EQ(Written(*record), "<zbt:dbKey/>");
  record->SetHistoryGUID("H");
  EXPECT_EQ(Written(*record), "<zbt:dbKey/><zbt:recordHistoryGUID>H</zbt:recordHistoryGUID>");
  record->SetRecordGUID("R");
  EXPECT_EQ(Written(*record),
            "<zbt:dbKey/><zbt:recordGUID>R</zbt:recordGUID>"
            "<zbt:recordHistoryGUID>H</zbt:recordHistoryGUID>");
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
  // The declared type is the type on the wire: no key of the table.
  subset->SetPartialTableReference(
      Read<TableReference>("<t><tableName>Steels</tableName><dbKey>elsewhere</dbKey></t>"));
  EXPECT_EQ(Written(*subset), named);
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
    EXPECT_FALSE(attribute->GetIsPseudo() || attribute->GetIsStandardName());
    EXPECT_TRUE(attribute->GetAttributeID() == 9 && attribute->GetPartialTableReference());
  }
  attribute->MakePseudoAttribute(Pseudo::ParentRecordHistoryGUID);
  EXPECT_EQ(attribute->GetAttributeID(), 0);
  EXPECT_EQ(attribute->GetPartialTableReference(), nullptr);
  auto const copy = AttributeReference::CreateOne();
  *copy = *attribute;
  copy->SetAttributeID(4);  // which a pseudo-attribute does not send
  EXPECT_EQ(Written(*copy),
            "<zbt:name zbt:isStandard=\"true\"><zbt:pseudo>parentRecordHistoryGUID</zbt:pseudo>"
            "</zbt:name>");
}

TEST(AttributeReference, RecognisesTwentyBracketedNames) {
  std::istringstream list(
      "name shortName subsets releasedDate modifiedDate recordType recordHistoryIdentity "
      "recordColor linkedRecords versionState recordGUID recordHistoryGUID recordVersionNumber "
      "tableName childRecords tableFilters writable parentName parentShortName "
      "parentRecordHistoryIdentity");
  int count = 0;
  for (std::string name; list >> name; ++count) {
    int index = -1;
    EXPECT_TRUE(AttributeReference::IsPseudoAttributeName("[" + name + "]", &index));
    EXPECT_EQ(index, count);
    auto const attribute = AttributeReference::CreateOne();
    attribute->MakePseudoAttribute(
        static_cast<AttributeReference::PseudoAttrs::eLumoPseudoAttributeReference>(count));
    EXPECT_EQ(attribute->GetName(), name);
  }
  EXPECT_EQ(count, 20);
  EXPECT_TRUE(AttributeReference::IsPseudoAttributeName("[name]", nullptr));
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
  group->SetRecordLinkGroupType("Static");
  EXPECT_EQ(group->GetRecordLinkGroupType(), "Unknown");
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
  EXPECT_EQ(Written(*context),
            "<zbt:currency>EUR</zbt:currency><zbt:absoluteUnits>false</zbt:absoluteUnits>");
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
  EXPECT_TRUE(WritesOnlyWhenAttached(*subset));
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
  EXPECT_TRUE(WritesOnlyWhenAttached(*filter));
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

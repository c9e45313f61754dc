#include <gmock/gmock.h>

#include <cstring>
#include <functional>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/Xml.h"

namespace {

SmartPtr<PartialTableReference> Steels() {
  return PartialTableReference::CreateOneFromTableName("Steels");
}

/// One element form of a class, written here without prefixes.
struct Form {
  std::string name;
  std::string xml;
  /// Reads the text, assigns the object to another one, gives what that one writes when attached.
  std::function<std::string(std::string const&)> passOn;
};

void PrintTo(Form const& form, std::ostream* out) { *out << form.xml; }

template <class T>
Form FormOf(std::string const& name, std::string const& xml) {
  return {name, xml, [](std::string const& text) {
            auto const copy = T::CreateOne();
            *copy = *Read<T>(text);
            EXPECT_TRUE(WritesOnlyWhenAttached(*copy));
            return Written(*copy);
          }};
}

std::vector<Form> Forms() {
  std::string const key = "<dbKey>K</dbKey>";
  std::string const table =
      "<tableIdentity>-3</tableIdentity><tableGUID>G</tableGUID><tableName>T&amp;U</tableName>";
  std::string const name = key + "<name><table>" + table + "</table>";
  std::string const attribute = key + "<name isStandard=\"false\"><table>" + table +
                                "</table><attributeName>D</attributeName></name>";
  return {
      FormOf<LumoEntityReference>("Entity", key),
      FormOf<PartialTableReference>("PartialTable", table),
      FormOf<LumoTableReference>("LumoTable", table + key),
      FormOf<TableReference>("Table", table + key),
      FormOf<RecordReference>(
          "Record", key + "<identity><recordHistoryIdentity>5</recordHistoryIdentity></identity>"
                          "<recordGUID>R</recordGUID><recordHistoryGUID>H</recordHistoryGUID>"),
      FormOf<SubsetReference>("NamedSubset", name + "<subsetName>Edu</subsetName></name>"),
      FormOf<SubsetReference>("Subset", key + "<subsetIdentity>5</subsetIdentity>"),
      FormOf<AttributeReference>("OwnAttribute", attribute),
      FormOf<AttributeReference>(
          "StandardAttribute",
          key + "<name isStandard=\"true\"><attributeName>D</attributeName></name>"),
      FormOf<AttributeReference>("Attribute", key + "<attributeIdentity>9</attributeIdentity>"),
      FormOf<RecordLinkGroupReference>(
          "OwnLinkGroup",
          name + "<recordLinkGroupName isStandard=\"false\">U</recordLinkGroupName></name>"),
      FormOf<RecordLinkGroupReference>(
          "StandardLinkGroup",
          key + "<name><recordLinkGroupName isStandard=\"true\">U</recordLinkGroupName></name>"),
      FormOf<RecordLinkGroupReference>(
          "LinkGroup", key + "<recordLinkGroupIdentity recordLinkGroupType=\"crossDatabase\">4"
                             "</recordLinkGroupIdentity>"),
      FormOf<ParameterReference>("Parameter", key + "<parameterIdentity>6</parameterIdentity>"),
      FormOf<ParameterReference>("NamedParameter", key + "<name>Time</name>"),
      FormOf<UnitConversionContext>("Units",
                                    "<unitSystem>M</unitSystem><currency>EUR</currency>"
                                    "<absoluteUnits>false</absoluteUnits>"),
      FormOf<NamedAttribute>("NamedAttribute",
                             "<attribute>" + attribute + "</attribute><name>own</name>"),
      FormOf<TableDetail>("TableDetail", "<table>" + table + key +
                                             "</table><attributeReferences><attribute>" +
                                             attribute + "</attribute><attribute>" + key +
                                             "</attribute></attributeReferences>"),
  };
}

class ElementForm : public testing::TestWithParam<Form> {};

}  // namespace

TEST_P(ElementForm, IsReadWithAnyPrefixAssignedAndWrittenAlike) {
  Form const& form = GetParam();
  auto const prefixed = [&form](std::string const& prefix) {
    std::string text;
    for (char const c : form.xml) {
      bool const nameStarts = !text.empty() && std::strchr("</ ", text.back()) != nullptr;
      if (nameStarts && c >= 'a' && c <= 'z') text += prefix;
      text += c;
    }
    return text;
  };
  for (std::string const prefix : {"", "zbt:", "b:"}) {
    EXPECT_EQ(form.passOn("<r>" + prefixed(prefix) + "</r>"), prefixed("zbt:"));
  }
}

INSTANTIATE_TEST_SUITE_P(All, ElementForm, testing::ValuesIn(Forms()),
                         [](auto const& row) { return row.param.name; });

// ---------- element forms

TEST(TableReferences, AreMadeFromOneIdentifierAndReadInAnyOrder) {
  EXPECT_EQ(Written(*TableReference::CreateOne()), "<zbt:dbKey/>");
  EXPECT_EQ(Written(*PartialTableReference::CreateOneFromTableID(4)),
            "<zbt:tableIdentity>4</zbt:tableIdentity>");
  EXPECT_EQ(Written(*PartialTableReference::CreateOneFromTableGUID("g")),
            "<zbt:tableGUID>g</zbt:tableGUID>");
  EXPECT_EQ(Written(*Steels()), "<zbt:tableName>Steels</zbt:tableName>");
  EXPECT_EQ(Written(*Read<LumoTableReference>(
                "<t><dbKey>K</dbKey><tableName>T</tableName><tableGUID>G</tableGUID>"
                "<tableIdentity>3</tableIdentity></t>")),
            "<zbt:tableIdentity>3</zbt:tableIdentity><zbt:tableGUID>G</zbt:tableGUID>"
            "<zbt:tableName>T</zbt:tableName><zbt:dbKey>K</zbt:dbKey>");
  EXPECT_THROW(Read<TableReference>("<t><tableIdentity>x</tableIdentity></t>"),
               std::invalid_argument);
}

TEST(RecordReference, SendsOnlyIdentifiersThatAreSet) {
  auto const record = RecordReference::CreateOne();
  EXPECT_EQ(Written(*record), "<zbt:dbKey/>");
  record->SetHistoryGUID("H");
  EXPECT_EQ(Written(*record), "<zbt:dbKey/><zbt:recordHistoryGUID>H</zbt:recordHistoryGUID>");
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
  EXPECT_EQ(Written(*group),
            "<zbt:dbKey/><zbt:name><zbt:table><zbt:tableName>Steels</zbt:tableName></zbt:table>"
            "<zbt:recordLinkGroupName zbt:isStandard=\"false\">Used by</zbt:recordLinkGroupName>"
            "</zbt:name>");
  group->SetStandard(true);
  EXPECT_EQ(Written(*group),
            "<zbt:dbKey/><zbt:name><zbt:recordLinkGroupName zbt:isStandard=\"true\">Used by"
            "</zbt:recordLinkGroupName></zbt:name>");
  group->SetRecordLinkGroupIdentity(4);
  group->SetRecordLinkGroupType("crossDatabase");
  EXPECT_EQ(Written(*group),
            "<zbt:dbKey/><zbt:recordLinkGroupIdentity zbt:recordLinkGroupType=\"crossDatabase\">4"
            "</zbt:recordLinkGroupIdentity>");
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
      "<AttributeIdentity>3</AttributeIdentity>"
      "<StandardAttributeName>S</StandardAttributeName></i>");
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

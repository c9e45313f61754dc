#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>

#include "tests/support/Xml.h"

using testing::ThrowsMessage;

namespace {

/// The smallest value: the common attributes and nothing else.
class TinyValue : public lumo::FromXml<TinyValue, IDataValue> {
 public:
  TinyValue() = default;
  explicit TinyValue(XmlNode<char> const* node) { LoadCommonAttributes(node); }
  void CreateXMLNode(XmlNode<char>* /*node*/) const override {}
  std::string GetNodeName() const override { return "IntegerDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::INTEGER_TYPE_STRING; }
};

/// A type whose elements never hold a value.
class NeverValue : public TinyValue {
 public:
  static SmartPtr<IDataValue> CreateOne(XmlNode<char> const* /*node*/) { return nullptr; }
};

}  // namespace

TEST(Factories, EnterAndLeaveTheTable) {
  {
    TypedDataValueFactory<TinyValue> factory("TINY");
    EXPECT_EQ(DataValueFactoryNew::s_factories.at("TINY"), &factory);
    EXPECT_EQ(factory.GetTypeCode(), "TINY");
    EXPECT_EQ(factory.CreateInstance(nullptr), nullptr);
  }
  EXPECT_EQ(DataValueFactoryNew::s_factories.count("TINY"), 0U);
}

TEST(AttributeValue, KnowsFourteenElements) {
  std::map<std::string, std::string> const expected = {
      {"IntegerDataValue", "INPT"},
      {"RangeDataValue", "RNGE"},
      {"PointDataValue", "POIN"},
      {"TabularDataValue", "TABL"},
      {"LogicalDataValue", "LOGI"},
      {"ShortTextDataValue", "STXT"},
      {"LongTextDataValue", "LTXT"},
      {"HyperlinkDataValue", "HLNK"},
      {"DiscreteDataValue", "DISC"},
      {"DateDataValue", "DTTM"},
      {"FileDataValue", "FILE"},
      {"PictureDataValue", "PICT"},
      {"FloatFunctionalSeriesDataValue", "FLOAT_FUNCTIONAL_SERIES"},
      {"FloatFunctionalGriddedDataValue", "FLOAT_FUNCTIONAL_GRIDDED"}};
  EXPECT_TRUE(std::equal(expected.begin(), expected.end(), AttributeValue::AccessRegistry().begin(),
                         AttributeValue::AccessRegistry().end()));
}

TEST(AttributeValue, TakesTheFirstValueThatCanBeBuilt) {
  TypedDataValueFactory<NeverValue> const never("LOGI");
  TypedDataValueFactory<TinyValue> const tiny("INPT");
  auto const value = Read<AttributeValue>(
      "<v><AttributeName>A</AttributeName><z:LogicalDataValue/>"
      "<z:IntegerDataValue dataVersionNumber='4'/><IntegerDataValue dataVersionNumber='5'/></v>");
  EXPECT_EQ(value->GetAttributeName(), "A");
  EXPECT_EQ(value->GetDataType(), "INPT");
  ASSERT_NE(value->GetDataValue(), nullptr);
  EXPECT_EQ(value->GetDataValue()->GetDataVersionNumber(), 4);
  EXPECT_EQ(value->GetDataValue()->GetImportNodeName(), "IntegerDataValue");

  auto const copy = AttributeValue::CreateOne();
  *copy = *value;
  EXPECT_EQ(copy->GetDataValue(), value->GetDataValue());
  copy->SetDataValue(nullptr);
  EXPECT_EQ(copy->GetDataType(), "INPT");
}

TEST(AttributeValue, MarksWhatItCannotBuild) {
  TypedDataValueFactory<NeverValue> const never("LOGI");
  for (std::string const element : {"ListDataValue", "LinkedRecordsDataValue", "Empty", "Other"}) {
    auto const value = Read<AttributeValue>("<v>text<" + element + "/></v>");
    EXPECT_EQ(value->GetDataType(), "UNSUPPORTED DATA TYPE");
    EXPECT_EQ(value->GetDataValue(), nullptr);
  }
  EXPECT_EQ(Read<AttributeValue>("<v><LogicalDataValue/></v>")->GetDataType(), "LOGI");
  EXPECT_EQ(Read<AttributeValue>("<v><RangeDataValue/></v>")->GetDataType(), "RNGE");
}

TEST(CommonAttributes, AreReadWhenPresent) {
  auto const plain = Read<TinyValue>("<v/>");
  EXPECT_EQ(plain->GetDataVersionNumber(), -1);
  EXPECT_FALSE(plain->GetHasDataVersionNumber() || plain->GetIsNotApplicable() ||
               plain->GetIsFallback());
  auto const full =
      Read<TinyValue>("<v isNotApplicable='YES' dataVersionNumber='-1' isFallback='t'/>");
  EXPECT_EQ(full->GetDataVersionNumber(), -1);
  EXPECT_TRUE(full->GetHasDataVersionNumber() && full->GetIsNotApplicable() &&
              full->GetIsFallback());
  full->LoadCommonAttributes(nullptr);
  EXPECT_TRUE(full->GetIsNotApplicable());
}

TEST(CommonAttributes, ThatDoNotConvertThrowOutOfTheWholeReading) {
  TypedDataValueFactory<TinyValue> const tiny("INPT");
  auto const reading = [](std::string const& attribute) {
    return [attribute] { Read<AttributeValue>("<v><IntegerDataValue " + attribute + "/></v>"); };
  };
  EXPECT_THAT(reading("isNotApplicable='maybe'"),
              ThrowsMessage<std::runtime_error>("boolean value not parseable"));
  EXPECT_THAT(reading("isFallback=''"),
              ThrowsMessage<std::runtime_error>("boolean value not parseable"));
  EXPECT_THAT(reading("dataVersionNumber='one'"), ThrowsMessage<std::invalid_argument>("stoi"));
  EXPECT_THAT(reading("dataVersionNumber='2147483648'"), ThrowsMessage<std::out_of_range>("stoi"));
}

TEST(AttributeTypes, HaveTheirCodes) {
  using Types = AttributeTypes;  // those that are in no registry
  EXPECT_EQ(Types::FLOAT_FUNCTIONAL_TYPE_STRING + Types::LIST_TYPE_STRING +
                Types::EMPTY_TYPE_STRING + Types::LINK_TYPE_STRING,
            "FUNCLISTEMPTLINK");
  EXPECT_EQ(Types::DISCRETE_FUNCTIONAL_TYPE_STRING + Types::MATHS_FUNCTIONAL_TYPE_STRING,
            "DSFNMAFN");
}

#include <gmock/gmock.h>

#include <map>
#include <memory>
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

/// A factory in the place of the library's own, which comes back afterwards.
template <class T>
class StandIn {
 public:
  explicit StandIn(std::string const& typeCode)
      : m_original(DataValueFactoryNew::s_factories.at(typeCode)),
        m_factory(new Factory(typeCode)) {}
  ~StandIn() {
    std::string const typeCode = m_factory->GetTypeCode();
    m_factory.reset();
    DataValueFactoryNew::s_factories[typeCode] = m_original;
  }

 private:
  using Factory = TypedDataValueFactory<T>;
  DataValueFactoryNew* m_original;
  std::unique_ptr<Factory> m_factory;
};

std::map<std::string, std::string> Sorted(lumo::NameRegistry const& registry) {
  return {registry.begin(), registry.end()};
}

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
  EXPECT_EQ(Sorted(AttributeValue::AccessRegistry()), expected);
}

TEST(ShortNames, StandForTypesInCellsAndLists) {
  std::map<std::string, std::string> expected = {
      {"Logical", "LOGI"}, {"ShortText", "STXT"}, {"Integer", "INPT"},   {"Range", "RNGE"},
      {"Point", "POIN"},   {"LongText", "LTXT"},  {"Hyperlink", "HLNK"}, {"Discrete", "DISC"},
      {"Date", "DTTM"},    {"List", "LIST"},      {"Picture", "PICT"},   {"Empty", "EMPT"},
      {"File", "FILE"}};
  EXPECT_EQ(Sorted(TabularDataCell::AccessRegistry()), expected);
  expected.erase("List");
  expected.erase("Empty");
  EXPECT_EQ(Sorted(ListDataType::AccessRegistry()), expected);
}

TEST(Lifecycle, MakesAndDestroysFactoriesAndRegistries) {
  EXPECT_EQ(DataValueFactoryNew::s_factories.size(), 16U);
  auto* const factory = RangeDataType::s_factory;
  kpxtkLumoServiceLayer::Initialize();  // a second time changes nothing
  EXPECT_EQ(RangeDataType::s_factory, factory);
  EXPECT_EQ(DataValueFactoryNew::s_factories.at("RNGE"), factory);
  EXPECT_EQ(DataValueFactoryNew::s_factories.at("EMPT")->CreateInstance(nullptr)->GetTypeString(),
            "EMPT");
  std::make_unique<TypedDataValueFactory<TinyValue>>("RNGE").reset();
  kpxtkLumoServiceLayer::Initialize();  // gives the place of a factory that died back
  EXPECT_EQ(DataValueFactoryNew::s_factories.at("RNGE"), factory);
  TypedDataValueFactory<TinyValue> const alive("RNGE");
  kpxtkLumoServiceLayer::Initialize();
  EXPECT_EQ(DataValueFactoryNew::s_factories.at("RNGE"), &alive);
  kpxtkLumoServiceLayer::Shutdown();
  kpxtkLumoServiceLayer::Shutdown();
  EXPECT_TRUE(DataValueFactoryNew::s_factories.empty());
  EXPECT_EQ(EmptyDataType::s_factory, nullptr);
  EXPECT_TRUE(AttributeValue::AccessRegistry().empty());
  EXPECT_TRUE(TabularDataCell::AccessRegistry().empty() && ListDataType::AccessRegistry().empty());
  EXPECT_EQ(Read<AttributeValue>("<v><LogicalDataValue>1</LogicalDataValue></v>")->GetDataType(),
            "UNSUPPORTED DATA TYPE");
  kpxtkLumoServiceLayer::Initialize();
}

TEST(AttributeValue, TakesTheFirstValueThatCanBeBuilt) {
  StandIn<NeverValue> const never("LOGI");
  StandIn<TinyValue> const tiny("INPT");
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
  StandIn<NeverValue> const never("LOGI");
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
  StandIn<TinyValue> const tiny("INPT");
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

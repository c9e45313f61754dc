#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::ThrowsMessage;

namespace {

std::uint64_t BitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

}  // namespace

TEST(RangeDataType, KeepsTheSignallingNanBitForBit) {
  std::uint64_t const expected = BitsOf(std::numeric_limits<double>::signaling_NaN());
  auto const range = Read<RangeDataType>("<r><LowValue>nAn</LowValue></r>");
  RangeDataType copy;
  copy = *range;
  EXPECT_EQ(BitsOf(copy.GetLow()), expected);
  EXPECT_EQ(BitsOf(copy.GetHigh()), expected);
  EXPECT_FALSE(copy.GetLowSet() || copy.GetHighSet());
}

TEST(RangeDataType, MarksBoundsAsSetByTheirValue) {
  RangeDataType range;
  range.SetLow(-1);
  range.SetHigh(std::numeric_limits<double>::infinity());
  EXPECT_TRUE(range.GetLowSet() && range.GetHighSet());
  range.SetLow(std::nan(""));
  EXPECT_FALSE(range.GetLowSet());
  EXPECT_TRUE(std::isnan(range.GetLow()));
  range.SetHighSet(false);
  EXPECT_EQ(range.GetHigh(), std::numeric_limits<double>::infinity());
  EXPECT_EQ(WrittenElement(range),
            "<r zbt:isNotApplicable=\"false\"><zbt:Estimated>false</zbt:Estimated>"
            "<zbt:UnitSymbol/><zbt:LowValue>NaN</zbt:LowValue><zbt:HighValue>NaN</zbt:HighValue>"
            "</r>");
  // A text that only begins like the mark of a missing bound is converted.
  EXPECT_TRUE(Read<RangeDataType>("<r><LowValue>NaN(1)</LowValue></r>")->GetLowSet());
}

TEST(Numbers, ThatDoNotConvertThrow) {
  EXPECT_THAT([] { Read<IntegerDataType>("<r>twelve</r>"); },
              ThrowsMessage<std::invalid_argument>("stoi"));
  EXPECT_THAT([] { Read<IntegerDataType>("<r/>"); }, ThrowsMessage<std::invalid_argument>("stoi"));
  EXPECT_THAT([] { Read<LogicalDataType>("<r> true</r>"); },
              ThrowsMessage<std::runtime_error>("boolean value not parseable"));
  EXPECT_THAT([] { Read<RangeDataType>("<r><HighValue>-</HighValue></r>"); },
              ThrowsMessage<std::invalid_argument>("stod"));
  EXPECT_THAT([] { Read<PointDataType>("<r><Point><Value>1e999</Value></Point></r>"); },
              ThrowsMessage<std::out_of_range>("stod"));
  EXPECT_THAT([] { Read<DiscreteDataType>("<r><Discrete order='first'>a</Discrete></r>"); },
              ThrowsMessage<std::invalid_argument>("stoi"));
}

TEST(CommonAttributes, AreReadByScalarsOnly) {
  std::string const element = "<r dataVersionNumber='3' isNotApplicable='y' isFallback='1'/>";
  auto const text = Read<ShortTextDataType>(element);
  EXPECT_TRUE(text->GetIsNotApplicable() && text->GetIsFallback());
  EXPECT_EQ(Read<RangeDataType>(element)->GetDataVersionNumber(), 3);
  EXPECT_TRUE(Read<LinkedRecordsDataType>(element)->GetIsFallback());
  EXPECT_EQ(Read<FileDataType>(element)->GetDataVersionNumber(), -1);
  EXPECT_FALSE(Read<FloatFunctionalSeriesDataType>(element)->GetIsNotApplicable());
  EXPECT_FALSE(Read<ListDataType>(element)->GetHasDataVersionNumber());
}

TEST(ParameterValue, TakesItsTypeFromWhatItIsGiven) {
  auto const numeric =
      Read<ParameterValue>("<v xmlns:i='i' i:type='a:NumericParameterValue'><Value>20</Value></v>");
  EXPECT_EQ(numeric->GetType(), ParameterValue::Numeric);
  EXPECT_EQ(numeric->GetValue_Numeric(), 20);
  auto const discrete = Read<ParameterValue>("<v><Value>20</Value></v>");
  EXPECT_EQ(discrete->TypeAsString() + discrete->GetValue_Discrete(), "Discrete20");

  ParameterValue value;
  value.SetValue_Numeric(2);
  value.SetValue_Discrete("T6");
  EXPECT_EQ(WrittenElement(value),
            "<r xsi:type=\"zbt:DiscreteParameterValue\"><zbt:Value>T6</zbt:Value></r>");
  value.SetType("Numeric");
  EXPECT_EQ(Written(value).find("T6"), std::string::npos);
  EXPECT_THAT([&] { value.SetType("numeric"); },
              ThrowsMessage<std::runtime_error>(
                  "unknown parameter value type valid types are Numeric and Discrete"));
  EXPECT_EQ(value.TypeAsString(), "Numeric");
}

TEST(PointDataType, NeverHasNullParts) {
  auto const point = Read<PointDataType>("<r><Point/></r>");
  ASSERT_THAT(point->AccessPoints(), SizeIs(1));
  EXPECT_THAT(point->AccessPoints()[0]->GetValueParameters()->AccessParameterWithValue(),
              IsEmpty());
  ASSERT_NE(point->GetParameters(), nullptr);
  EXPECT_NE(ParameterReferenceAndValue().GetParameter(), nullptr);
  EXPECT_NE(ParameterReferenceAndValue().GetParameterValue(), nullptr);
  point->SetParameters(nullptr);
  point->AddPoint(nullptr);
  point->AccessPoints()[0]->SetValueParameters(nullptr);
  EXPECT_EQ(WrittenElement(*point),
            "<r zbt:isNotApplicable=\"false\"><zbt:Estimated>false</zbt:Estimated>"
            "<zbt:UnitSymbol/><zbt:Point><zbt:Value>0.00000000000000000e+00</zbt:Value></zbt:Point>"
            "<zbt:Point/></r>");
}

TEST(BinaryDataType, DecodesOnRequest) {
  FileDataType file;
  file.SetData({0, 255, 16});
  EXPECT_EQ(file.GetEncodedData(), "AP8Q");
  EXPECT_THAT(file.GetData(), ElementsAre(0, 255, 16));
  file.SetEncodedData("no Base64!");
  EXPECT_THROW(file.GetData(), std::runtime_error);
  EXPECT_EQ(file.GetEncodedData(), "no Base64!");
  EXPECT_THAT(FileDataType().GetData(), IsEmpty());
}

TEST(ListDataType, KeepsOneEntryPerItem) {
  auto const list = Read<ListDataType>(
      "<r><listItem><b:Integer>5</b:Integer><Logical>true</Logical></listItem><listItem/><listItem>"
      "<Unheard/></listItem><listItem><List/></listItem><other/><listItem><Date>d</Date></listItem>"
      "</r>");
  ASSERT_THAT(list->AccessItems(), SizeIs(5));
  EXPECT_EQ(dynamic_cast<IntegerDataType&>(*list->AccessItems()[0]).GetValue(), 5);
  EXPECT_EQ(list->AccessItems()[1], nullptr);
  EXPECT_EQ(list->AccessItems()[2], nullptr);
  EXPECT_EQ(list->AccessItems()[3], nullptr);
  EXPECT_EQ(list->AccessItems()[4]->GetTypeString(), "DTTM");
}

TEST(LinkedRecordsDataType, ReadsGroupsOfReferences) {
  auto const links = Read<LinkedRecordsDataType>(
      "<r><b:recordLinkGroup><b:name>Producers</b:name><b:linkedRecords><b:record><b:dbKey>K"
      "</b:dbKey></b:record></b:linkedRecords><b:tableFilters><b:tableFilter>ProducersTablesOnly"
      "</b:tableFilter><b:tableFilter>?</b:tableFilter></b:tableFilters><b:standardNames>"
      "<b:standardName>S</b:standardName></b:standardNames></b:recordLinkGroup><recordLinkGroup/>"
      "</r>");
  ASSERT_THAT(links->AccessRecordLinkGroups(), SizeIs(2));
  RecordLinkGroup const& group = *links->AccessRecordLinkGroups()[0];
  EXPECT_EQ(group.GetName(), "Producers");
  EXPECT_EQ(group.AccessLinkedRecords().at(0)->GetDBKey(), "K");
  EXPECT_THAT(group.AccessTableFilters(),
              ElementsAre(TableFilters::ProducersTablesOnly, TableFilters::NoFilter));
  EXPECT_THAT(group.AccessStandardNames(), ElementsAre("S"));
}

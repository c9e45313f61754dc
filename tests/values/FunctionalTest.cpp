#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/support/Xml.h"

using testing::SizeIs;
using testing::ThrowsMessage;

TEST(XYData, SkipsDataOfOtherTypes) {
  auto const data = Read<XYData>(
      "<d><XYPoint i:type='b:XYRange'><UpperY>3</UpperY><LowerY>1</LowerY></XYPoint><XYPoint"
      " i:type='b:XYPointOfSomeKind'><Y>2</Y></XYPoint><XYPoint><Y>9</Y></XYPoint><XYPoint"
      " i:type='b:Other'/></d>");
  ASSERT_THAT(data->AccessPoints(), SizeIs(2));
  auto const& range = dynamic_cast<XYRange&>(*data->AccessPoints()[0]);
  EXPECT_EQ(range.GetLowerY(), 1);
  EXPECT_EQ(range.GetUpperY(), 3);
  EXPECT_EQ(range.GetX(), nullptr);
  EXPECT_EQ(dynamic_cast<XYPoint&>(*data->AccessPoints()[1]).GetY(), 2);
  EXPECT_EQ(data->GetType(), XYDatum::XYRange);
  EXPECT_EQ(XYData::GetTypeAsString(data->GetType()) +
                XYData::GetTypeAsString(data->AccessPoints()[1]->GetType()),
            "XYRangeXYPoint");
  EXPECT_EQ(XYData::GetTypeAsString(XYData().GetType()), "Unknown");
  EXPECT_EQ(WrittenElement(range),
            "<r xsi:type=\"zbt:XYRange\"><zbt:Estimated>false</zbt:Estimated><zbt:LowerY>"
            "1.00000000000000000e+00</zbt:LowerY><zbt:UpperY>3.00000000000000000e+00</zbt:UpperY>"
            "</r>");
}

TEST(FloatFunctionalValues, SkipValuesOfOtherTypes) {
  auto const values = Read<FloatFunctionalValues>(
      "<v><Value type='Other'/><Value type='b:FloatFunctionalPointValue'><Value>4</Value></Value>"
      "<Value/></v>");
  ASSERT_THAT(values->AccessValues(), SizeIs(1));
  EXPECT_EQ(values->GetType(), FloatFunctionalValue::Point);
  EXPECT_NE(values->AccessValues()[0]->GetConstraints(), nullptr);
  EXPECT_EQ(FloatFunctionalValues().GetType(), FloatFunctionalValue::None);
  EXPECT_EQ(FloatFunctionalRangeValue().GetType(), FloatFunctionalValue::Range);
  values->AddValue(nullptr);
  EXPECT_EQ(Written(*values).substr(Written(*values).size() - 12), "<zbt:Value/>");
}

TEST(FloatFunctionalData, ThrowsForAnEstimateThatIsNoBoolean) {
  EXPECT_THAT([] { Read<XYPoint>("<p><Estimated>maybe</Estimated></p>"); },
              ThrowsMessage<std::runtime_error>("boolean value not parseable"));
  EXPECT_THAT([] { Read<FloatFunctionalPointValue>("<p><Estimated/></p>"); },
              ThrowsMessage<std::runtime_error>("boolean value not parseable"));
  EXPECT_THAT([] { Read<FloatFunctionalSeriesGraph>("<g HideGraph='2'/>"); },
              ThrowsMessage<std::runtime_error>("boolean value not parseable"));
}

TEST(FloatFunctionalData, IsWrittenWithoutItsNullableParts) {
  std::string const head = "<zbt:Parameters/><zbt:Unit><zbt:UnitName/><zbt:UnitSymbol/></zbt:Unit>";
  FloatFunctionalSeriesDataType series;
  EXPECT_EQ(WrittenElement(series), "<r zbt:isNotApplicable=\"false\">" + head + "</r>");
  series.SetGraph(FloatFunctionalSeriesGraph::CreateOne());
  series.GetGraph()->AddSeries(Series::CreateOne());
  series.GetGraph()->AccessSeries()[0]->SetDecoration(GraphDecoration::Unknown);
  series.SetUnit(nullptr);
  EXPECT_EQ(WrittenElement(series),
            "<r zbt:isNotApplicable=\"false\"><zbt:Parameters/><zbt:Graph zbt:HideGraph=\"false\""
            " zbt:LogarithmicYAxis=\"false\"><zbt:Series zbt:decoration=\"Markers\">"
            "<zbt:Constraints/><zbt:XYPoints/></zbt:Series></zbt:Graph></r>");

  auto const gridded = Read<FloatFunctionalGriddedDataType>("<g b:decoration='Dots'/>");
  EXPECT_EQ(gridded->GetDecoration(), GraphDecoration::Unknown);
  EXPECT_EQ(WrittenElement(*gridded),
            "<r zbt:isNotApplicable=\"false\" zbt:decoration=\"Markers\">" + head + "</r>");
  EXPECT_EQ(FloatFunctionalGriddedDataType().GetDecoration(), GraphDecoration::Lines);
}

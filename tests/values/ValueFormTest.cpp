// Each value class from a full element of a reply, through assignment, to what an import sends.

#include <gmock/gmock.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/Xml.h"

namespace {

enum class Forms { Agree, Differ };

struct Row {
  std::string type;   ///< code and element name, as "STXT ShortTextDataValue"
  std::string reply;  ///< the element as a server sends it
  std::string import;
  Forms forms;
  std::function<std::string(std::string const&)> passOn;
  SmartPtr<IDataValue> example;
};

void PrintTo(Row const& row, std::ostream* out) { *out << row.type; }

template <class T>
Row RowOf(std::string const& type, std::string const& reply, std::string const& import,
          Forms forms = Forms::Agree) {
  auto const passOn = [](std::string const& text) {
    auto const copy = T::CreateOne();
    *copy = *Read<T>(text);
    return WrittenElement(*copy);
  };
  return {type, reply, import, forms, passOn, T::CreateOne()};
}

std::string const kTemperature =
    "<zbt:ParameterReference><zbt:dbKey>K</zbt:dbKey><zbt:parameterIdentity>3"
    "</zbt:parameterIdentity></zbt:ParameterReference><zbt:Name>Temperature</zbt:Name><zbt:Unit>"
    "<zbt:UnitName>kelvin</zbt:UnitName><zbt:UnitSymbol>K</zbt:UnitSymbol></zbt:Unit>";
std::string const kAt20 =
    "<zbt:Parameter><zbt:dbKey>K</zbt:dbKey><zbt:parameterIdentity>3</zbt:parameterIdentity>"
    "</zbt:Parameter><zbt:ParameterValue xsi:type=\"zbt:NumericParameterValue\"><zbt:Value>"
    "2.00000000000000000e+01</zbt:Value></zbt:ParameterValue>";
std::string const kAnnealed =
    "<zbt:Parameter><zbt:dbKey/><zbt:name>Condition</zbt:name></zbt:Parameter><zbt:ParameterValue"
    " xsi:type=\"zbt:DiscreteParameterValue\"><zbt:Value>annealed</zbt:Value>"
    "</zbt:ParameterValue>";
std::string const kUnitHead =
    "<zbt:Parameters><zbt:Parameter>" + kTemperature +
    "</zbt:Parameter><zbt:Parameter><zbt:Name/><zbt:Unit><zbt:UnitName/><zbt:UnitSymbol/>"
    "</zbt:Unit></zbt:Parameter></zbt:Parameters><zbt:Unit><zbt:UnitName>megapascal"
    "</zbt:UnitName><zbt:UnitSymbol>MPa</zbt:UnitSymbol></zbt:Unit>";
std::string const kConstraints = "<zbt:Constraints><zbt:Constraint>" + kAnnealed +
                                 "<zbt:Label>as annealed</zbt:Label></zbt:Constraint>"
                                 "</zbt:Constraints>";
std::string const kX =
    "<zbt:X xsi:type=\"zbt:NumericParameterValue\"><zbt:Value>2.50000000000000000e+01"
    "</zbt:Value></zbt:X><zbt:Estimated>true</zbt:Estimated>";

/// An import form that is also a reply, with a prefix and order of attributes of its own.
std::string AsReply(std::string text) {
  for (std::size_t at = 0; (at = text.find("zbt:", at)) != std::string::npos;) {
    text.replace(at, 4, "b:");
  }
  return text;
}

std::vector<Row> Rows() {
  std::string const point =
      "<r zbt:isNotApplicable=\"false\"><zbt:Estimated>true</zbt:Estimated><zbt:UnitSymbol>GPa"
      "</zbt:UnitSymbol><zbt:Parameters><zbt:Parameter>" +
      kTemperature +
      "</zbt:Parameter></zbt:Parameters><zbt:Point><zbt:Value>2.10500000000000000e+02</zbt:Value>"
      "<zbt:ValueParameters><zbt:ParameterWithValue>" +
      kAt20 + "</zbt:ParameterWithValue><zbt:ParameterWithValue>" + kAnnealed +
      "</zbt:ParameterWithValue></zbt:ValueParameters></zbt:Point><zbt:Point><zbt:Value>"
      "-1.00000000000000006e-01</zbt:Value><zbt:ValueParameters/></zbt:Point></r>";
  std::string const series =
      "<r zbt:isNotApplicable=\"false\">" + kUnitHead +
      "<zbt:Graph zbt:HideGraph=\"true\" zbt:LogarithmicYAxis=\"false\"><zbt:Series"
      " zbt:decoration=\"Lines\">" +
      kConstraints + "<zbt:XYPoints><zbt:XYPoint xsi:type=\"zbt:XYPoint\">" + kX +
      "<zbt:Y>2.00000000000000000e+02</zbt:Y></zbt:XYPoint><zbt:XYPoint xsi:type=\"zbt:XYRange\">" +
      kX +
      "<zbt:LowerY>1.90000000000000000e+02</zbt:LowerY><zbt:UpperY>1.95000000000000000e+02"
      "</zbt:UpperY></zbt:XYPoint></zbt:XYPoints></zbt:Series><zbt:XAxisParameter>" +
      kTemperature + "</zbt:XAxisParameter></zbt:Graph></r>";
  std::string const gridded =
      "<r zbt:isNotApplicable=\"false\" zbt:decoration=\"LinesAndMarkers\">" + kUnitHead +
      "<zbt:Values><zbt:Value xsi:type=\"zbt:FloatFunctionalPointValue\">" + kConstraints +
      "<zbt:Estimated>true</zbt:Estimated><zbt:Value>7.00000000000000000e+00</zbt:Value>"
      "</zbt:Value><zbt:Value xsi:type=\"zbt:FloatFunctionalRangedValue\"><zbt:Constraints/>"
      "<zbt:Estimated>false</zbt:Estimated><zbt:Low>1.00000000000000000e+00</zbt:Low><zbt:High>"
      "2.00000000000000000e+00</zbt:High></zbt:Value></zbt:Values><zbt:DefaultXAxisParameter>" +
      kTemperature + "</zbt:DefaultXAxisParameter></r>";
  return {
      RowOf<ShortTextDataType>("STXT ShortTextDataValue",
                               "<r isFallback='true'>Ti-6Al-4V &lt;STA&gt;</r>",
                               "<r>Ti-6Al-4V &lt;STA&gt;</r>"),
      RowOf<LongTextDataType>("LTXT LongTextDataValue", "<r>a\n<![CDATA[<b>]]></r>",
                              "<r>a\n&lt;b&gt;</r>"),
      RowOf<DateTimeDataType>("DTTM DateDataValue", "<r>2026-11-21T00:00:00</r>",
                              "<r>2026-11-21T00:00:00</r>"),
      RowOf<IntegerDataType>("INPT IntegerDataValue", "<r> -12abc</r>", "<r>-12</r>"),
      RowOf<LogicalDataType>("LOGI LogicalDataValue", "<r>Yes</r>", "<r>true</r>"),
      RowOf<HyperlinkDataType>(
          "HLNK HyperlinkDataValue",
          "<r><b:Description>Data sheet</b:Description><b:Value>http://a/?b&amp;c</b:Value></r>",
          "<r><zbt:Value>http://a/?b&amp;c</zbt:Value><zbt:Description>Data sheet"
          "</zbt:Description></r>"),
      RowOf<DiscreteDataType>(
          "DISC DiscreteDataValue",
          "<r><b:Discrete b:order='2'>Good</b:Discrete><x/><Discrete>Poor</Discrete></r>",
          "<r><zbt:Discrete zbt:order=\"2\">Good</zbt:Discrete><zbt:Discrete zbt:order=\"0\">Poor"
          "</zbt:Discrete></r>"),
      RowOf<RangeDataType>("RNGE RangeDataValue",
                           "<r isNotApplicable='true'><LowValue>1.5</LowValue><HighValue>NaN"
                           "</HighValue><UnitSymbol>MPa</UnitSymbol><Estimated>1</Estimated></r>",
                           "<r zbt:isNotApplicable=\"false\"><zbt:Estimated>true</zbt:Estimated>"
                           "<zbt:UnitSymbol>MPa</zbt:UnitSymbol><zbt:LowValue>"
                           "1.50000000000000000e+00</zbt:LowValue><zbt:HighValue>NaN"
                           "</zbt:HighValue></r>"),
      RowOf<PointDataType>("POIN PointDataValue", AsReply(point), point),
      RowOf<FileDataType>(
          "FILE FileDataValue",
          "<r><URL>http://h/f</URL><data>aGk=</data><contentType>text/plain</contentType>"
          "<fileName>a.txt</fileName><description>note</description></r>",
          "<r><zbt:data>aGk=</zbt:data><zbt:contentType>text/plain</zbt:contentType><zbt:fileName>"
          "a.txt</zbt:fileName><zbt:description>note</zbt:description></r>"),
      RowOf<PictureDataType>(
          "PICT PictureDataValue",
          "<r><data>iVBO</data><URL/><contentType>image/png</contentType></r>",
          "<r><zbt:data>iVBO</zbt:data><zbt:contentType>image/png</zbt:contentType></r>"),
      RowOf<ListDataType>("LIST ListDataValue", "<r><listItem><Integer>1</Integer></listItem></r>",
                          "<r/>"),
      RowOf<LinkedRecordsDataType>("LINK LinkedRecordsDataValue",
                                   "<r><recordLinkGroup><name>N</name></recordLinkGroup></r>",
                                   "<r/>"),
      RowOf<FloatFunctionalSeriesDataType>("FLOAT_FUNCTIONAL_SERIES FloatFunctionalSeriesDataValue",
                                           AsReply(series), series),
      RowOf<FloatFunctionalGriddedDataType>(
          "FLOAT_FUNCTIONAL_GRIDDED FloatFunctionalGriddedDataValue", AsReply(gridded), gridded),
      RowOf<TabularDataType>(
          "TABL TabularDataValue",
          "<r><b:columns><b:column b:columnType='Local'>Element</b:column><b:column>wt%</b:column>"
          "</b:columns><b:summaryRow/><b:rows><b:row b:identity='4'><b:LinkedRecords>"
          "<b:LinkedRecord b:linkingValue='Fe'><b:dbKey>K</b:dbKey></b:LinkedRecord>"
          "</b:LinkedRecords><b:Cells><b:TabularDataCell><b:ShortText>Fe</b:ShortText>"
          "</b:TabularDataCell><b:TabularDataCell><b:Range><b:LowValue>98</b:LowValue></b:Range>"
          "</b:TabularDataCell></b:Cells></b:row></b:rows></r>",
          "<r><zbt:Rows><zbt:Row zbt:linkingValue=\"Fe\" zbt:rowIdentity=\"4\"><zbt:Cells>"
          "<zbt:Cell zbt:columnName=\"Element\"><zbt:ShortText>Fe</zbt:ShortText></zbt:Cell>"
          "<zbt:Cell zbt:columnName=\"wt%\"><zbt:Range zbt:isNotApplicable=\"false\">"
          "<zbt:Estimated>false</zbt:Estimated><zbt:UnitSymbol/><zbt:LowValue>"
          "9.80000000000000000e+01</zbt:LowValue><zbt:HighValue>NaN</zbt:HighValue></zbt:Range>"
          "</zbt:Cell></zbt:Cells></zbt:Row></zbt:Rows></r>",
          Forms::Differ),
  };
}

class ValueForm : public testing::TestWithParam<Row> {};

}  // namespace

TEST_P(ValueForm, IsReadAssignedAndWritten) {
  Row const& row = GetParam();
  EXPECT_EQ(row.passOn(row.reply), row.import);
  // A link or list is only read: what it writes says nothing.
  bool const isWritten = row.import != "<r/>";
  if (row.forms == Forms::Agree && isWritten) {
    EXPECT_EQ(row.passOn(row.import), row.import);
  }
  EXPECT_EQ(row.example->GetTypeString() + " " + row.example->GetNodeName(), row.type);
  row.example->CreateXMLNode(nullptr);
}

TEST_P(ValueForm, IsBuiltThroughTheRegistryOfAttributes) {
  Row const& row = GetParam();
  std::string const name = row.example->GetNodeName();
  std::string element = row.reply;
  element.replace(1, 1, "b:" + name).replace(element.size() - 2, 1, "b:" + name);
  auto const value = Read<AttributeValue>("<v>" + element + "</v>");
  if (AttributeValue::AccessRegistry().count(name) == 0) {
    EXPECT_EQ(value->GetDataValue(), nullptr);
    return;
  }
  EXPECT_EQ(value->GetDataType(), row.example->GetTypeString());
  ASSERT_NE(value->GetDataValue(), nullptr);
  EXPECT_EQ(WrittenElement(*value->GetDataValue()), row.import);
}

INSTANTIATE_TEST_SUITE_P(All, ValueForm, testing::ValuesIn(Rows()), [](auto const& row) {
  return row.param.type.substr(row.param.type.find(' ') + 1);
});

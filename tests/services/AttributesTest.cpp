#include <gmock/gmock.h>

#include <cmath>
#include <stdexcept>
#include <string>

#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::ThrowsMessage;

namespace {

std::string const kAttribute =
    "<zbt:dbKey>K</zbt:dbKey><zbt:attributeIdentity>3</zbt:attributeIdentity>";

template <class Request>
SmartPtr<Request> ForAttribute3() {
  auto request = Request::CreateOne();
  request->AddAttributeReference(Read<AttributeReference>("<a>" + kAttribute + "</a>"));
  return request;
}

}  // namespace

template <class Request>
class AttributeRequests : public testing::Test {};
using Requests = testing::Types<GetAttributeDetailsRequest, GetAttributeParametersRequest,
                                GetMetaAttributesRequest, GetAttributeMinMaxRequest>;
TYPED_TEST_SUITE(AttributeRequests, Requests, );

TYPED_TEST(AttributeRequests, SendTheListEvenWhenEmpty) {
  EXPECT_EQ(Written(*TypeParam::CreateOne()), "<zbt:attributeReferences/>");
  auto const request = ForAttribute3<TypeParam>();
  request->AddAttributeReference(nullptr);
  EXPECT_EQ(Written(*request), "<zbt:attributeReferences><zbt:attribute>" + kAttribute +
                                   "</zbt:attribute><zbt:attribute/></zbt:attributeReferences>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*request));
}

TEST(GetAttributeMinMaxRequest, SendsTheContextWhenSet) {
  auto const request = GetAttributeMinMaxRequest::CreateOne();
  request->SetUnitConversionContext(UnitConversionContext::CreateOne());
  request->GetUnitConversionContext()->SetCurrency("EUR");
  EXPECT_EQ(Written(*request),
            "<zbt:attributeReferences/><brow:unitConversionContext><zbt:currency>EUR"
            "</zbt:currency></brow:unitConversionContext>");
}

TEST(GetParameterDetailsRequest, SendsParametersThenAttributeThenRecord) {
  auto const request = GetParameterDetailsRequest::CreateOne();
  EXPECT_EQ(Written(*request), "<zbt:parameterReferences/>");
  request->AddParameterReference(ParameterReference::CreateOne());
  request->AddParameterReference(nullptr);
  request->SetFunctionalAttribute(Read<AttributeReference>("<a>" + kAttribute + "</a>"));
  request->SetRecordReference(RecordReference::CreateOne());
  EXPECT_EQ(Written(*request),
            "<zbt:parameterReferences><zbt:parameter><zbt:dbKey/></zbt:parameter><zbt:parameter/>"
            "</zbt:parameterReferences><brow:functionalAttribute>" +
                kAttribute +
                "</brow:functionalAttribute><brow:recordReference><zbt:dbKey/>"
                "</brow:recordReference>");
}

TEST(AttributeDetail, ReadsEveryField) {
  auto const response = Read<GetAttributeDetailsResponse>(
      "<r><attributeDetails><attributeDetail isSearchable='true' isMultiValued='1' isChartable='t'>"
      "<attribute>" +
      kAttribute +
      "</attribute><name>Composition</name><isMeta>false</isMeta><identity>3</identity><type>TABL"
      "</type><revisionInfo><updateCount>2</updateCount></revisionInfo><helpInfo><helpURI>h:u"
      "</helpURI><isDatabaseHelp>true</isDatabaseHelp></helpInfo><databaseUnit>MPa</databaseUnit>"
      "<defaultThreshold>5</defaultThreshold><discreteValues><discreteValue>Good</discreteValue>"
      "<discreteValue>Poor</discreteValue></discreteValues><order>9</order><axisName>Axis"
      "</axisName><columns><local><Name>Element</Name><columnType>local</columnType><DatabaseUnit>"
      "%</DatabaseUnit><DiscreteValues><DiscreteValue>Fe</DiscreteValue></DiscreteValues><type>"
      "STXT</type><RevisionInfo><created>2020</created></RevisionInfo></local><b:target/><Local/>"
      "<unavailable/></columns></attributeDetail><attributeDetail/></attributeDetails></r>");
  ASSERT_THAT(response->AccessAttributeDetails(), SizeIs(2));
  AttributeDetail const& detail = *response->AccessAttributeDetails()[0];
  EXPECT_EQ(detail.GetAttribute()->GetAttributeID(), 3);
  EXPECT_EQ(detail.GetName() + "|" + detail.GetType() + "|" + detail.GetDatabaseUnit() + "|" +
                detail.GetDefaultThreshold() + "|" + detail.GetAxisName(),
            "Composition|TABL|MPa|5|Axis");
  EXPECT_EQ(detail.GetIdentity(), 3);
  EXPECT_EQ(detail.GetOrder(), 9);
  EXPECT_TRUE(detail.GetIsSearchable() && detail.GetIsMultiValued() && detail.GetIsChartable());
  EXPECT_EQ(detail.GetRevisionInfo()->GetUpdateCount(), 2);
  EXPECT_EQ(detail.GetHelpInfo()->GetHelpURI(), "h:u");
  EXPECT_TRUE(detail.GetHelpInfo()->GetIsDatabaseHelp());
  EXPECT_THAT(detail.AccessDiscreteValues(), ElementsAre("Good", "Poor"));
  ASSERT_THAT(detail.AccessColumns(), SizeIs(3));
  TabularColumnDetail const& column = *detail.AccessColumns()[0];
  EXPECT_EQ(column.GetKind() + column.GetName() + column.GetColumnType() +
                column.GetDatabaseUnit() + column.GetType(),
            "localElementlocal%STXT");
  EXPECT_THAT(column.AccessDiscreteValues(), ElementsAre("Fe"));
  EXPECT_EQ(column.GetRevisionInfo()->GetCreated(), "2020");
  EXPECT_EQ(detail.AccessColumns()[1]->GetKind() + detail.AccessColumns()[2]->GetKind(),
            "targetunavailable");
  EXPECT_EQ(response->AccessAttributeDetails()[1]->GetHelpInfo(), nullptr);
}

TEST(AttributeDetail, KnowsColumnKindsOnlyWhileInitialised) {
  std::string const text = "<d><columns><local/></columns></d>";
  kpxtkLumoServiceLayer::Shutdown();
  EXPECT_THAT(Read<AttributeDetail>(text)->AccessColumns(), IsEmpty());
  kpxtkLumoServiceLayer::Initialize();
  EXPECT_THAT(AttributeDetail::s_supportedColumns, SizeIs(3));
  EXPECT_THAT(Read<AttributeDetail>(text)->AccessColumns(), SizeIs(1));
  EXPECT_THAT([] { Read<AttributeDetail>("<d isChartable='maybe'/>"); },
              ThrowsMessage<std::runtime_error>("boolean value not parseable"));
}

TEST(ParameterDetail, ReadsEveryField) {
  std::string const reply =
      "<r><parameterDetails><parameterDetail><ParameterReference><name>T</name>"
      "</ParameterReference><Name>Temperature</Name><Unit><UnitSymbol>K</UnitSymbol></Unit>"
      "<defaultValue i:type='NumericParameterValue'><Value>293</Value></defaultValue><scaleType>Log"
      "</scaleType><interpolationMethod>CubicSpline</interpolationMethod><parameterType>Discrete"
      "</parameterType><revisionInfo/><helpInfo/><parameterValues><parameterValue><Value>T6</Value>"
      "</parameterValue><parameterValue/></parameterValues><appliesTo><recordReference><dbKey>R"
      "</dbKey></recordReference><attributeReference><dbKey>A</dbKey></attributeReference>"
      "</appliesTo><order>4</order></parameterDetail></parameterDetails></r>";
  auto const response = Read<GetParameterDetailsResponse>(reply);
  EXPECT_THAT(Read<GetAttributeParametersResponse>(reply)->AccessParameterDetails(), SizeIs(1));
  ParameterDetail const& detail = *response->AccessParameterDetails().at(0);
  EXPECT_EQ(detail.GetParameterReference()->GetName() + detail.GetName() +
                detail.GetUnit()->GetUnitSymbol(),
            "TTemperatureK");
  EXPECT_EQ(detail.GetDefaultValue()->GetValue_Numeric(), 293);
  EXPECT_EQ(detail.GetScaleType(), ParameterDetail::ScaleType::Log);
  EXPECT_EQ(detail.GetInterpolationMethod(), ParameterDetail::Interpolation::CubicSpline);
  EXPECT_EQ(detail.GetParameterType(), ParameterDetail::ParameterType::Discrete);
  EXPECT_TRUE(detail.GetRevisionInfo() && detail.GetHelpInfo());
  ASSERT_THAT(detail.AccessParameterValues(), SizeIs(2));
  EXPECT_EQ(detail.AccessParameterValues()[0]->GetValue_Discrete(), "T6");
  EXPECT_EQ(detail.GetAppliesToAttribute()->GetDBKey() + detail.GetAppliesToRecord()->GetDBKey(),
            "AR");
  EXPECT_EQ(detail.GetOrder(), 4);

  auto const bare = Read<ParameterDetail>("<d><scaleType>log</scaleType></d>");
  EXPECT_EQ(bare->GetScaleType(), ParameterDetail::ScaleType::NotSet);
  EXPECT_EQ(bare->GetAppliesToAttribute(), nullptr);
  EXPECT_NE(bare->GetUnit(), nullptr);
}

TEST(AttributeMinMax, TakesTheFirstKindOfValueThatIsThere) {
  auto const response = Read<GetAttributeMinMaxResponse>(
      "<r><minMaxes><minMax><unit>MPa</unit><attributeReference><dbKey>K</dbKey>"
      "</attributeReference><min><integer>1</integer><double>NaN</double></min><max><double>2.5"
      "</double><date>2026</date></max></minMax><minMax><min/><max><integer>7</integer></max>"
      "</minMax></minMaxes></r>");
  ASSERT_THAT(response->AccessMinMaxes(), SizeIs(2));
  AttributeMinMax const& first = *response->AccessMinMaxes()[0];
  EXPECT_EQ(first.GetUnit() + first.GetAttributeReference()->GetDBKey(), "MPaK");
  EXPECT_EQ(first.GetMin()->GetType(), MinMaxValue::Double);
  EXPECT_TRUE(std::isnan(first.GetMin()->GetDouble()));
  EXPECT_EQ(first.GetMax()->GetType(), MinMaxValue::Date);
  EXPECT_EQ(first.GetMax()->GetDate(), "2026");
  AttributeMinMax const& second = *response->AccessMinMaxes()[1];
  EXPECT_EQ(second.GetMin()->GetType(), MinMaxValue::None);
  EXPECT_EQ(second.GetMax()->GetInteger(), 7);
  second.GetMin()->SetInteger(3);
  EXPECT_EQ(second.GetMin()->GetType(), MinMaxValue::Integer);
}

TEST(GetMetaAttributesResponse, ReadsNamedAttributesAndBareReferences) {
  auto const response = Read<GetMetaAttributesResponse>(
      "<r><Attribute><ParentAttribute><attribute>" + kAttribute +
      "</attribute><name>Density</name></ParentAttribute><MetaAttributes><MetaAttribute>" +
      kAttribute +
      "</MetaAttribute><MetaAttribute><attribute><dbKey>M</dbKey></attribute><name>Source</name>"
      "<isMeta>true</isMeta></MetaAttribute></MetaAttributes></Attribute><Attribute/></r>");
  ASSERT_THAT(response->AccessAttributes(), SizeIs(2));
  AttributeMetaAttributes const& density = *response->AccessAttributes()[0];
  EXPECT_EQ(density.GetParentAttribute()->GetName(), "Density");
  ASSERT_THAT(density.AccessMetaAttributes(), SizeIs(2));
  EXPECT_EQ(density.AccessMetaAttributes()[0]->GetAttribute()->GetAttributeID(), 3);
  EXPECT_EQ(density.AccessMetaAttributes()[1]->GetAttribute()->GetDBKey(), "M");
  EXPECT_TRUE(density.AccessMetaAttributes()[1]->GetIsMeta());
  EXPECT_EQ(response->AccessAttributes()[1]->GetParentAttribute(), nullptr);
}

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/support/Xml.h"

using testing::IsEmpty;
using testing::SizeIs;
using testing::ThrowsMessage;

TEST(GetAvailableExportersRequest, SendsOnlyWhatIsSet) {
  auto const request = GetAvailableExportersRequest::CreateOne();
  request->SetMatchDatabase(true);
  EXPECT_EQ(Written(*request), "");
  request->SetPackage("P");
  request->SetModel("M");
  request->SetDBKey("K");
  request->SetTable(PartialTableReference::CreateOneFromTableID(4));
  request->SetListingMode(ExporterListingModes::LatestVersionPerName);
  request->SetApplicabilityTag("T");
  std::string const start =
      "<eng:package>P</eng:package><eng:model>M</eng:model><eng:dbKey>K</eng:dbKey>";
  std::string const end =
      "<zbt:tableIdentity>4</zbt:tableIdentity></eng:table><eng:versionPolicy>"
      "LatestVersionPerName</eng:versionPolicy><eng:applicabilityTag>T</eng:applicabilityTag>";
  EXPECT_EQ(Written(*request), start + "<eng:table eng:matchDatabase=\"true\">" + end);
  request->SetMatchDatabase(false);
  EXPECT_EQ(Written(*request), start + "<eng:table>" + end);
  EXPECT_TRUE(WritesOnlyWhenAttached(*request));
}

TEST(ExportersForRecordsRequest, SendsFlagsAndRecordsAlways) {
  auto const request = ExportersForRecordsRequest::CreateOne();
  EXPECT_EQ(Written(*request),
            "<eng:packageAndModelRequired>false</eng:packageAndModelRequired>"
            "<eng:specificAttributeExportersOnly>false</eng:specificAttributeExportersOnly>"
            "<zbt:recordReferences/>");
  request->SetPackageAndModelRequired(true);
  request->SetSpecificAttributeExportersOnly(true);
  request->SetPackage("P");
  request->SetModel("M");
  request->SetListingMode(ExporterListingModes::IncludeAll);
  request->SetApplicabilityTag("T");
  request->AddRecord(nullptr);
  EXPECT_EQ(Written(*request),
            "<eng:packageAndModelRequired>true</eng:packageAndModelRequired>"
            "<eng:specificAttributeExportersOnly>true</eng:specificAttributeExportersOnly>"
            "<eng:package>P</eng:package><eng:model>M</eng:model><eng:versionPolicy>IncludeAll"
            "</eng:versionPolicy><eng:applicabilityTag>T</eng:applicabilityTag>"
            "<zbt:recordReferences><zbt:record/></zbt:recordReferences>");
}

TEST(Exporter, ReadsEveryField) {
  auto const response = Read<GetAvailableExportersResponse>(
      "<r><exporter name='Card' version='3' validatedOK='true'><key>k</key><package>P</package>"
      "<model>M</model><description>D</description><transforms><transform id='a'/><transform/>"
      "</transforms></exporter><x/><exporter/></r>");
  ASSERT_THAT(response->AccessExporters(), SizeIs(2));
  Exporter const& exporter = *response->AccessExporters()[0];
  EXPECT_EQ(exporter.GetKey() + exporter.GetPackage() + exporter.GetModel() +
                exporter.GetDescription() + exporter.GetName(),
            "kPMDCard");
  EXPECT_EQ(exporter.GetVersion(), 3);
  EXPECT_TRUE(exporter.GetValidatedOK());
  ASSERT_THAT(exporter.AccessTransforms(), SizeIs(2));
  EXPECT_EQ(exporter.AccessTransforms()[0]->GetId(), "a");
  EXPECT_EQ(response->AccessExporters()[1]->GetVersion(), -1);
  EXPECT_THROW(Read<Exporter>("<e version='three'/>"), std::invalid_argument);
}

TEST(ExportersForRecordsResponse, ReadsHowFarRecordsArePopulated) {
  auto const response = Read<ExportersForRecordsResponse>(
      "<r><records><record><record><dbKey>K</dbKey></record><exporters><exporter version='2'><key>a"
      "</key><populationState>FullyPopulated</populationState></exporter><exporter>"
      "<populationState>PartiallyPopulated</populationState></exporter><exporter><populationState>"
      "fullypopulated</populationState></exporter></exporters></record><record/></records></r>");
  ASSERT_THAT(response->AccessRecords(), SizeIs(2));
  ExportersForRecord const& record = *response->AccessRecords()[0];
  EXPECT_EQ(record.GetRecord()->GetDBKey(), "K");
  ASSERT_THAT(record.AccessExporters(), SizeIs(3));
  EXPECT_EQ(record.AccessExporters()[0]->GetKey(), "a");
  EXPECT_EQ(record.AccessExporters()[0]->GetVersion(), 2);
  EXPECT_EQ(record.AccessExporters()[0]->GetPopulationState(), ExporterPopulation::FullyPopulated);
  EXPECT_EQ(record.AccessExporters()[1]->GetPopulationState(), 2);
  EXPECT_EQ(record.AccessExporters()[2]->GetPopulationState(), ExporterPopulation::Unknown);
}

TEST(GetExporterParameters, AsksInCapitalsAndReads) {
  auto const request = GetExporterParametersRequest::CreateOne();
  EXPECT_EQ(Written(*request),
            "<zbt:recordReferences/><eng:ExporterKey/><eng:populateGUIDs>false"
            "</eng:populateGUIDs>");
  request->AddRecord(nullptr);
  request->SetExporterKey("k");
  request->SetUnitConversionContext(UnitConversionContext::CreateOne());
  request->SetPopulateGUIDs(true);
  EXPECT_EQ(Written(*request),
            "<zbt:recordReferences><zbt:record/></zbt:recordReferences><eng:ExporterKey>k"
            "</eng:ExporterKey><eng:UnitConversionContext/><eng:populateGUIDs>true"
            "</eng:populateGUIDs>");

  auto const response = Read<GetExporterParametersResponse>(
      "<r><Records><Record><Record><dbKey>K</dbKey></Record><Attributes><Attribute data='Missing'>"
      "<Attribute><name>Modulus</name></Attribute><Parameters><Parameter id='p' usage='x'><Name>T"
      "</Name></Parameter></Parameters><GraphDomains><GraphDomain><ParameterDomains>"
      "<ParameterDomain exporterParameterId='p' interpolable='Yes'><Values><Value"
      " i:type='NumericParameterValue'><Value>20</Value></Value><Value><Value>T6</Value></Value>"
      "</Values></ParameterDomain></ParameterDomains></GraphDomain></GraphDomains></Attribute>"
      "<Attribute/></Attributes></Record></Records></r>");
  RecordExporterParameters const& record = *response->AccessRecords().at(0);
  EXPECT_EQ(record.GetRecord()->GetDBKey(), "K");
  ASSERT_THAT(record.AccessAttributes(), SizeIs(2));
  AttributeExporterParameters const& attribute = *record.AccessAttributes()[0];
  EXPECT_EQ(attribute.GetAttribute()->GetName(), "Modulus");
  EXPECT_EQ(attribute.GetDataPresence(), AttributeExporterParameters::Missing);
  ExporterParameter const& parameter = *attribute.AccessParameters().at(0);
  EXPECT_EQ(parameter.GetId() + parameter.GetUsage() + parameter.GetName(), "pxT");
  ParameterDomain const& domain =
      *attribute.AccessGraphDomains().at(0)->AccessParameterDomains().at(0);
  EXPECT_EQ(domain.GetExporterParameterId(), "");  // its name lacks the leading blank
  EXPECT_TRUE(domain.GetInterpolable());
  ASSERT_THAT(domain.AccessValues(), SizeIs(2));
  EXPECT_EQ(domain.AccessValues()[0]->GetValue_Numeric(), 20);
  EXPECT_EQ(domain.AccessValues()[1]->GetValue_Discrete(), "T6");
  EXPECT_EQ(record.AccessAttributes()[1]->GetDataPresence(), AttributeExporterParameters::Unknown);
  EXPECT_THAT([] { Read<ParameterDomain>("<d interpolable='maybe'/>"); },
              ThrowsMessage<std::runtime_error>("boolean value not parseable"));
}

TEST(ExportRecordDataRequest, SendsItsFieldsInOrder) {
  auto const request = ExportRecordDataRequest::CreateOne();
  EXPECT_EQ(Written(*request), "<zbt:recordReferences/><eng:exporterKey/>");
  request->AddRecord(nullptr);
  request->AddAttribute(nullptr);
  request->SetExporterKey("k");
  request->SetUnitConversionContext(UnitConversionContext::CreateOne());
  request->SetRecordFilter(RecordFilter::CreateOne());
  UnittedParameterValue value;
  value.SetUnitSymbol("degC");
  request->AddParameterValue(value);  // without a parameter not even its unit is sent
  value.SetParameterValue(ParameterReferenceAndValue::CreateOne());
  request->AddParameterValue(value);
  request->SetSignificantFigures(3);
  request->SetStopBeforeId("b");
  std::string const start =
      "<zbt:recordReferences><zbt:record/></zbt:recordReferences><eng:attributes><eng:attribute/>"
      "</eng:attributes><eng:exporterKey>k</eng:exporterKey><eng:unitConversionContext/>"
      "<eng:recordFilter/><eng:parameterValues eng:significantFigures=\"3\"><eng:parameterValue/>"
      "<eng:parameterValue><zbt:Parameter><zbt:dbKey/></zbt:Parameter><zbt:ParameterValue"
      " xsi:type=\"zbt:DiscreteParameterValue\"><zbt:Value/></zbt:ParameterValue><zbt:UnitSymbol>"
      "degC</zbt:UnitSymbol></eng:parameterValue></eng:parameterValues>";
  EXPECT_EQ(Written(*request), start +
                                   "<eng:stopBefore><eng:transformId eng:value=\"b\"/>"
                                   "</eng:stopBefore>");
  request->SetStopBeforeIndex(0);
  EXPECT_EQ(request->GetStopBeforeId(), "b");
  EXPECT_EQ(Written(*request),
            start + "<eng:stopBefore><eng:index eng:value=\"0\"/></eng:stopBefore>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*request));

  ExportRecordDataRequest figures;
  figures.SetSignificantFigures(4);
  EXPECT_EQ(Written(figures),
            "<zbt:recordReferences/><eng:exporterKey/><eng:parameterValues"
            " eng:significantFigures=\"4\"/>");
}

TEST(ExportRecordDataResponse, IsTheWholeTextOfItsElement) {
  EXPECT_EQ(Read<ExportRecordDataResponse>("<text>a &lt;<![CDATA[<b>&amp;]]> c</text>")
                ->GetExportResult(),
            "a <<b>&amp; c");
}

// Search, read, import, read back, link, unlink, export: the daily work from end to end.

#include <curl/curl.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "tests/sandbox/Sandbox.h"

using testing::AllOf;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace {

std::vector<std::string> NamesOf(SimpleTextSearchResponse const& response) {
  EXPECT_TRUE(IsFine(response));
  std::vector<std::string> names;
  for (auto const& result : response.AccessSearchResults()) names.push_back(result->GetShortName());
  return names;
}

/// Short names of the materials that meet one condition.
std::vector<std::string> Meeting(std::string const& attribute, SmartPtr<SearchValue> const& value) {
  auto const request = CriteriaSearch::CreateOne();
  request->SetDBKey(kMaterials);
  auto const criterion = RecordSearchCriterion::CreateOne();
  criterion->SetSearchAttribute(AttributeNamed(attribute));
  criterion->SetSearchValue(value);
  request->AddSearchCriterion(criterion);
  SimpleTextSearchResponse response;
  Services().GetSearchService()->GetCriteriaSearchImpl()->Search(request, &response);
  return NamesOf(response);
}

template <class Condition>
SmartPtr<SearchValue> Compared(double value, std::string const& unit) {
  auto const condition = Condition::CreateOne();
  condition->SetValue(value);
  condition->SetUnit(unit);
  return condition;
}

template <class Condition>
SmartPtr<SearchValue> With(std::vector<std::string> const& words) {
  auto const condition = Condition::CreateOne();
  for (auto const& word : words) condition->AddValue(word);
  return condition;
}

using Values = std::map<std::string, SmartPtr<AttributeValue>>;

/// Values of one record by the name of their attribute.
Values ValuesOf(SmartPtr<RecordReference> const& record,
                std::vector<SmartPtr<AttributeReference>> const& attributes,
                std::string const& unitSystem = "", bool isInline = true, bool fallback = false) {
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  request->AddRecordReference(record);
  request->AccessAttributeReferences() = attributes;
  if (!unitSystem.empty()) request->SetUnitConversionContext(UnitsOf(unitSystem));
  if (isInline) request->SetBinaryDataRepresentation(BinaryDataRepresentations::Inline);
  request->SetUseFallback(fallback);
  GetRecordAttributesByRefResponse response;
  Services()
      .GetDataExportService()
      ->GetRecordAttributesByRefImplPtr()
      ->RequestRecordAttributesByRef(request, &response);
  EXPECT_TRUE(IsFine(response));
  Values values;
  for (auto const& value : response.AccessRecordData().at(0)->AccessAttributeValues()) {
    values[value->GetAttributeName()] = value;
  }
  return values;
}

template <class T>
T const& As(SmartPtr<AttributeValue> const& value) {
  return dynamic_cast<T const&>(*value->GetDataValue());
}

SmartPtr<ImportAttributeValue> Setting(std::string const& attribute,
                                       SmartPtr<IDataValue> const& value) {
  return {new ImportAttributeValue(value, AttributeNamed(attribute))};
}

SmartPtr<RangeDataType> RangeOf(double low, double high, std::string const& unit) {
  auto range = RangeDataType::CreateOne();
  range->SetLow(low);
  range->SetHigh(high);
  range->SetUnitSymbol(unit);
  return range;
}

/// Imports the records; gives those that the server took in.
std::vector<SmartPtr<NamedRecord>> Imported(std::vector<SmartPtr<ImportRecord>> const& records,
                                            bool isStrict = true, std::string* fault = nullptr,
                                            int commitThreshold = -1) {
  auto const request = SetRecordAttributesRequest::CreateOne();
  request->AccessImportRecords() = records;
  request->SetImportErrorMode(isStrict ? ImportErrorModes::FaultAndRollbackOnAnyError
                                       : ImportErrorModes::LogAndContinueWherePossible);
  request->SetCommitThreshold(commitThreshold);
  SetRecordAttributesResponse response;
  Services().GetDataImportService()->SetRecordAttributesImplPtr()->SetRecordAttributes_Request(
      request, &response);
  if (fault != nullptr) {
    *fault = response.GetServiceLayerResponse()->GetErrorMessage();
  } else {
    EXPECT_TRUE(IsFine(response));
  }
  return response.AccessRecordsImported();
}

SmartPtr<ImportRecord> NewIn(std::string const& folder, std::string const& name) {
  return {new ImportRecord(RecordNamed(folder), name, ImportRecordModes::Create, false)};
}

/// What the exporter puts out for the record; the fault when it puts out none.
std::string Exported(ExportRecordDataRequest const& wishes, std::string const& key) {
  SmartPtr<ExportRecordDataRequest> const request(new ExportRecordDataRequest);
  *request = wishes;
  request->SetExporterKey(key);
  ExportRecordDataResponse response;
  Services().GetEngineeringDataService()->GetExportRecordDataImpl()->ExportRecordData(request,
                                                                                      &response);
  auto const outcome = response.GetServiceLayerResponse();
  return outcome->GetResponseCode() == 200 ? response.GetExportResult()
                                           : outcome->GetErrorMessage();
}

}  // namespace

// ---------- searches

TEST(Search, FindsTextInNamesAndValues) {
  auto const request = SimpleTextSearch::CreateOne();
  request->SetDBKey(kMaterials);
  request->SetSearchValue("aluminium wrought");
  SimpleTextSearchResponse response;
  auto const search = [&] {
    Services().GetSearchService()->GetSimpleTextSearchImpl()->Search(request, &response);
    return NamesOf(response);
  };
  EXPECT_THAT(search(), SizeIs(4));
  request->SetSearchValue("climbing");  // stands in the typical uses only
  EXPECT_THAT(search(), ElementsAre("AW-7075-T6"));
  request->SetSearchValue("Norway");
  EXPECT_THAT(search(), ElementsAre("Northern Alloys"));
  request->SetSearchFilter(TableFilters::MaterialsTablesOnly);
  EXPECT_THAT(search(), IsEmpty());
  request->SetSearchFilter(TableFilters::NoFilter);
  request->AddRestrictToTables(PartialTableReference::CreateOneFromTableName("Processes"));
  EXPECT_THAT(search(), IsEmpty());
}

TEST(Search, FindsNames) {
  auto const request = RecordNameSearchRequest::CreateOne();
  request->SetTable(TableNamed("Materials"));
  request->SetRecordName("oak");
  request->SetSearchShortNames(true);
  request->SetPopulateGUIDs(true);
  SimpleTextSearchResponse response;
  auto const search = [&] {
    Services().GetSearchService()->GetRecordNameSearchImpl()->RecordNameSearch(request, &response);
    return NamesOf(response);
  };
  EXPECT_THAT(search(), ElementsAre("Oak"));
  EXPECT_NE(response.AccessSearchResults()[0]->GetRecordReference()->GetRecordGUID(), "");
  request->SetCaseSensitiveNames(true);
  EXPECT_THAT(search(), IsEmpty());
}

TEST(Search, ConvertsUnitsAndComparesEveryKindOfValue) {
  std::string const density = "Density";
  EXPECT_THAT(Meeting(density, Compared<LessThanSearchValue>(1, "g/cm^3")),
              UnorderedElementsAre("PE-HD", "Oak"));
  EXPECT_THAT(Meeting(density, Compared<GreaterThanSearchValue>(8.8, "g/cm^3")),
              ElementsAre("Cu-ETP"));
  auto const between = BetweenSearchValue::CreateOne();
  between->SetLowEnd(LowEndSearchValue::CreateOne());
  between->GetLowEnd()->SetValue(4420);
  between->SetHighEnd(HighEndSearchValue::CreateOne());
  between->GetHighEnd()->SetValue(4.5);
  between->GetHighEnd()->SetUnit("g/cm^3");
  EXPECT_THAT(Meeting(density, between), UnorderedElementsAre("Ti-grade-2", "Ti-6Al-4V"));
  EXPECT_THAT(Meeting("Durability: sea water", With<ContainsAnySearchValue>({"Unacceptable"})),
              ElementsAre("AZ91D"));
  EXPECT_THAT(
      Meeting("Durability: sea water", With<ContainsAllSearchValue>({"Excellent", "Unacceptable"})),
      IsEmpty());
  auto const exactly = ExactlySearchValue::CreateOne();
  exactly->SetValue(31);
  EXPECT_THAT(Meeting("Number of suppliers", exactly), ElementsAre("S235JR"));
  auto const contains = ContainsSearchValue::CreateOne();
  contains->SetValue("implants");
  EXPECT_THAT(Meeting("Typical uses", contains), ElementsAre("Ti-6Al-4V"));
  auto const without = DoesNotContainSearchValue::CreateOne();
  without->SetValue("a");
  EXPECT_THAT(Meeting("Typical uses", without), SizeIs(18));
  EXPECT_THAT(Meeting("Photo", ExistsSearchValue::CreateOne()), ElementsAre("AW-6061-T6"));
  EXPECT_THAT(Meeting("Density", DoesNotExistSearchValue::CreateOne()), IsEmpty());
  auto const dates = BetweenDateTimesSearchValue::CreateOne();
  dates->SetLowEnd("2026-01-01");
  dates->SetHighEnd("2026-02-01");
  EXPECT_THAT(Meeting("Last reviewed", dates), ElementsAre("Ti-6Al-4V"));
  auto const cell = TabularColumnContainsSearchValue::CreateOne();
  cell->SetColName("Element");
  cell->SetValue("Zn");
  EXPECT_THAT(Meeting("Composition", cell), ElementsAre("AW-7075-T6"));
}

// ---------- values

TEST(Values, OfEveryTypeAreRead) {
  Values const values = ValuesOf(
      RecordNamed("AW-6061-T6"),
      {AttributeNamed("Designation"), AttributeNamed("Typical uses"), AttributeNamed("Density"),
       AttributeNamed("Hardness by condition"), AttributeNamed("Recyclable"),
       AttributeNamed("Durability: sea water"), AttributeNamed("Number of suppliers"),
       AttributeNamed("Last reviewed"), AttributeNamed("Data sheet"), AttributeNamed("Photo"),
       AttributeNamed("Processing note"), AttributeNamed("Composition"),
       AttributeNamed("Yield strength against temperature"),
       AttributeNamed("Fatigue strength by temperature")});
  EXPECT_THAT(values, SizeIs(14));
  EXPECT_EQ(As<ShortTextDataType>(values.at("Designation")).GetValue(), "EN AW-6061 (AlMg1SiCu)");
  EXPECT_THAT(As<LongTextDataType>(values.at("Typical uses")).GetValue(), HasSubstr("\nWeldable"));
  EXPECT_EQ(As<RangeDataType>(values.at("Density")).GetHigh(), 2730);
  auto const& hardness = As<PointDataType>(values.at("Hardness by condition"));
  ASSERT_THAT(hardness.AccessPoints(), SizeIs(3));
  EXPECT_THAT(hardness.GetParameters()->AccessParameters(), SizeIs(2));
  EXPECT_THAT(hardness.AccessPoints()[0]->GetValueParameters()->AccessParameterWithValue(),
              SizeIs(2));
  EXPECT_TRUE(As<LogicalDataType>(values.at("Recyclable")).GetValue());
  EXPECT_EQ(As<DiscreteDataType>(values.at("Durability: sea water"))
                .AccessDiscreteValues()
                .at(0)
                ->GetValue(),
            "Acceptable");
  EXPECT_EQ(As<IntegerDataType>(values.at("Number of suppliers")).GetValue(), 14);
  EXPECT_EQ(As<DateTimeDataType>(values.at("Last reviewed")).GetValue(), "2026-03-17T09:30:00");
  EXPECT_THAT(As<HyperlinkDataType>(values.at("Data sheet")).GetValue(), StartsWith("https://"));
  std::vector<unsigned char> const picture = As<PictureDataType>(values.at("Photo")).GetData();
  EXPECT_EQ(std::string(picture.begin() + 1, picture.begin() + 4), "PNG");
  std::vector<unsigned char> const note = As<FileDataType>(values.at("Processing note")).GetData();
  EXPECT_THAT(std::string(note.begin(), note.end()), HasSubstr("age 8 h"));
  auto const& composition = As<TabularDataType>(values.at("Composition"));
  ASSERT_THAT(composition.GetRows(), SizeIs(5));
  EXPECT_EQ(
      dynamic_cast<ShortTextDataType&>(*composition.GetRows()[1]->At(0)->GetData()).GetValue(),
      "Mg");
  auto const& curve =
      As<FloatFunctionalSeriesDataType>(values.at("Yield strength against temperature"));
  EXPECT_EQ(curve.GetUnit()->GetUnitSymbol(), "MPa");
  Series const& series = *curve.GetGraph()->AccessSeries().at(0);
  EXPECT_THAT(series.GetXYPoints()->AccessPoints(), SizeIs(7));
  EXPECT_EQ(series.GetConstraints()->AccessConstraints().at(0)->GetLabel(), "Condition=T6");
  auto const& grid =
      As<FloatFunctionalGriddedDataType>(values.at("Fatigue strength by temperature"));
  EXPECT_EQ(grid.GetDecoration(), GraphDecoration::Markers);
  EXPECT_THAT(grid.GetValues()->AccessValues(), SizeIs(3));
}

TEST(Values, ComeInOtherUnitsByUrlAndAsFallback) {
  auto const steel = RecordNamed("304");
  Values const converted = ValuesOf(
      steel,
      {AttributeNamed("Tensile strength"), AttributeNamed("Yield strength against temperature")},
      "US customary");
  auto const& strength = As<RangeDataType>(converted.at("Tensile strength"));
  EXPECT_EQ(strength.GetUnitSymbol(), "ksi");
  EXPECT_THAT(strength.GetLow(), DoubleNear(515 / 6.894757, 0.001));
  auto const& curve =
      As<FloatFunctionalSeriesDataType>(converted.at("Yield strength against temperature"));
  auto const& first = dynamic_cast<XYRange const&>(
      *curve.GetGraph()->AccessSeries().at(0)->GetXYPoints()->AccessPoints().at(0));
  EXPECT_THAT(first.GetUpperY(), DoubleNear(240 / 6.894757, 0.001));

  Values const remote = ValuesOf(RecordNamed("AW-6061-T6"), {AttributeNamed("Photo")}, "", false);
  auto const& photo = As<PictureDataType>(remote.at("Photo"));
  EXPECT_EQ(photo.GetEncodedData(), "");
  EXPECT_THAT(photo.GetURL(), StartsWith(serverUrl + "/data/"));

  auto const folder = RecordNamed("Wood");
  auto const update = ImportRecord::CreateOne();
  update->SetImportRecordMode(ImportRecordModes::Update);
  update->SetExistingRecord(folder);
  auto const text = ShortTextDataType::CreateOne();
  text->SetValue("for all woods");
  update->AddImportAttributeValue(Setting("Composition (summary)", text));
  EXPECT_THAT(Imported({update}), SizeIs(1));
  auto const summary = AttributeNamed("Composition (summary)");
  EXPECT_THAT(ValuesOf(RecordNamed("Oak"), {summary}), IsEmpty());
  Values const fallback = ValuesOf(RecordNamed("Oak"), {summary}, "", true, true);
  EXPECT_TRUE(As<ShortTextDataType>(fallback.at("Composition (summary)")).GetIsFallback());
}

TEST(Values, OfTheRecordItselfAreRead) {
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  request->AddRecordReference(RecordNamed("AW-6061-T6"));
  for (int i = 0; i <= 20; ++i) {
    auto const attribute = AttributeReference::CreateOne();
    attribute->MakePseudoAttribute(
        static_cast<AttributeReference::PseudoAttrs::eLumoPseudoAttributeReference>(i));
    request->AddAttributeReference(attribute);
  }
  GetRecordAttributesByRefResponse response;
  Services()
      .GetDataExportService()
      ->GetRecordAttributesByRefImplPtr()
      ->RequestRecordAttributesByRef(request, &response);
  ASSERT_TRUE(IsFine(response));
  RecordData const& record = *response.AccessRecordData().at(0);
  using Pseudo = AttributeReference::PseudoAttrs;
  EXPECT_EQ(As<ShortTextDataType>(record.AccessPseudoAttribute(Pseudo::ShortName)).GetValue(),
            "AW-6061-T6");
  EXPECT_EQ(
      As<IntegerDataType>(record.AccessPseudoAttribute(Pseudo::RecordVersionNumber)).GetValue(), 2);
  EXPECT_EQ(As<ShortTextDataType>(record.AccessPseudoAttribute(Pseudo::ParentName)).GetValue(),
            "Aluminium alloys");
  // Links come in a form that no attribute's value has.
  EXPECT_EQ(record.AccessPseudoAttribute(Pseudo::LinkedRecords), nullptr);
}

// ---------- import

TEST(Import, CreatesChangesAndCopies) {
  auto const fresh = NewIn("Aluminium alloys", "AW-6082-T6");
  fresh->AddImportAttributeValue(Setting("Density", RangeOf(2.69, 2.71, "g/cm^3")));
  auto const table = TabularDataType::CreateOne();
  for (std::string const name : {"Element", "Most"}) {
    auto const column = TabularColumn::CreateOne();
    column->SetName(name);
    table->AddColumn(column);
  }
  for (std::string const element : {"Mg", "Si"}) {
    auto const text = ShortTextDataType::CreateOne();
    text->SetValue(element);
    table->PushRow()->At(0)->SetData(text);
  }
  fresh->AddImportAttributeValue(Setting("Composition", table));
  fresh->SetUpdateSubsetsMode(ImportRecord::Append);
  auto const subset = SubsetReference::CreateOne();
  subset->SetDBKey(kMaterials);
  subset->SetName("Structural metals");
  fresh->AddSubsetReference(subset);
  auto const created = Imported({fresh});
  ASSERT_THAT(created, SizeIs(1));
  auto const record = created[0]->GetRecordReference();

  Values values = ValuesOf(record, {AttributeNamed("Density"), AttributeNamed("Composition")});
  EXPECT_THAT(As<RangeDataType>(values.at("Density")).GetLow(), DoubleNear(2690, 1e-9));
  auto const& rows = As<TabularDataType>(values.at("Composition")).GetRows();
  ASSERT_THAT(rows, SizeIs(2));

  // Only the change of one row goes back.
  SmartPtr<ImportRecord> const change(
      new ImportRecord(record, "", ImportRecordModes::Update, false));
  auto const edited = TabularDataType::CreateOne();
  *edited = As<TabularDataType>(values.at("Composition"));
  auto const text = ShortTextDataType::CreateOne();
  text->SetValue("Mn");
  edited->PushRowForUpdate(TabularDataType::Update, rows[1]->GetIdentity())->At(0)->SetData(text);
  edited->PushRowForUpdate(TabularDataType::Delete, rows[0]->GetIdentity());
  change->AddImportAttributeValue(Setting("Composition", edited));
  EXPECT_THAT(Imported({change}), SizeIs(1));
  values = ValuesOf(record, {AttributeNamed("Composition")});
  auto const& changed = As<TabularDataType>(values.at("Composition"));
  ASSERT_THAT(changed.GetRows(), SizeIs(1));
  EXPECT_EQ(dynamic_cast<ShortTextDataType&>(*changed.GetRows()[0]->At(0)->GetData()).GetValue(),
            "Mn");
  EXPECT_EQ(changed.GetDataVersionNumber(), -1);  // tables carry none

  SmartPtr<ImportRecord> const copy(
      new ImportRecord(record, "AW-6082-T6 copy", ImportRecordModes::Copy, false));
  copy->SetCopyParentRecord(RecordNamed("Wood"));
  auto const copies = Imported({copy});
  ASSERT_THAT(copies, SizeIs(1));
  EXPECT_THAT(ValuesOf(copies[0]->GetRecordReference(), {AttributeNamed("Density")}), SizeIs(1));
}

TEST(Import, RollsBackOrGoesOnAsTold) {
  auto const good = NewIn("Wood", "Ash");
  auto const bad = NewIn("Wood", "Elm");
  bad->AddImportAttributeValue(Setting("Density", RangeOf(1, 2, "MPa")));
  std::string fault;
  EXPECT_THAT(Imported({good, bad}, true, &fault), IsEmpty());
  EXPECT_THAT(fault, HasSubstr("does not fit"));
  EXPECT_EQ(RecordNamed("Ash"), nullptr);
  auto const early = NewIn("Wood", "Beech");
  EXPECT_THAT(Imported({early, good, bad}, true, &fault, 1), IsEmpty());
  EXPECT_NE(RecordNamed("Beech"), nullptr);  // committed before the fault
  EXPECT_THAT(Imported({good, bad}, false), SizeIs(1));
  EXPECT_NE(RecordNamed("Ash"), nullptr);
  EXPECT_EQ(RecordNamed("Elm"), nullptr);
}

TEST(Upload, TakesThePutThatTheAddressIsFor) {
  auto const request = GetUploadAddressesRequest::CreateOne();
  request->AddRecord(RecordNamed("304"));
  request->AddAttributeReference(AttributeNamed("Processing note"));
  GetUploadAddressesResponse response;
  Services().GetDataImportService()->GetUploadAddressesImplPtr()->GetUploadAddresses(request,
                                                                                     &response);
  ASSERT_TRUE(IsFine(response));
  std::string const url = response.AccessRecordsWithAttributeAddresses()
                              .at(0)
                              ->AccessAttributeAddresses()
                              .at(0)
                              ->GetUrl();
  CURL* const easy = curl_easy_init();
  curl_slist* const headers = curl_slist_append(nullptr, "Content-Type: text/plain");
  curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers);
  curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, "PUT");
  curl_easy_setopt(easy, CURLOPT_POSTFIELDS, "anneal at 1050 degC");
  EXPECT_EQ(curl_easy_perform(easy), CURLE_OK);
  curl_slist_free_all(headers);
  curl_easy_cleanup(easy);
  Values const values = ValuesOf(RecordNamed("304"), {AttributeNamed("Processing note")});
  auto const& note = As<FileDataType>(values.at("Processing note"));
  std::vector<unsigned char> const bytes = note.GetData();
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "anneal at 1050 degC");
  EXPECT_EQ(note.GetContentType(), "text/plain");
}

// ---------- links

TEST(LinkModification, LinksAndUnlinks) {
  auto const group = RecordLinkGroupReference::CreateOne();
  group->SetDBKey(kMaterials);
  group->SetName("Producers");
  group->SetStandard(true);
  auto const modify = [&](SmartPtr<RecordLinkModifications> const& changes) {
    auto const request = ModifyRecordLinksRequest::CreateOne();
    request->SetRecordLinkGroupReference(group);
    request->SetRecordLinkModifications(changes);
    ModifyRecordLinksResponse response;
    Services().GetDataImportService()->ModifyRecordLinksImplPtr()->ModifyRecordLinks(request,
                                                                                     &response);
    EXPECT_TRUE(IsFine(response));
    auto const made = response.GetRecordLinkChanges();
    return made ? std::make_pair(made->AccessLinked().size(), made->AccessUnlinked().size())
                : std::make_pair(std::size_t{9}, std::size_t{9});
  };
  auto const oak = RecordNamed("Oak");
  auto const pa = RecordNamed("PA66");
  auto const producer = RecordNamed("Polymer House", "Material Producers");
  auto changes = RecordLinkModifications::CreateOne();
  auto const link = LinkRecords::CreateOne();
  auto const source = NotatedTargettedSourceRecord::CreateOne();
  source->SetRecord(pa);
  auto const target = NotatedTargetRecord::CreateOne();
  target->SetRecord(producer);
  target->SetNotes("granules");
  source->AddRecord(target);
  link->AddSourceRecord(source);
  changes->AddLinkRecords(link);
  auto const combinations = LinkAllCombinations::CreateOne();
  combinations->AddSourceRecord(oak);
  combinations->AddTargetRecord(producer);
  changes->AddLinkAllCombinations(combinations);
  EXPECT_EQ(modify(changes), std::make_pair(std::size_t{2}, std::size_t{0}));

  auto const links = GetLinkedRecordsRequest::CreateOne();
  links->AddRecordReference(oak);
  links->AddRecordLinkGroup(group);
  GetLinkedRecordsResponse linked;
  auto const count = [&] {
    Browse()->GetGetLinkedRecordsImpl()->GetLinkedRecords(links, &linked);
    EXPECT_TRUE(IsFine(linked));
    return linked.AccessSourceRecords()
        .at(0)
        ->AccessRecordLinkGroups()
        .at(0)
        ->AccessLinkedRecords()
        .size();
  };
  EXPECT_EQ(count(), 1U);
  changes = RecordLinkModifications::CreateOne();
  auto const unlinkAll = UnlinkAllRecords::CreateOne();
  unlinkAll->AddSourceRecord(oak);
  changes->AddUnlinkAllRecords(unlinkAll);
  auto const unlink = UnlinkRecords::CreateOne();
  auto const parted = TargettedSourceRecord::CreateOne();
  parted->SetRecord(pa);
  parted->AddRecord(producer);
  unlink->AddSourceRecord(parted);
  changes->AddUnlinkRecords(unlink);
  EXPECT_EQ(modify(changes), std::make_pair(std::size_t{0}, std::size_t{2}));
  EXPECT_EQ(count(), 0U);
}

// ---------- exporters

TEST(Exporters, AreListedAndDescribed) {
  auto const request = GetAvailableExportersRequest::CreateOne();
  request->SetPackage("Solver");
  request->SetDBKey(kMaterials);
  GetAvailableExportersResponse response;
  auto const list = [&] {
    Services()
        .GetEngineeringDataService()
        ->GetGetAvailableExportersImplPtr()
        ->GetAvailableExporters(request, &response);
    EXPECT_TRUE(IsFine(response));
    std::vector<std::string> keys;
    for (auto const& exporter : response.AccessExporters()) keys.push_back(exporter->GetKey());
    return keys;
  };
  EXPECT_THAT(list(), ElementsAre("card-1", "card-2"));
  EXPECT_EQ(response.AccessExporters()[1]->GetVersion(), 2);
  EXPECT_THAT(response.AccessExporters()[1]->AccessTransforms(), SizeIs(2));
  request->SetListingMode(ExporterListingModes::LatestVersionPerName);
  request->SetTable(PartialTableReference::CreateOneFromTableName("Materials"));
  request->SetMatchDatabase(true);
  EXPECT_THAT(list(), ElementsAre("card-2"));

  auto const fitting = ExportersForRecordsRequest::CreateOne();
  fitting->AddRecord(RecordNamed("304"));
  fitting->AddRecord(RecordNamed("Extrusion", "Processes"));
  ExportersForRecordsResponse found;
  Services().GetEngineeringDataService()->GetGetExportersForRecordsImpl()->GetExportersForRecords(
      fitting, &found);
  ASSERT_TRUE(IsFine(found));
  ASSERT_THAT(found.AccessRecords(), SizeIs(2));
  ASSERT_THAT(found.AccessRecords()[0]->AccessExporters(), SizeIs(3));
  EXPECT_EQ(found.AccessRecords()[0]->AccessExporters()[0]->GetPopulationState(),
            ExporterPopulation::FullyPopulated);
  EXPECT_THAT(found.AccessRecords()[1]->AccessExporters(), IsEmpty());

  auto const needs = GetExporterParametersRequest::CreateOne();
  needs->AddRecord(RecordNamed("304"));
  needs->SetExporterKey("card-2");
  GetExporterParametersResponse needed;
  Services().GetEngineeringDataService()->GetGetExporterParametersImpl()->GetExporterParameters(
      needs, &needed);
  ASSERT_TRUE(IsFine(needed));
  auto const& attributes = needed.AccessRecords().at(0)->AccessAttributes();
  ASSERT_THAT(attributes, SizeIs(7));
  EXPECT_EQ(attributes[6]->GetDataPresence(), AttributeExporterParameters::Present);
  EXPECT_EQ(attributes[6]->AccessParameters().at(0)->GetId(), "temperature");
  EXPECT_THAT(
      attributes[6]->AccessGraphDomains().at(0)->AccessParameterDomains().at(0)->AccessValues(),
      SizeIs(6));
}

TEST(Exporters, PutOutTablesAndCards) {
  ExportRecordDataRequest request;
  request.AddRecord(RecordNamed("304"));
  request.AddAttribute(AttributeNamed("Density"));
  request.AddAttribute(AttributeNamed("Tensile strength"));
  EXPECT_EQ(Exported(request, "table-1"),
            "Record\tDensity (kg/m^3)\tTensile strength (MPa)\n304\t7925\t567.5\n");
  request.SetSignificantFigures(2);
  request.SetUnitConversionContext(UnitsOf("US customary"));
  EXPECT_THAT(Exported(request, "table-1"),
              HasSubstr("(lb/in^3)\tTensile strength (ksi)\n304\t0.29"));

  ExportRecordDataRequest card;
  card.AddRecord(RecordNamed("304"));
  UnittedParameterValue temperature;
  temperature.SetUnitSymbol("K");
  temperature.SetParameterValue(ParameterReferenceAndValue::CreateOne());
  temperature.GetParameterValue()->GetParameter()->SetDBKey(kMaterials);
  temperature.GetParameterValue()->GetParameter()->SetName("Temperature");
  temperature.GetParameterValue()->GetParameterValue()->SetValue_Numeric(423.15);
  card.AddParameterValue(temperature);
  EXPECT_THAT(Exported(card, "card-2"),
              AllOf(HasSubstr("*MATERIAL, 304\n*DENSITY\n** Density, kg/m^3\n7925\n"),
                    HasSubstr("** Young's modulus, GPa\n196.5\n** Poisson's ratio\n0.27\n*YIELD\n"),
                    HasSubstr("MPa at 150 degC\n158.5\n")));
  card.SetStopBeforeId("format");
  EXPECT_THAT(Exported(card, "card-2"), StartsWith("304: Density = 7925\n"));
  card.SetStopBeforeIndex(0);
  EXPECT_EQ(Exported(card, "card-2"), "");
  EXPECT_EQ(Exported(card, "none"), "there is no exporter with the key \"none\"");
}

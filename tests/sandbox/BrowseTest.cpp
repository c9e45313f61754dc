// The browse operations from end to end.

#include <algorithm>
#include <cmath>

#include "tests/sandbox/Sandbox.h"

using testing::Contains;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::SizeIs;

TEST(Units, AreListedWithSystemsAndCurrencies) {
  auto const units = GetUnits::CreateOne();
  units->SetDBKey(kMaterials);
  GetUnitsResponse listed;
  Browse()->GetGetUnitsImpl()->GetUnits(units, &listed);
  ASSERT_TRUE(IsFine(listed));
  ASSERT_THAT(listed.AccessDatabases(), SizeIs(1));
  std::vector<std::string> withCurrency;
  for (auto const& unit : listed.AccessDatabases()[0]->AccessUnits()) {
    if (unit->GetHasCurrency()) withCurrency.push_back(unit->GetSymbol());
  }
  EXPECT_THAT(withCurrency, ElementsAre("EUR/kg", "USD/kg", "EUR/lb", "USD/lb"));

  auto const systems = GetUnitSystems::CreateOne();
  systems->SetDBKey(kMaterials);
  GetUnitSystemsResponse known;
  Browse()->GetGetUnitSystemsImpl()->GetUnitSystems(systems, &known);
  ASSERT_TRUE(IsFine(known));
  EXPECT_THAT(known.AccessUnitSystems(), ElementsAre("Metric", "SI", "US customary"));
  EXPECT_THAT(known.AccessCurrencies(), SizeIs(2));
  systems->SetExcludeCurrencies(true);
  Browse()->GetGetUnitSystemsImpl()->GetUnitSystems(systems, &known);
  EXPECT_THAT(known.AccessCurrencies(), IsEmpty());

  GetCurrenciesResponse currencies;
  Browse()->GetGetCurrenciesImpl()->GetCurrencies(&currencies);
  ASSERT_TRUE(IsFine(currencies));
  ASSERT_THAT(currencies.AccessCurrencies(), SizeIs(2));
  EXPECT_EQ(currencies.AccessCurrencies()[1]->GetCode(), "USD");
  EXPECT_GT(currencies.AccessCurrencies()[1]->GetFactor(), 0);
}

TEST(Units, AreConverted) {
  auto const request = GetUnitConversions::CreateOne();
  request->SetDBKey(kMaterials);
  request->AddUnitConversionContext(UnitsOf("US customary"));
  request->AddSourceUnit("degC");
  request->AddSourceUnit("MPa");
  GetUnitConversionsResponse response;
  Browse()->GetGetUnitConversionsImpl()->GetUnitConversions(request, &response);
  ASSERT_TRUE(IsFine(response));
  UnitConversion const& us = *response.AccessUnitConversionContexts().at(0);
  EXPECT_EQ(us.GetUnitConversionContext()->GetUnitSystem(), "US customary");
  ASSERT_THAT(us.AccessConversions(), SizeIs(2));
  Conversion const& fahrenheit = *us.AccessConversions()[0];
  EXPECT_EQ(fahrenheit.GetTargetSymbol(), "degF");
  EXPECT_THAT(20 * fahrenheit.GetFactor() + fahrenheit.GetOffset(), DoubleNear(68, 1e-9));
  EXPECT_THAT(us.AccessConversions()[1]->GetFactor(), DoubleNear(0.1450377, 1e-6));
  ASSERT_THAT(response.AccessSourceUnits(), SizeIs(2));
  EXPECT_EQ(response.AccessSourceUnits()[1]->GetSourceSymbol(), "MPa");
  EXPECT_THAT(response.AccessSourceUnits()[1]->AccessConversions(), SizeIs(6));
}

TEST(Tree, IsWalkedAndFiltered) {
  auto const aluminium = RecordNamed("Aluminium alloys");
  ASSERT_TRUE(aluminium);
  auto const request = GetChildNodes::CreateOne();
  request->SetParent(aluminium);
  request->SetPopulateGUIDs(true);
  GetChildNodesResponse children;
  Browse()->GetGetChildNodesImpl()->RequestChildNodes(request, &children);
  ASSERT_TRUE(IsFine(children));
  ASSERT_THAT(children.AccessTreeRecords(), SizeIs(4));
  SmartPtr<TreeRecord> const first = children.AccessTreeRecords()[0];
  EXPECT_EQ(first->GetType(), "Record");
  EXPECT_EQ(first->GetParentRecordHistoryIdentity(), aluminium->GetIdentity());
  EXPECT_NE(first->GetRecordReference()->GetRecordGUID(), "");

  auto const filter = RecordFilter::CreateOne();
  auto const subset = SubsetReference::CreateOne();
  subset->SetDBKey(kMaterials);
  subset->SetName("Polymers");
  filter->AddSubsetReference(subset);
  request->SetRecordFilter(filter);
  Browse()->GetGetChildNodesImpl()->RequestChildNodes(request, &children);
  ASSERT_TRUE(IsFine(children));
  EXPECT_THAT(children.AccessTreeRecords(), IsEmpty());

  auto const places = GetTreeRecordsRequest::CreateOne();
  places->AddRecord(first->GetRecordReference());
  GetTreeRecordsResponse found;
  Browse()->GetGetTreeRecordsImpl()->RequestTreeNodes(places, &found);
  ASSERT_TRUE(IsFine(found));
  EXPECT_EQ(found.AccessTreeRecords().at(0)->GetShortName(), first->GetShortName());
}

TEST(Versions, AreInAllFiveStates) {
  auto const states = [](SmartPtr<RecordReference> const& record,
                         VersionPolicies::eVersionPolicy policy) {
    auto const request = GetRecordVersionsRequest::CreateOne();
    request->AddRecordReference(record);
    request->SetVersionPolicy(policy);
    GetRecordVersionsResponse response;
    Browse()->GetGetRecordVersionsImpl()->GetRecordVersions(request, &response);
    EXPECT_TRUE(IsFine(response));
    std::vector<int> found;
    for (auto const& state : response.AccessRecordVersionStates()) {
      found.push_back(state->GetVersionState());
    }
    return found;
  };
  using State = RecordVersionState;
  auto const alloy = RecordNamed("AW-6061-T6");
  EXPECT_THAT(states(alloy, VersionPolicies::All),
              ElementsAre(State::Superseded, State::Released, State::Unreleased));
  EXPECT_THAT(states(alloy, VersionPolicies::AllReleased),
              ElementsAre(State::Superseded, State::Released));
  EXPECT_THAT(states(alloy, VersionPolicies::Latest), ElementsAre(State::Unreleased));
  EXPECT_THAT(states(alloy, VersionPolicies::LatestRead), ElementsAre(State::Released));
  EXPECT_THAT(states(RecordNamed("PEEK"), VersionPolicies::All), ElementsAre(State::Withdrawn));
  auto const top = GetRootNode::CreateOne();
  top->SetTable(TableNamed("Elements", "ELEMENTS"));
  GetRootNodeResponse root;
  Browse()->GetGetRootNodeImpl()->RequestRootNode(top, &root);
  ASSERT_TRUE(IsFine(root));
  EXPECT_THAT(root.GetRootNode()->AccessChildren(), SizeIs(23));
  EXPECT_THAT(states(root.GetRootNode()->GetRecordReference(), VersionPolicies::All),
              ElementsAre(State::Unversioned));
}

TEST(Attributes, AreDescribed) {
  auto const request = GetAttributeDetailsRequest::CreateOne();
  auto const standard = AttributeReference::CreateOne();
  standard->SetDBKey(kMaterials);
  standard->SetName("Composition");
  standard->SetIsStandardName(true);
  request->AddAttributeReference(standard);
  request->AddAttributeReference(AttributeNamed("Durability: sea water"));
  request->AddAttributeReference(AttributeNamed("Density: source"));
  GetAttributeDetailsResponse response;
  Browse()->GetGetAttributeDetailsImpl()->RequestAttributeDetails(request, &response);
  ASSERT_TRUE(IsFine(response));
  ASSERT_THAT(response.AccessAttributeDetails(), SizeIs(3));
  AttributeDetail const& table = *response.AccessAttributeDetails()[0];
  EXPECT_EQ(table.GetType(), "TABL");
  ASSERT_THAT(table.AccessColumns(), SizeIs(3));
  EXPECT_EQ(table.AccessColumns()[1]->GetName() + table.AccessColumns()[1]->GetDatabaseUnit(),
            "Least%");
  AttributeDetail const& discrete = *response.AccessAttributeDetails()[1];
  EXPECT_TRUE(discrete.GetIsMultiValued());
  EXPECT_THAT(discrete.AccessDiscreteValues(),
              ElementsAre("Excellent", "Acceptable", "Limited use", "Unacceptable"));
  EXPECT_EQ(response.AccessAttributeDetails()[2]->GetAbout()->GetName(), "Density");

  auto const meta = GetMetaAttributesRequest::CreateOne();
  meta->AddAttributeReference(AttributeNamed("Density"));
  GetMetaAttributesResponse described;
  Browse()->GetGetMetaAttributesImpl()->GetMetaAttributes(meta, &described);
  ASSERT_TRUE(IsFine(described));
  EXPECT_EQ(described.AccessAttributes().at(0)->AccessMetaAttributes().at(0)->GetName(),
            "Density: source");
}

TEST(Attributes, HaveRangesInTheUnitsAskedFor) {
  auto const request = GetAttributeMinMaxRequest::CreateOne();
  request->AddAttributeReference(AttributeNamed("Melting point"));
  request->AddAttributeReference(AttributeNamed("Last reviewed"));
  request->AddAttributeReference(AttributeNamed("Year of first use"));
  request->AddAttributeReference(AttributeNamed("Recyclable"));
  request->SetUnitConversionContext(UnitsOf("SI"));
  GetAttributeMinMaxResponse response;
  Browse()->GetGetAttributeMinMaxImpl()->RequestAttributeMinMax(request, &response);
  ASSERT_TRUE(IsFine(response));
  ASSERT_THAT(response.AccessMinMaxes(), SizeIs(4));
  EXPECT_EQ(response.AccessMinMaxes()[0]->GetUnit(), "K");
  EXPECT_THAT(response.AccessMinMaxes()[0]->GetMin()->GetDouble(), DoubleNear(398.15, 1e-6));
  EXPECT_EQ(response.AccessMinMaxes()[1]->GetMax()->GetDate(), "2026-03-17T09:30:00");
  EXPECT_EQ(response.AccessMinMaxes()[2]->GetMin()->GetInteger(), 1850);
  EXPECT_EQ(response.AccessMinMaxes()[3]->GetMin(), nullptr);
}

TEST(Parameters, AreDescribed) {
  auto const ofAttribute = GetAttributeParametersRequest::CreateOne();
  ofAttribute->AddAttributeReference(AttributeNamed("Yield strength against temperature"));
  GetAttributeParametersResponse parameters;
  Browse()->GetGetAttributeParametersImpl()->GetAttributeParameters(ofAttribute, &parameters);
  ASSERT_TRUE(IsFine(parameters));
  ASSERT_THAT(parameters.AccessParameterDetails(), SizeIs(2));
  ParameterDetail const& condition = *parameters.AccessParameterDetails()[1];
  EXPECT_EQ(condition.GetParameterType(), ParameterDetail::ParameterType::Discrete);
  EXPECT_THAT(condition.AccessParameterValues(), SizeIs(9));
  EXPECT_NE(condition.GetAppliesToAttribute(), nullptr);

  auto const named = GetParameterDetailsRequest::CreateOne();
  auto const time = ParameterReference::CreateOne();
  time->SetDBKey(kMaterials);
  time->SetName("Time");
  named->AddParameterReference(time);
  named->SetRecordReference(RecordNamed("304"));
  GetParameterDetailsResponse details;
  Browse()->GetGetParameterDetailsImpl()->GetParameterDetails(named, &details);
  ASSERT_TRUE(IsFine(details));
  ParameterDetail const& detail = *details.AccessParameterDetails().at(0);
  EXPECT_EQ(detail.GetScaleType(), ParameterDetail::ScaleType::Log);
  EXPECT_EQ(detail.GetInterpolationMethod(), ParameterDetail::Interpolation::CubicSpline);
  EXPECT_EQ(detail.GetDefaultValue()->GetValue_Numeric(), 1);
  EXPECT_NE(detail.GetAppliesToRecord(), nullptr);
}

TEST(RecordAttributes, AreListedByTheFlags) {
  auto const count = [](bool meta, bool empty, bool parameters, bool full) {
    GetRecordAttributesResponse response;
    Browse()->GetGetRecordAttributesImpl()->RequestRecordAttributes(
        {RecordNamed("AW-6061-T6")}, &response, meta, empty, parameters, full);
    EXPECT_TRUE(IsFine(response));
    auto const& list = response.AccessRecordAttributes();
    bool const hasParameters = std::any_of(list.begin(), list.end(), [](auto const& attribute) {
      return !attribute->AccessParameterDetails().empty();
    });
    EXPECT_EQ(hasParameters, parameters);
    EXPECT_EQ(list.at(0)->GetDataVersionNumber(), full ? 1 : -1);
    return list.size();
  };
  std::size_t const withData = count(false, false, false, false);
  EXPECT_EQ(count(false, true, false, true), 37U);
  EXPECT_EQ(count(true, true, true, false), 39U);
  EXPECT_LT(withData, 37U);
  EXPECT_GT(withData, 20U);
}

TEST(Links, AreFollowedInBothDirections) {
  auto const request = GetRecordLinkGroups::CreateOne();
  request->SetDBKey(kMaterials);
  GetRecordLinkGroupsResponse groups;
  Browse()->GetGetRecordLinkGroupsImpl()->GetRecordLinkGroups(request, &groups);
  ASSERT_TRUE(IsFine(groups));
  ASSERT_THAT(groups.AccessRecordLinkGroupDetails(), SizeIs(3));
  RecordLinkGroupDetail const& producers = *groups.AccessRecordLinkGroupDetails()[0];
  EXPECT_EQ(producers.GetName() + " / " + producers.GetReverseName(),
            "Producers / Materials produced");
  EXPECT_THAT(producers.AccessStandardNames(), ElementsAre("Producers"));

  auto const follow = [](SmartPtr<RecordReference> const& from,
                         SmartPtr<RecordLinkGroupReference> const& group) {
    auto const links = GetLinkedRecordsRequest::CreateOne();
    links->AddRecordReference(from);
    if (group) links->AddRecordLinkGroup(group);
    GetLinkedRecordsResponse linked;
    Browse()->GetGetLinkedRecordsImpl()->GetLinkedRecords(links, &linked);
    EXPECT_TRUE(IsFine(linked));
    return linked.AccessSourceRecords().at(0)->AccessRecordLinkGroups();
  };
  auto const alloy = RecordNamed("AW-6061-T6");
  auto const there = follow(alloy, producers.GetRecordLinkGroup());
  ASSERT_THAT(there, SizeIs(1));
  ASSERT_THAT(there[0]->AccessLinkedRecords(), SizeIs(1));
  EXPECT_THAT(there[0]->AccessTableFilters(), ElementsAre(TableFilters::ProducersTablesOnly));
  auto const producer = there[0]->AccessLinkedRecords()[0];
  auto const back = follow(producer, producers.GetReverseRecordLinkGroup());
  ASSERT_THAT(back, SizeIs(1));
  EXPECT_EQ(back[0]->GetName(), "Materials produced");
  EXPECT_THAT(back[0]->AccessLinkedRecords(), SizeIs(3));
  std::vector<std::string> names;
  for (auto const& group : follow(alloy, nullptr)) names.push_back(group->GetName());
  EXPECT_THAT(names, ElementsAre("Producers", "Processes", "References"));
}

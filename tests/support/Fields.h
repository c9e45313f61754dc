#pragma once

#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "lumo/LumoServiceLayer.h"

/// Collects all that objects say through their getters, bit by bit: equal texts, equal objects.
class Fields {
 public:
  /// Text of a response or of anything else that has a `Say` below.
  template <class T>
  static std::string Of(T const& object) {
    Fields fields;
    Say(fields, object);
    return fields.m_text;
  }

  template <class... Field>
  void operator()(Field const&... field) {
    (Add(field), ...);
  }

 private:
  void Add(std::string const& text) {
    m_text.append(std::to_string(text.size())).append(":").append(text).append(" ");
  }
  void Add(double number) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    m_text.append(std::to_string(bits)).append(" ");
  }
  template <class Number>
  std::enable_if_t<std::is_integral_v<Number> || std::is_enum_v<Number>> Add(Number number) {
    m_text.append(std::to_string(static_cast<int>(number))).append(" ");
  }
  template <class T>
  void Add(SmartPtr<T> const& object) {
    if (!object) return static_cast<void>(m_text.append("- "));
    m_text += "(";
    Say(*this, *object);
    m_text += ") ";
  }
  template <class Item>
  void Add(std::vector<Item> const& list) {
    m_text += "[";
    for (Item const& item : list) Add(item);
    m_text += "] ";
  }

  std::string m_text;
};

// One line a class, bases first. Overloads are found by the class of their second argument.

using F = Fields;

inline void Say(F& f, LumoEntityReference const& r) { f(r.GetDBKey()); }
inline void Say(F& f, LumoDatabase const& r) { f(r.GetDBKey(), r.GetName()); }
inline void Say(F& f, PartialTableReference const& r) {
  f(r.GetTableID(), r.GetTableGUID(), r.GetTableName());
}
inline void Say(F& f, TableReference const& r) {
  f(r.GetTableID(), r.GetTableGUID(), r.GetTableName(), r.GetDBKey());
}
inline void Say(F& f, RecordReference const& r) {
  f(r.GetDBKey(), r.GetRecordGUID(), r.GetHistoryGUID(), r.GetIdentity());
}
inline void Say(F& f, SubsetReference const& r) {
  f(r.GetDBKey(), r.GetName(), r.GetSubsetIdentity(), r.GetPartialTableReference());
}
inline void Say(F& f, AttributeReference const& r) {
  f(r.GetDBKey(), r.GetAttributeID(), r.GetName(), r.GetPartialTableReference());
  f(r.GetIsStandardName(), r.GetIsPseudo());
}
inline void Say(F& f, RecordLinkGroupReference const& r) {
  f(r.GetDBKey(), r.GetRecordLinkGroupIdentity(), r.GetRecordLinkGroupType(), r.GetName());
  f(r.GetPartialTableReference(), r.GetStandard());
}
inline void Say(F& f, ParameterReference const& r) { f(r.GetDBKey(), r.GetID(), r.GetName()); }
inline void Say(F& f, UnitConversionContext const& r) {
  f(r.GetUnitSystem(), r.GetCurrency(), r.GetAbsoluteUnits(), r.GetAbsoluteUnitsSet());
}
inline void Say(F& f, NamedRecord const& r) {
  f(r.GetShortName(), r.GetLongName(), r.GetRecordReference());
}
inline void Say(F& f, NamedAttribute const& r) {
  f(r.GetAttribute(), r.GetName(), r.GetAbout(), r.GetIsMeta());
}
inline void Say(F& f, AttributeIdentifier const& r) {
  f(r.GetAttributeName(), r.GetAttributeID(), r.GetStandardAttributeName());
}
inline void Say(F& f, TableDetail const& r) {
  f(r.GetTableReference(), r.AccessAttributeReferences(), r.AccessStandardAttributeReferences());
  f(r.AccessTableFilters());
}
inline void Say(F& f, SubsetDetail const& r) { f(r.GetSubset(), r.GetName(), r.GetTable()); }
inline void Say(F& f, UnitInformation const& r) { f(r.GetUnitName(), r.GetUnitSymbol()); }
inline void Say(F& f, CurrencyDetail const& r) { f(r.GetCode(), r.GetName(), r.GetFactor()); }
inline void Say(F& f, UnitDetail const& r) { f(r.GetName(), r.GetSymbol(), r.GetHasCurrency()); }
inline void Say(F& f, DatabaseUnits const& r) { f(r.GetDBKey(), r.AccessUnits()); }
inline void Say(F& f, Conversion const& r) {
  f(r.GetSourceSymbol(), r.GetTargetSymbol(), r.GetFactor(), r.GetOffset());
}
inline void Say(F& f, UnitConversion const& r) {
  f(r.GetUnitConversionContext(), r.AccessConversions());
}
inline void Say(F& f, SourceUnit const& r) { f(r.GetSourceSymbol(), r.AccessConversions()); }
inline void Say(F& f, TreeRecord const& r) {
  Say(f, static_cast<NamedRecord const&>(r));
  f(r.GetParentRecordHistoryIdentity(), r.AccessChildren(), r.GetHasChildren(), r.GetColor());
  f(r.GetType());
}
inline void Say(F& f, RevisionInfo const& r) {
  f(r.GetModified(), r.GetModifiedUser(), r.GetCreated(), r.GetCreatedUser(), r.GetUpdateCount());
}
inline void Say(F& f, RecordVersionState const& r) { f(r.GetRecord(), r.GetVersionState()); }
inline void Say(F& f, HelpInfo const& r) { f(r.GetHelpURI(), r.GetIsDatabaseHelp()); }
inline void Say(F& f, TabularColumnDetail const& r) {
  f(r.GetKind(), r.GetName(), r.GetColumnType(), r.GetDatabaseUnit(), r.GetType());
  f(r.GetRevisionInfo(), r.AccessDiscreteValues());
}
inline void Say(F& f, AttributeDetail const& r) {
  Say(f, static_cast<NamedAttribute const&>(r));
  f(r.GetIdentity(), r.GetOrder(), r.GetType(), r.GetRevisionInfo(), r.GetHelpInfo());
  f(r.GetDatabaseUnit(), r.GetDefaultThreshold(), r.GetAxisName(), r.AccessDiscreteValues());
  f(r.GetIsSearchable(), r.GetIsMultiValued(), r.GetIsChartable(), r.AccessColumns());
}
inline void Say(F& f, ParameterInformation const& r) {
  f(r.GetName(), r.GetUnit(), r.GetParameterReference());
}
inline void Say(F& f, ParameterValue const& r) {
  f(r.GetType(), r.GetValue_Numeric(), r.GetValue_Discrete());
}
inline void Say(F& f, ParameterDetail const& r) {
  Say(f, static_cast<ParameterInformation const&>(r));
  f(r.GetDefaultValue(), r.GetScaleType(), r.GetInterpolationMethod(), r.GetParameterType());
  f(r.GetRevisionInfo(), r.GetHelpInfo(), r.AccessParameterValues(), r.GetAppliesToAttribute());
  f(r.GetAppliesToRecord(), r.GetOrder());
}
inline void Say(F& f, MinMaxValue const& r) {
  f(r.GetType(), r.GetDate(), r.GetDouble(), r.GetInteger());
}
inline void Say(F& f, AttributeMinMax const& r) {
  f(r.GetUnit(), r.GetAttributeReference(), r.GetMin(), r.GetMax());
}
inline void Say(F& f, AttributeMetaAttributes const& r) {
  f(r.GetParentAttribute(), r.AccessMetaAttributes());
}
inline void Say(F& f, RecordAttribute const& r) {
  f(r.GetRecordReference(), r.GetAttribute(), r.GetHasData(), r.GetDataRevisionInfo());
  f(r.GetDataCreatedRecordVersion(), r.GetDataRetiredRecordVersion(), r.GetDataVersionNumber());
  f(r.AccessParameterDetails());
}
inline void Say(F& f, RecordLinkGroupDetail const& r) {
  f(r.GetLinkGroupType(), r.GetReverseName(), r.GetName(), r.GetRecordLinkGroup());
  f(r.GetReverseRecordLinkGroup(), r.GetFromTable(), r.GetToTable(), r.AccessStandardNames());
}
inline void Say(F& f, RecordLinkGroup const& r) {
  f(r.GetName(), r.AccessLinkedRecords(), r.AccessTableFilters(), r.AccessStandardNames());
}
inline void Say(F& f, SourceRecord const& r) { f(r.GetRecord(), r.AccessRecordLinkGroups()); }
inline void Say(F& f, SearchResult const& r) {
  Say(f, static_cast<NamedRecord const&>(r));
  f(r.GetRanking(), r.GetColor(), r.GetType());
}
inline void Say(F& f, NamedTargettedSourceRecord const& r) {
  f(r.GetRecord(), r.AccessTargetRecords());
}
inline void Say(F& f, RecordLinkChanges const& r) { f(r.AccessLinked(), r.AccessUnlinked()); }
inline void Say(F& f, AttributeAddress const& r) {
  Say(f, static_cast<AttributeIdentifier const&>(r));
  f(r.GetUrl());
}
inline void Say(F& f, RecordWithAttributeAddresses const& r) {
  f(r.GetRecordReference(), r.AccessAttributeAddresses());
}
inline void Say(F& f, ExporterTransform const& r) { f(r.GetId()); }
inline void Say(F& f, Exporter const& r) {
  f(r.GetKey(), r.GetPackage(), r.GetModel(), r.GetDescription(), r.GetName());
  f(r.AccessTransforms(), r.GetVersion(), r.GetValidatedOK());
}
inline void Say(F& f, ExporterPopulation const& r) {
  Say(f, static_cast<Exporter const&>(r));
  f(r.GetPopulationState());
}
inline void Say(F& f, ExportersForRecord const& r) { f(r.GetRecord(), r.AccessExporters()); }
inline void Say(F& f, ExporterParameter const& r) {
  Say(f, static_cast<ParameterInformation const&>(r));
  f(r.GetId(), r.GetUsage());
}
inline void Say(F& f, ParameterDomain const& r) {
  f(r.GetExporterParameterId(), r.GetInterpolable(), r.AccessValues());
}
inline void Say(F& f, GraphDomain const& r) { f(r.AccessParameterDomains()); }
inline void Say(F& f, AttributeExporterParameters const& r) {
  f(r.GetAttribute(), r.GetDataPresence(), r.AccessParameters(), r.AccessGraphDomains());
}
inline void Say(F& f, RecordExporterParameters const& r) { f(r.GetRecord(), r.AccessAttributes()); }

inline void Say(F& f, ParameterReferenceAndValue const& r) {
  f(r.GetParameter(), r.GetParameterValue());
}
inline void Say(F& f, ParameterReferencesAndValues const& r) { f(r.AccessParameterWithValue()); }
inline void Say(F& f, PointValueWithParameters const& r) {
  f(r.GetValue(), r.GetValueParameters());
}
inline void Say(F& f, Parameters const& r) { f(r.AccessParameters()); }
inline void Say(F& f, Constraint const& r) {
  f(r.GetParameter(), r.GetParameterValue(), r.GetLabel());
}
inline void Say(F& f, Constraints const& r) { f(r.AccessConstraints()); }
inline void Say(F& f, DiscreteValue const& r) { f(r.GetValue(), r.GetOrder()); }
inline void Say(F& f, TabularColumn const& r) { f(r.GetName(), r.GetColumnType()); }
inline void Say(F& f, TabularDataCell const& r) { f(r.GetData()); }
inline void Say(F& f, TabularDataRow const& r) {
  f(r.GetData(), r.GetLinkedRecords(), r.GetLinkingValue(), r.GetIdentity());
}
inline void Say(F& f, XYDatum const& r) {
  f(r.GetType(), r.GetX(), r.GetIsEstimated());
  if (auto const* point = dynamic_cast<XYPoint const*>(&r)) f(point->GetY());
  if (auto const* range = dynamic_cast<XYRange const*>(&r))
    f(range->GetLowerY(), range->GetUpperY());
}
inline void Say(F& f, XYData const& r) { f(r.AccessPoints()); }
inline void Say(F& f, Series const& r) {
  f(r.GetXYPoints(), r.GetConstraints(), r.GetDecoration());
}
inline void Say(F& f, FloatFunctionalSeriesGraph const& r) {
  f(r.AccessSeries(), r.GetHideGraph(), r.GetLogarithmicYAxis(), r.GetXAxisParameter());
}
inline void Say(F& f, FloatFunctionalValue const& r) {
  f(r.GetType(), r.GetConstraints(), r.GetEstimated());
  if (auto const* point = dynamic_cast<FloatFunctionalPointValue const*>(&r)) f(point->GetValue());
  if (auto const* range = dynamic_cast<FloatFunctionalRangeValue const*>(&r)) {
    f(range->GetLowValue(), range->GetHighValue());
  }
}
inline void Say(F& f, FloatFunctionalValues const& r) { f(r.AccessValues()); }

// Of values, what their classes add.

template <class T, class Field>
void SayOwn(F& f, lumo::SimpleValue<T, Field> const& v) {
  f(v.GetValue());
}
inline void SayOwn(F& /*f*/, EmptyDataType const& /*v*/) {}
inline void SayOwn(F& f, HyperlinkDataType const& v) { f(v.GetValue(), v.GetDescription()); }
inline void SayOwn(F& f, DiscreteDataType const& v) { f(v.AccessDiscreteValues()); }
inline void SayOwn(F& f, RangeDataType const& v) {
  f(v.GetUnitSymbol(), v.GetEstimated(), v.GetLow(), v.GetLowSet(), v.GetHigh(), v.GetHighSet());
}
inline void SayOwn(F& f, PointDataType const& v) {
  f(v.GetUnitSymbol(), v.GetEstimated(), v.AccessPoints(), v.GetParameters());
}
inline void SayOwn(F& f, PictureDataType const& v) {
  f(v.GetURL(), v.GetEncodedData(), v.GetContentType());
}
inline void SayOwn(F& f, FileDataType const& v) {
  f(v.GetURL(), v.GetEncodedData(), v.GetContentType(), v.GetFileName(), v.GetDescription());
}
inline void SayOwn(F& f, ListDataType const& v) { f(v.AccessItems()); }
inline void SayOwn(F& f, LinkedRecordsDataType const& v) { f(v.AccessRecordLinkGroups()); }
inline void SayOwn(F& f, TabularDataType const& v) { f(v.GetColumns(), v.GetRows()); }
inline void SayOwn(F& f, FloatFunctionalSeriesDataType const& v) {
  f(v.GetUnit(), v.GetParameters(), v.GetGraph());
}
inline void SayOwn(F& f, FloatFunctionalGriddedDataType const& v) {
  f(v.GetUnit(), v.GetParameters(), v.GetDefaultXAxisParameter(), v.GetDecoration(), v.GetValues());
}
inline void Say(F& f, IDataValue const& value) {
  f(value.GetTypeString(), value.GetDataVersionNumber(), value.GetIsNotApplicable());
  f(value.GetIsFallback(), value.GetHasDataVersionNumber());
  lumo::Visit(
      value, [&f](auto const& v) { SayOwn(f, v); }, [](IDataValue const&) {});
}

inline void Say(F& f, AttributeValue const& r) {
  Say(f, static_cast<AttributeIdentifier const&>(r));
  f(r.GetDataType(), r.IsSupported(), r.GetDataValue());
}
inline void Say(F& f, RecordData const& r) {
  f(r.GetRecordReference(), r.AccessAttributeValues());
  for (int i = 0; i < 20; ++i) {
    f(r.AccessPseudoAttribute(static_cast<RecordData::PseudoAttribute>(i)));
  }
}

inline void Say(F& f, GetDatabasesResponse const& r) { f(r.AccessDatabases()); }
inline void Say(F& f, GetTablesResponse const& r) { f(r.AccessTableDetails()); }
inline void Say(F& f, GetSubsetsResponse const& r) { f(r.AccessSubsetDetails()); }
inline void Say(F& f, GetUnitsResponse const& r) { f(r.AccessDatabases()); }
inline void Say(F& f, GetUnitSystemsResponse const& r) {
  f(r.GetDBKey(), r.AccessUnitSystems(), r.AccessCurrencies());
}
inline void Say(F& f, GetCurrenciesResponse const& r) { f(r.AccessCurrencies()); }
inline void Say(F& f, GetUnitConversionsResponse const& r) {
  f(r.GetDBKey(), r.AccessUnitConversionContexts(), r.AccessSourceUnits());
}
inline void Say(F& f, GetRootNodeResponse const& r) { f(r.GetRootNode()); }
inline void Say(F& f, GetChildNodesResponse const& r) { f(r.AccessTreeRecords()); }
inline void Say(F& f, GetTreeRecordsResponse const& r) { f(r.AccessTreeRecords()); }
inline void Say(F& f, GetRecordVersionsResponse const& r) { f(r.AccessRecordVersionStates()); }
inline void Say(F& f, GetAttributeDetailsResponse const& r) { f(r.AccessAttributeDetails()); }
inline void Say(F& f, GetAttributeParametersResponse const& r) { f(r.AccessParameterDetails()); }
inline void Say(F& f, GetParameterDetailsResponse const& r) { f(r.AccessParameterDetails()); }
inline void Say(F& f, GetAttributeMinMaxResponse const& r) { f(r.AccessMinMaxes()); }
inline void Say(F& f, GetMetaAttributesResponse const& r) { f(r.AccessAttributes()); }
inline void Say(F& f, GetRecordAttributesResponse const& r) { f(r.AccessRecordAttributes()); }
inline void Say(F& f, GetRecordLinkGroupsResponse const& r) { f(r.AccessRecordLinkGroupDetails()); }
inline void Say(F& f, GetLinkedRecordsResponse const& r) { f(r.AccessSourceRecords()); }
inline void Say(F& f, SimpleTextSearchResponse const& r) { f(r.AccessSearchResults()); }
inline void Say(F& f, GetRecordAttributesByRefResponse const& r) { f(r.AccessRecordData()); }
inline void Say(F& f, SetRecordAttributesResponse const& r) { f(r.AccessRecordsImported()); }
inline void Say(F& f, GetUploadAddressesResponse const& r) {
  f(r.AccessRecordsWithAttributeAddresses());
}
inline void Say(F& f, ModifyRecordLinksResponse const& r) { f(r.GetRecordLinkChanges()); }
inline void Say(F& f, GetAvailableExportersResponse const& r) { f(r.AccessExporters()); }
inline void Say(F& f, ExportersForRecordsResponse const& r) { f(r.AccessRecords()); }
inline void Say(F& f, GetExporterParametersResponse const& r) { f(r.AccessRecords()); }
inline void Say(F& f, ExportRecordDataResponse const& r) { f(r.GetExportResult()); }

// What holds for every class that is read from replies.

#include <gmock/gmock.h>

#include <string>
#include <type_traits>
#include <typeinfo>

#include "tests/support/Xml.h"

namespace {

template <class T, class = void>
struct CanWrite : std::false_type {};
template <class T>
struct CanWrite<T, std::void_t<decltype(&T::CreateXMLNode)>> : std::true_type {};

template <class... Classes>
struct List {};
// Whole numbers and logical values are not here: they do not take an element without a number.
using ReadClasses = List<
    LumoEntityReference, LumoDatabase, PartialTableReference, LumoTableReference, TableReference,
    RecordReference, SubsetReference, AttributeReference, RecordLinkGroupReference,
    ParameterReference, UnitConversionContext, NamedRecord, NamedAttribute, NamedSubset,
    AttributeIdentifier, TableDetail, SubsetDetail, AttributeValue, GetDatabasesResponse,
    GetTablesResponse, GetSubsetsResponse, UnitInformation, ParameterInformation, RecordLinkGroup,
    ShortTextDataType, LongTextDataType, DateTimeDataType, HyperlinkDataType, DiscreteValue,
    DiscreteDataType, RangeDataType, PointValueWithParameters, PointDataType, ParameterValue,
    ParameterReferenceAndValue, ParameterReferencesAndValues, FileDataType, PictureDataType,
    ListDataType, LinkedRecordsDataType, TabularColumn, FloatFunctionalSeriesDataType,
    FloatFunctionalGriddedDataType, FloatFunctionalGraph, FloatFunctionalSeriesGraph, Series,
    XYData, XYPoint, XYRange, FloatFunctionalValues, FloatFunctionalPointValue,
    FloatFunctionalRangeValue, Parameters, Constraints, Constraint, RevisionInfo, UnitDetail,
    DatabaseUnits, GetUnitsResponse, CurrencyDetail, GetUnitSystemsResponse, GetCurrenciesResponse,
    Conversion, UnitConversion, SourceUnit, GetUnitConversionsResponse, TreeRecord,
    GetRootNodeResponse, GetChildNodesResponse, GetTreeRecordsResponse, RecordVersionState,
    GetRecordVersionsResponse, HelpInfo, TabularColumnDetail, AttributeDetail, ParameterDetail,
    GetAttributeDetailsResponse, GetAttributeParametersResponse, GetParameterDetailsResponse,
    MinMaxValue, AttributeMinMax, GetAttributeMinMaxResponse, AttributeMetaAttributes,
    GetMetaAttributesResponse, RecordAttribute, GetRecordAttributesResponse, RecordLinkGroupDetail,
    GetRecordLinkGroupsResponse, SourceRecord, GetLinkedRecordsResponse, SearchResult,
    SimpleTextSearchResponse, RecordData, GetRecordAttributesByRefResponse,
    SetRecordAttributesResponse, RecordLinkChanges, NamedTargettedSourceRecord,
    ModifyRecordLinksResponse, AttributeAddress, RecordWithAttributeAddresses,
    GetUploadAddressesResponse, Exporter, ExporterTransform, ExporterPopulation, ExportersForRecord,
    GetAvailableExportersResponse, ExportersForRecordsResponse, ExporterParameter, ParameterDomain,
    GraphDomain, AttributeExporterParameters, RecordExporterParameters,
    GetExporterParametersResponse, ExportRecordDataResponse>;

template <class T>
void ExpectDefaultObject() {
  SCOPED_TRACE(typeid(T).name());
  EXPECT_EQ(T::CreateOne(nullptr), nullptr);
  T const fromNull(static_cast<XmlNode<char> const*>(nullptr));
  auto const foreign = Read<T>("<r dbKey='K'><unknown><dbKey>K</dbKey></unknown></r>");
  ASSERT_NE(foreign, nullptr);
  auto const assigned = T::CreateOne();
  *assigned = fromNull;
  if constexpr (CanWrite<T>::value) {
    std::string const nothingSet = Written(*T::CreateOne());
    EXPECT_EQ(Written(fromNull), nothingSet);
    EXPECT_EQ(Written(*foreign), nothingSet);
    EXPECT_EQ(Written(*assigned), nothingSet);
  }
}

template <class... Classes>
void ExpectDefaultObjects(List<Classes...> /*classes*/) {
  (ExpectDefaultObject<Classes>(), ...);
}

}  // namespace

TEST(EveryReadClass, IsADefaultObjectWithoutANodeOrInAForeignElement) {
  ExpectDefaultObjects(ReadClasses());
}

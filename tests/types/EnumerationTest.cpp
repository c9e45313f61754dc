#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "lumo/LumoServiceLayer.h"

namespace {

/// An enumeration by its two text functions; either may be missing.
struct Enumeration {
  char const* name;
  std::function<std::string(int)> toText;
  std::function<int(std::string const&)> fromText;
  std::vector<std::pair<int, std::string>> words;      ///< in both directions that exist
  std::vector<std::pair<int, std::string>> written{};  ///< texts of other values
  std::vector<std::pair<std::string, int>> read{};     ///< values of other texts
};

void PrintTo(Enumeration const& enumeration, std::ostream* out) { *out << enumeration.name; }

template <class Enum>
std::function<std::string(int)> Texts(std::string (*function)(Enum)) {
  return [function](int value) {
    return function(static_cast<std::remove_const_t<std::remove_reference_t<Enum>>>(value));
  };
}
template <class Enum>
std::function<int(std::string const&)> Values(Enum (*function)(std::string const&)) {
  return [function](std::string const& text) { return static_cast<int>(function(text)); };
}

std::vector<Enumeration> Enumerations() {
  return {
      {"TableFilters",
       Texts(TableFilters::ToString),
       Values(TableFilters::FromString),
       {{0, "NoFilter"},
        {1, "MaterialsTablesOnly"},
        {2, "ProcessesTablesOnly"},
        {3, "SubstancesTablesOnly"},
        {4, "LegislationsTablesOnly"},
        {5, "TransportTypesTablesOnly"},
        {6, "RegionsTablesOnly"},
        {7, "EndOfLifeOptionsTablesOnly"},
        {8, "EnergyConversionOptionsTablesOnly"},
        {9, "CoatingsTablesOnly"},
        {10, "PartsTablesOnly"},
        {11, "InHouseTablesOnly"},
        {12, "SequenceSpecificationsTablesOnly"},
        {13, "ElementsTablesOnly"},
        {14, "UniverseTablesOnly"},
        {15, "ProducersTablesOnly"},
        {16, "ShapeTablesOnly"},
        {17, "ReferenceTablesOnly"},
        {18, "MobileUseTypesTablesOnly"}},
       {{19, ""}, {-1, ""}},
       {{"materialsTablesOnly", 0}, {"", 0}}},
      {"RecordLinkGroupTypes",
       Texts(RecordLinkGroupTypes::RecordLinkGroupType_ToString),
       Values(RecordLinkGroupTypes::RecordLinkGroupType_FromString),
       {{0, "Unknown"}, {1, "static"}, {2, "dynamic"}, {3, "crossDatabase"}},
       {{4, "Unknown"}},
       {{"Static", 0}}},
      {"ImportErrorModes",
       Texts(ImportErrorModes::ImportErrorMode_ToString),
       Values(ImportErrorModes::ImportErrorMode_FromString),
       {{0, "FaultAndRollbackOnAnyError"}, {1, "LogAndContinueWherePossible"}},
       {{2, "LogAndContinueWherePossible"}},
       {{"faultAndRollbackOnAnyError", 1}, {"", 1}}},
      {"ImportRecordModes",
       Texts(ImportRecordModes::ImportRecordMode_ToString),
       Values(ImportRecordModes::ImportRecordMode_FromString),
       {},
       {{0, "update"}, {1, "create"}, {2, "copy"}, {3, ""}},
       {{"Update", 0}, {"Create", 1}, {"Copy", 2}, {"update", 3}, {"copy", 3}, {"", 3}}},
      {"RecordLinkCheckModes",
       Texts(RecordLinkCheckModes::RecordLinkCheckMode_ToString),
       Values(RecordLinkCheckModes::RecordLinkCheckMode_FromString),
       {{0, "CheckOnlyForwardLinks"}, {1, "CheckForwardAndReverseLinks"}},
       {{2, "CheckOnlyForwardLinks"}},
       {{"checkForwardAndReverseLinks", 0}}},
      {"BinaryDataRepresentations",
       Texts(BinaryDataRepresentations::BinaryDataRepresentation_ToString),
       Values(BinaryDataRepresentations::BinaryDataRepresentation_FromString),
       {{0, "Inline"}, {1, "URL"}},
       {{2, "URL"}},
       {{"inline", 1}, {"", 1}}},
      {"SearchModes",
       Texts(SearchModes::ToString),
       {},
       {{0, "Normal"}, {1, "ReadOnly"}},
       {{2, ""}}},
      {"ScaleType",
       {},
       Values(ParameterDetail::ScaleType::FromString),
       {{0, "NotSet"}, {1, "Linear"}, {2, "Log"}},
       {},
       {{"log", 0}}},
      {"Interpolation",
       {},
       Values(ParameterDetail::Interpolation::FromString),
       {{0, "None"}, {1, "Linear"}, {2, "CubicSpline"}},
       {},
       {{"linear", 0}}},
      {"ParameterType",
       {},
       Values(ParameterDetail::ParameterType::FromString),
       {{0, "NumericUnrestricted"}, {1, "NumericRestricted"}, {2, "Discrete"}},
       {},
       {{"discrete", 0}}},
      {"VersionPolicies",
       Texts(VersionPolicies::VersionPolicy_ToString),
       {},
       {{0, "LatestRead"}, {1, "Latest"}, {2, "AllReleased"}, {3, "All"}},
       {{4, "Unknown"}}},
      {"ExporterListingModes",
       Texts(ExporterListingModes::ExporterListingMode_ToString),
       {},
       {{1, "IncludeAll"}, {2, "LatestVersionPerName"}},
       {{0, ""}, {3, ""}}},
      {"GraphDecoration",
       Texts(GraphDecoration::ToString),
       Values(GraphDecoration::FromString),
       {{0, "Lines"}, {1, "Markers"}, {2, "LinesAndMarkers"}},
       {{3, "Markers"}},
       {{"lines", 3}}},
      {"DataPresence",
       {},
       Values(AttributeExporterParameters::DataPresence_FromString),
       {{1, "Present"},
        {2, "NotApplicable"},
        {3, "Missing"},
        {4, "DataIncompatibleWithConfiguration"}},
       {},
       {{"present", 0}, {"Unknown", 0}}},
      {"AttributeSelector",
       Texts(GetTables::AttributeSelector_ToString),
       {},
       {{1, "NonMetaAttributes"}, {2, "MetaAttributes"}, {3, "StandardAttributes"}},
       {{0, ""}, {4, ""}}},
  };
}

class EnumerationTest : public testing::TestWithParam<Enumeration> {};

}  // namespace

TEST_P(EnumerationTest, HasTheseWords) {
  Enumeration const& e = GetParam();
  for (auto const& [value, text] : e.words) {
    if (e.toText) {
      EXPECT_EQ(e.toText(value), text);
    }
    if (e.fromText) {
      EXPECT_EQ(e.fromText(text), value);
    }
  }
  for (auto const& [value, text] : e.written) EXPECT_EQ(e.toText(value), text);
  for (auto const& [text, value] : e.read) EXPECT_EQ(e.fromText(text), value) << text;
}

INSTANTIATE_TEST_SUITE_P(All, EnumerationTest, testing::ValuesIn(Enumerations()),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(ParameterValue, RejectsUnknownTypes) {
  ParameterValue value;
  EXPECT_EQ(value.TypeAsString(), "Discrete");
  value.SetType("Numeric");
  EXPECT_EQ(value.TypeAsString(), "Numeric");
  EXPECT_THAT([&] { value.SetType("numeric"); },
              testing::ThrowsMessage<std::runtime_error>(
                  "unknown parameter value type valid types are Numeric and Discrete"));
  EXPECT_EQ(value.GetType(), ParameterValue::Numeric);
}

TEST(Lifecycle, ShutdownEmptiesTheTablesAndInitializeFillsThemAgain) {
  kpxtkLumoServiceLayer::Shutdown();
  kpxtkLumoServiceLayer::Shutdown();
  EXPECT_EQ(TableFilters::FromString("ElementsTablesOnly"), TableFilters::NoFilter);
  EXPECT_EQ(ParameterDetail::ScaleType::FromString("Log"), ParameterDetail::ScaleType::NotSet);
  EXPECT_TRUE(AttributeValue::AccessRegistry().empty());
  kpxtkLumoServiceLayer::Initialize();
  kpxtkLumoServiceLayer::Initialize();
  EXPECT_EQ(TableFilters::FromString("ElementsTablesOnly"), TableFilters::ElementsTablesOnly);
  EXPECT_EQ(ParameterDetail::ScaleType::FromString("Log"), ParameterDetail::ScaleType::Log);
  EXPECT_EQ(AttributeValue::AccessRegistry().size(), 14U);
}

#include <gmock/gmock.h>

#include <functional>
#include <ostream>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "lumo/LumoServiceLayer.h"

namespace {

/// An enumeration by its two text functions; either may be missing.
struct Enumeration {
  char const* name;
  std::function<std::string(int)> toText;
  std::function<int(std::string const&)> fromText;
  int firstValue;
  std::string words;                                 ///< from there on, in every direction
  std::vector<std::pair<int, std::string>> written;  ///< texts of other values
  std::vector<std::pair<std::string, int>> read;     ///< values of other texts
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

Enumeration Row(char const* name, decltype(Enumeration::toText) const& toText,
                decltype(Enumeration::fromText) const& fromText, int firstValue,
                std::string const& words, decltype(Enumeration::written) const& written = {},
                decltype(Enumeration::read) const& read = {}) {
  return {name, toText, fromText, firstValue, words, written, read};
}

std::vector<Enumeration> Enumerations() {
  return {
      Row("TableFilters", Texts(TableFilters::ToString), Values(TableFilters::FromString), 0,
          "NoFilter MaterialsTablesOnly ProcessesTablesOnly SubstancesTablesOnly "
          "LegislationsTablesOnly TransportTypesTablesOnly RegionsTablesOnly "
          "EndOfLifeOptionsTablesOnly EnergyConversionOptionsTablesOnly CoatingsTablesOnly "
          "PartsTablesOnly InHouseTablesOnly SequenceSpecificationsTablesOnly ElementsTablesOnly "
          "UniverseTablesOnly ProducersTablesOnly ShapeTablesOnly ReferenceTablesOnly "
          "MobileUseTypesTablesOnly",
          {{19, ""}, {-1, ""}}, {{"materialsTablesOnly", 0}, {"", 0}, {"NoFilter ", 0}}),
      Row("RecordLinkGroupTypes", Texts(RecordLinkGroupTypes::RecordLinkGroupType_ToString),
          Values(RecordLinkGroupTypes::RecordLinkGroupType_FromString), 0,
          "Unknown static dynamic crossDatabase", {{4, "Unknown"}, {-1, "Unknown"}},
          {{"Static", 0}}),
      Row("ImportErrorModes", Texts(ImportErrorModes::ImportErrorMode_ToString),
          Values(ImportErrorModes::ImportErrorMode_FromString), 0,
          "FaultAndRollbackOnAnyError LogAndContinueWherePossible",
          {{2, "LogAndContinueWherePossible"}}, {{"faultAndRollbackOnAnyError", 1}, {"", 1}}),
      Row("ImportRecordModes", Texts(ImportRecordModes::ImportRecordMode_ToString),
          Values(ImportRecordModes::ImportRecordMode_FromString), 0, "",
          {{0, "update"}, {1, "create"}, {2, "copy"}, {3, ""}},
          {{"Update", 0}, {"Create", 1}, {"Copy", 2}, {"update", 3}, {"create", 3}, {"copy", 3}}),
      Row("RecordLinkCheckModes", Texts(RecordLinkCheckModes::RecordLinkCheckMode_ToString),
          Values(RecordLinkCheckModes::RecordLinkCheckMode_FromString), 0,
          "CheckOnlyForwardLinks CheckForwardAndReverseLinks", {{2, "CheckOnlyForwardLinks"}},
          {{"checkForwardAndReverseLinks", 0}}),
      Row("BinaryDataRepresentations",
          Texts(BinaryDataRepresentations::BinaryDataRepresentation_ToString),
          Values(BinaryDataRepresentations::BinaryDataRepresentation_FromString), 0, "Inline URL",
          {{2, "URL"}}, {{"inline", 1}, {"", 1}}),
      Row("SearchModes", Texts(SearchModes::ToString), {}, 0, "Normal ReadOnly", {{2, ""}}),
      Row("ScaleType", {}, Values(ParameterDetail::ScaleType::FromString), 0, "NotSet Linear Log",
          {}, {{"log", 0}}),
      Row("Interpolation", {}, Values(ParameterDetail::Interpolation::FromString), 0,
          "None Linear CubicSpline", {}, {{"linear", 0}}),
      Row("ParameterType", {}, Values(ParameterDetail::ParameterType::FromString), 0,
          "NumericUnrestricted NumericRestricted Discrete", {}, {{"discrete", 0}}),
      Row("VersionPolicies", Texts(VersionPolicies::VersionPolicy_ToString), {}, 0,
          "LatestRead Latest AllReleased All", {{4, "Unknown"}}),
      Row("ExporterListingModes", Texts(ExporterListingModes::ExporterListingMode_ToString), {}, 1,
          "IncludeAll LatestVersionPerName", {{0, ""}, {3, ""}}),
      Row("GraphDecoration", Texts(GraphDecoration::ToString), Values(GraphDecoration::FromString),
          0, "Lines Markers LinesAndMarkers", {{3, "Markers"}}, {{"lines", 3}}),
      Row("DataPresence", {}, Values(AttributeExporterParameters::DataPresence_FromString), 1,
          "Present NotApplicable Missing DataIncompatibleWithConfiguration", {},
          {{"present", 0}, {"Unknown", 0}}),
      Row("AttributeSelector", Texts(GetTables::AttributeSelector_ToString), {}, 1,
          "NonMetaAttributes MetaAttributes StandardAttributes", {{0, ""}, {4, ""}}),
  };
}

class EnumerationTest : public testing::TestWithParam<Enumeration> {};

}  // namespace

TEST_P(EnumerationTest, HasTheseWords) {
  Enumeration const& e = GetParam();
  std::istringstream words(e.words);
  int value = e.firstValue;
  for (std::string word; words >> word; ++value) {
    EXPECT_EQ(e.toText ? e.toText(value) : word, word);
    EXPECT_EQ(e.fromText ? e.fromText(word) : value, value);
  }
  for (auto const& [other, text] : e.written) EXPECT_EQ(e.toText(other), text);
  for (auto const& [text, other] : e.read) EXPECT_EQ(e.fromText(text), other) << text;
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

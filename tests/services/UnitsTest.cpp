#include <gmock/gmock.h>

#include <stdexcept>

#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(UnitRequests, SendTheirFieldsInOrder) {
  auto const units = GetUnits::CreateOne();
  EXPECT_EQ(Written(*units), "<brow:dbKey/>");
  units->SetDBKey("K");
  EXPECT_EQ(Written(*units), "<brow:dbKey>K</brow:dbKey>");

  auto const systems = GetUnitSystems::CreateOne();
  EXPECT_EQ(Written(*systems),
            "<brow:dbKey/><brow:excludeCurrencies>false</brow:excludeCurrencies>");
  systems->SetExcludeCurrencies(true);
  EXPECT_EQ(Written(*systems),
            "<brow:dbKey/><brow:excludeCurrencies>true</brow:excludeCurrencies>");

  auto const conversions = GetUnitConversions::CreateOne();
  EXPECT_EQ(Written(*conversions),
            "<brow:dbKey/><brow:unitConversionContexts/><brow:sourceUnits/>");
  auto const context = UnitConversionContext::CreateOne();
  context->SetUnitSystem("SI");
  conversions->SetDBKey("K");
  conversions->AddUnitConversionContext(context);
  conversions->AddUnitConversionContext(nullptr);
  conversions->SetSourceCurrency("EUR");
  conversions->AddSourceUnit("MPa");
  conversions->AddSourceUnit("");
  conversions->SetTargetCurrency("USD");
  EXPECT_EQ(Written(*conversions),
            "<brow:dbKey>K</brow:dbKey><brow:unitConversionContexts><brow:unitConversionContext>"
            "<zbt:unitSystem>SI</zbt:unitSystem></brow:unitConversionContext>"
            "<brow:unitConversionContext/></brow:unitConversionContexts><brow:sourceCurrency>EUR"
            "</brow:sourceCurrency><brow:sourceUnits><brow:unitSymbol>MPa</brow:unitSymbol>"
            "<brow:unitSymbol/></brow:sourceUnits><brow:targetCurrency>USD</brow:targetCurrency>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*conversions));
}

TEST(GetUnitsResponse, ReadsUnitsByDatabase) {
  auto const response = Read<GetUnitsResponse>(
      "<r><Databases><Database><dbKey>A</dbKey><Units><Unit symbol='EUR/kg' hasCurrency='true'>"
      "euro per kilogram</Unit><Unit hasCurrency='false'/></Units></Database><b:Database/>"
      "</Databases></r>");
  ASSERT_THAT(response->AccessDatabases(), SizeIs(2));
  DatabaseUnits const& database = *response->AccessDatabases()[0];
  EXPECT_EQ(database.GetDBKey(), "A");
  ASSERT_THAT(database.AccessUnits(), SizeIs(2));
  UnitDetail const& unit = *database.AccessUnits()[0];
  EXPECT_EQ(unit.GetName() + "|" + unit.GetSymbol(), "euro per kilogram|EUR/kg");
  EXPECT_TRUE(unit.GetHasCurrency());
  EXPECT_FALSE(database.AccessUnits()[1]->GetHasCurrency());
  EXPECT_THAT(response->AccessDatabases()[1]->AccessUnits(), IsEmpty());
}

TEST(Currencies, AreReadFromBothReplies) {
  auto const systems = Read<GetUnitSystemsResponse>(
      "<r><dbKey>K</dbKey><unitSystems><unitSystem>SI</unitSystem><unitSystem>US</unitSystem>"
      "</unitSystems><currencies><currency><code>USD</code></currency></currencies></r>");
  EXPECT_EQ(systems->GetDBKey(), "K");
  EXPECT_THAT(systems->AccessUnitSystems(), ElementsAre("SI", "US"));
  EXPECT_EQ(systems->AccessCurrencies().at(0)->GetFactor(), 0);
  auto const currencies = Read<GetCurrenciesResponse>(
      "<r><currency><factor>1.0843</factor><name>US dollar</name><code>USD</code></currency><x/>"
      "<b:currency/></r>");
  ASSERT_THAT(currencies->AccessCurrencies(), SizeIs(2));
  CurrencyDetail const& dollar = *currencies->AccessCurrencies()[0];
  EXPECT_EQ(dollar.GetCode() + dollar.GetName(), "USDUS dollar");
  EXPECT_EQ(dollar.GetFactor(), 1.0843);
  EXPECT_THROW(Read<CurrencyDetail>("<c><factor>one</factor></c>"), std::invalid_argument);
}

TEST(GetUnitConversionsResponse, ReadsContextsAndSourceUnits) {
  auto const response = Read<GetUnitConversionsResponse>(
      "<r><dbKey>K</dbKey><unitConversionContexts><unitConversionContext><UnitConversionContext>"
      "<unitSystem>US</unitSystem></UnitConversionContext><Conversions><Conversion"
      " sourceSymbol='degC' targetSymbol='degF'><Factor>1.8</Factor><Offset>32</Offset>"
      "</Conversion></Conversions></unitConversionContext></unitConversionContexts><sourceUnits>"
      "<sourceUnit sourceSymbol='MPa'><Conversion targetSymbol='ksi'><Factor>0.145</Factor>"
      "</Conversion><Conversion/></sourceUnit></sourceUnits></r>");
  EXPECT_EQ(response->GetDBKey(), "K");
  UnitConversion const& us = *response->AccessUnitConversionContexts().at(0);
  EXPECT_EQ(us.GetUnitConversionContext()->GetUnitSystem(), "US");
  Conversion const& fahrenheit = *us.AccessConversions().at(0);
  EXPECT_EQ(fahrenheit.GetSourceSymbol() + fahrenheit.GetTargetSymbol(), "degCdegF");
  EXPECT_EQ(fahrenheit.GetFactor(), 1.8);
  EXPECT_EQ(fahrenheit.GetOffset(), 32);
  SourceUnit const& pressure = *response->AccessSourceUnits().at(0);
  EXPECT_EQ(pressure.GetSourceSymbol(), "MPa");
  ASSERT_THAT(pressure.AccessConversions(), SizeIs(2));
  EXPECT_EQ(pressure.AccessConversions()[0]->GetTargetSymbol(), "ksi");
  EXPECT_EQ(pressure.AccessConversions()[0]->GetOffset(), 0);
}

// The language of conditions: what is read, what is refused and with which words, what is judged
// here, and that a server and this side find the same records.

#include <gmock/gmock.h>

#include <map>

#include "lumo/toolkit/Condition.h"
#include "lumo/toolkit/ConditionNode.h"
#include "tests/toolkit/Support.h"

using lumo::AttributeType;
using lumo::Condition;
using lumo::ErrorCode;
using lumo::Match;
using lumo::Value;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;

namespace {

std::vector<lumo::Attribute> const& Attributes() {
  static std::vector<lumo::Attribute> const attributes = [] {
    std::vector<lumo::Attribute> all = {
        AttributeNamed("Density", AttributeType::Range, "kg/m^3"),
        AttributeNamed("Young's modulus", AttributeType::Range, "GPa"),
        AttributeNamed("Yield strength (elastic limit)", AttributeType::Range, "MPa"),
        AttributeNamed("Yield strength against temperature", AttributeType::Curve, "MPa"),
        AttributeNamed("Elongation", AttributeType::Range, "%"),
        AttributeNamed("Hardness - Vickers", AttributeType::Number, "HV"),
        AttributeNamed("Number of suppliers", AttributeType::Integer),
        AttributeNamed("Recyclable", AttributeType::Logical),
        AttributeNamed("Durability: sea water", AttributeType::Discrete),
        AttributeNamed("Last reviewed", AttributeType::Date),
        AttributeNamed("Typical uses", AttributeType::LongText),
        AttributeNamed("Heat and cold", AttributeType::Text),
        AttributeNamed("Heat", AttributeType::Text),
        AttributeNamed("Not for sale", AttributeType::Logical),
        AttributeNamed("Data sheet", AttributeType::Link),
        AttributeNamed("Melting point", AttributeType::Range, "degC"),
        AttributeNamed("Composition", AttributeType::Grid),
    };
    all[8].words = {"Excellent", "Acceptable", "Limited use", "Bad and worse"};
    all.back().columns = {{"Element", AttributeType::Text}, {"Most", AttributeType::Number, "%"}};
    return all;
  }();
  return attributes;
}

Condition Read(std::string const& text, Match match = Match::Overlap) {
  return Condition(text, Attributes(), SomeUnits(), match);
}

/// A record of an aluminium alloy.
Value const& OfAlloy(std::string const& attribute) {
  static std::map<std::string, Value> const values = [] {
    lumo::Curve curve;
    curve.y = {276, 12};
    curve.x = {24, 371};
    curve.yUnit = "MPa";
    lumo::Grid grid;
    grid.columns = {{"Element", ""}, {"Most", "%"}};
    grid.rows = {{{std::string("Al"), lumo::Quantity{98.6, "%"}}, "", {}},
                 {{std::string("Cr"), Value()}, "", {}}};
    return std::map<std::string, Value>{
        {"Density", lumo::Range{2690.0, 2730.0, "kg/m^3"}},
        {"Young's modulus", lumo::Range{68.0, 70.0, "GPa"}},
        {"Yield strength (elastic limit)", lumo::Range{240.0, std::nullopt, "MPa"}},
        {"Yield strength against temperature", lumo::Curves{{curve}}},
        {"Hardness - Vickers", lumo::Quantity{107, "HV"}},
        {"Number of suppliers", std::int64_t{14}},
        {"Recyclable", true},
        {"Durability: sea water", std::vector<std::string>{"Limited use", "Acceptable"}},
        {"Last reviewed", lumo::DateTime{"2026-03-17T09:30:00"}},
        {"Typical uses", std::string("Aircraft structures\nand frames")},
        {"Heat and cold", lumo::NotApplicable()},
        {"Melting point", lumo::Range{582.0, 650.0, "degC"}},
        {"Data sheet", lumo::Link{"https://www.example.com/6061", "Producer"}},
        {"Composition", std::make_shared<lumo::Grid const>(std::move(grid))}};
  }();
  static Value const none;
  auto const found = values.find(attribute);
  return found == values.end() ? none : found->second;
}

char const* Word(std::optional<bool> const& judgement) {
  return judgement ? (*judgement ? "yes" : "no") : "unknown";
}

struct Case {
  char const* condition;
  char const* holds;
};

class Judged : public testing::TestWithParam<Case> {};

TEST_P(Judged, AsItSays) {
  EXPECT_STREQ(Word(Read(GetParam().condition).Judge(OfAlloy)), GetParam().holds)
      << GetParam().condition;
}

INSTANTIATE_TEST_SUITE_P(
    Conditions, Judged,
    testing::Values(
        // a range by overlap, at its ends
        Case{"density < 2690 kg/m^3", "no"}, Case{"density <= 2690 kg/m^3", "yes"},
        Case{"density<2700kg/m^3", "yes"}, Case{"density > 2730 kg/m^3", "no"},
        Case{"density >= 2730 kg/m^3", "yes"}, Case{"density = 2.7 g/cm^3", "yes"},
        Case{"density != 2.7 g/cm^3", "no"}, Case{"density == 3 g/cm^3", "no"},
        Case{"density <> 3 g/cm^3", "yes"}, Case{"density between 2.72 and 3 g/cm^3", "yes"},
        Case{"density between 2000 kg/m^3 and 2.6 g/cm^3", "no"},
        Case{"density > -1e-3 lb/in^3", "yes"},
        // an end is found by the figure that it shows in another unit, however that is rounded
        Case{"melting point >= 1202 degF", "yes"}, Case{"melting point > 1202 degF", "no"},
        Case{"melting point >= 923.15 K", "yes"}, Case{"melting point < 855.15 K", "no"},
        Case{"density >= 0.0986275 lb/in^3", "yes"}, Case{"density > 0.0986275 lb/in^3", "no"},
        Case{"melting point between 1202 and 1300 degF", "yes"},
        // the contrary of some part is the whole
        Case{"not density < 2700 kg/m^3", "no"}, Case{"not density < 2600 kg/m^3", "yes"},
        // open ends, points, curves, integers
        Case{"yield strength (e > 1 GPa", "yes"}, Case{"yield strength (elastic < 240 MPa", "no"},
        Case{"strength against < 20 MPa", "yes"}, Case{"strength against > 280 MPa", "no"},
        Case{"hardness > 106.5 HV", "yes"}, Case{"number of suppliers = 14", "yes"},
        Case{"suppliers < 13.5", "no"},
        // products, in whatever units the server has for the factors
        Case{"young's modulus / density > 0.025 GPa.m^3/kg", "yes"},
        Case{"young's modulus / density > 0.027 GPa.m^3/kg", "no"},
        Case{"young / density > 25 MPa.m^3/kg", "yes"},
        Case{"young / density > 25 GPa.cm^3/g", "yes"},
        Case{"young / density > 26.1 GPa/(g/cm^3)", "no"},
        Case{"young^0.5 / density > 3 GPa^0.5.cm^3/g", "yes"},
        Case{"young * density > 180 GPa.g/cm^3", "yes"},
        Case{"elastic / young > 3.4 MPa/GPa", "yes"},
        Case{"elongation / density > 1 %.m^3/kg", "unknown"},
        Case{"melting point / melting point > 1.1", "no"},  // 2.1 in degC would be
        // words, yes and no, texts
        Case{"recyclable", "yes"}, Case{"not recyclable", "no"}, Case{"recyclable = no", "no"},
        Case{"durability = excellent|limited use", "yes"}, Case{"durability = bad and worse", "no"},
        Case{"sea water != Excel and recyclable", "yes"},
        Case{"typical uses contains aircraft", "yes"}, Case{"typical uses lacks boats", "yes"},
        Case{"typical uses contains \"structures\nand\"", "yes"},
        Case{"typical uses = aircraft structures", "no"},
        Case{"typical uses = 'aircraft structures\nand frames'", "yes"},
        Case{"data sheet contains producer", "yes"}, Case{"composition contains Cr", "yes"},
        // columns: in any row
        Case{"composition[element] contains c", "yes"}, Case{"composition[elem] = al", "yes"},
        Case{"composition[Element] lacks Al", "no"}, Case{"composition[Element] lacks Zn", "yes"},
        Case{"composition[Most] > 98 %", "yes"}, Case{"composition[Most] < 98 %", "no"},
        Case{"composition[Most] exists", "yes"},
        // dates: all of the day, the month, the year
        Case{"last reviewed = 2026-03-17", "yes"}, Case{"last reviewed = 2026-03", "yes"},
        Case{"last reviewed = 2026", "yes"}, Case{"last reviewed != 2026", "no"},
        Case{"last reviewed < 2026-03-17", "no"}, Case{"last reviewed <= 2026-03-17", "yes"},
        Case{"last reviewed > 2026-03-17", "no"}, Case{"last reviewed >= 2026-03-17", "yes"},
        Case{"last reviewed < 2026-03-17T09:30:01", "yes"},
        Case{"last reviewed > 2026-03-17T09:29", "yes"},
        Case{"last reviewed between 2025 and 2026-03", "yes"}, Case{"last reviewed > 9999", "no"},
        Case{"last reviewed <= 2025-12", "no"},
        // what is missing, or not applicable, fulfils nothing and nothing's contrary
        Case{"elongation > 5 %", "unknown"}, Case{"not elongation > 5 %", "unknown"},
        Case{"elongation exists", "no"}, Case{"elongation is  missing", "yes"},
        Case{"heat and cold = x", "unknown"}, Case{"heat and cold exists", "no"},
        Case{"heat lacks x", "yes"}, Case{"not not for sale", "unknown"},
        Case{"elongation > 5 % or recyclable", "yes"},
        Case{"elongation > 5 % and recyclable", "unknown"},
        Case{"elongation > 5 % and not recyclable", "no"},
        // "and" before "or", parentheses before both
        Case{"recyclable or recyclable and not recyclable", "yes"},
        Case{"(recyclable or recyclable) and not recyclable", "no"},
        Case{"NOT ((not recyclable)) AND density > 1 g/cm^3", "yes"},
        Case{"(yield strength (elastic limit) > 200 MPa)", "yes"},
        Case{"\"density\" > 1 g/cm^3 and 'Heat and cold' is missing", "yes"}));

TEST(Condition, MeetsTheWholeOfARangeWhenAsked) {
  Case const cases[] = {{"density < 2700 kg/m^3", "no"},
                        {"density <= 2730 kg/m^3", "yes"},
                        {"density between 2 and 3 g/cm^3", "yes"},
                        {"density between 2700 and 3000 kg/m^3", "no"},
                        {"not density < 2700 kg/m^3", "yes"},
                        {"density != 2700 kg/m^3", "no"},
                        {"density != 2800 kg/m^3", "yes"},
                        {"yield strength (el > 200 MPa", "yes"},
                        {"yield strength (el < 900 MPa", "no"},
                        {"young / density > 0.025 GPa.m^3/kg", "no"},
                        {"young / density > 0.024 GPa.m^3/kg", "yes"}};
  for (Case const& one : cases) {
    EXPECT_STREQ(Word(Read(one.condition, Match::All).Judge(OfAlloy)), one.holds) << one.condition;
  }
}

TEST(Condition, NamesTheAttributesThatItLooksAt) {
  Condition const both = Condition::Both(Read("young / density > 0.025 GPa.m^3/kg"),
                                         Read("recyclable or density > 1 g/cm^3"));
  EXPECT_THAT(both.Attributes(), ElementsAre("Density", "Recyclable", "Young's modulus"));
  EXPECT_THAT(both.Judge(OfAlloy), Optional(true));
}

struct Refusal {
  char const* condition;
  int column;
  char const* says;
};

TEST(Condition, IsRefusedWithThePlaceOfTheFault) {
  Refusal const refusals[] = {
      {"", 1, "an attribute is missing"},
      {"density", 8, "is missing"},
      {"density < 300,5 kg/m^3", 11, "\"300,5\" is not a number; numbers are written as 300.5"},
      {"density < 3,000 kg/m^3", 11, "numbers are written as 3000 or 3.000"},
      {"density < 1,234,567 kg/m^3", 11, "numbers are written as 1234567"},
      {"density < many kg/m^3", 11, "\"many\" is not a number"},
      {"density <", 10, "a number is missing"},
      {"yield strength (el = 300 to 400 MPa", 22, "\"between A and B\""},
      {"yield strength (el = 300-400 MPa", 22, "\"between A and B\""},
      {"yield strength (el = 300..400 MPa", 22, "\"between A and B\""},
      {"density < 3000", 15, "needs a unit: 3000 kg/m^3"},
      {"density < 3 000 kg/m^3", 13, "\"000 kg/m^3\" is not a unit"},
      {"density < 3000 MPa", 16, "can be given in kg/m^3, g/cm^3, lb/in^3"},
      {"elongation > 10", 16, "10 %"},
      {"number of suppliers > 3 pieces", 25, "has no unit"},
      {"density between 3 and 2 g/cm^3", 9, "is the larger one"},
      {"density between 3 g/cm^3", 25, "has no \"and\""},
      {"young / density > 0.025", 24, "given in GPa.m^3/kg"},
      {"young / density > 0.025 MPa", 25, "given in GPa.m^3/kg"},
      {"young / density = 0.025 GPa.m^3/kg", 17, "<, <=, > and >="},
      {"melting point / density > 0.3 degC.m^3/kg", 31, "given in K.m^3/kg"},
      {"young / recyclable > 3", 1, "cannot stand in a product"},
      {"young ^ 0 / density > 3", 9, "must not be 0"},
      {"recyclable = perhaps", 14, "neither yes nor no"},
      {"recyclable > no", 14, "has no order"},
      {"durability = ugly", 14, "there is no word \"ugly\""},
      {"typical uses > x", 16, "has no order"},
      {"data sheet = x", 14, "cannot be compared"},
      {"density contains 3", 18, "contains no text"},
      {"typical uses contains", 22, "no text to look for"},
      {"typical uses contains nuts and bolts", 32, "quotation marks"},
      {"typical uses contains \"nuts", 23, "is not closed"},
      {"last reviewed > yesterday", 17, "2026-03-17"},
      {"last reviewed > 2026-02-30", 17, "is not a date"},
      {"last reviewed between 2026 and 2025", 15, "later one"},
      {"composition[Colour] = red", 13, "there is no column \"Colour\""},
      {"density[x] > 3 g/cm^3", 9, "has no columns"},
      {"(recyclable", 1, "is not closed"},
      {"recyclable)", 11, "goes on"},
      {"recyclable and", 15, "an attribute is missing"},
      {"not", 4, "an attribute is missing"},
      {"Größe > 5", 1, "there is no attribute \"Größe\""},
      {"recyclable and größe > 5", 16, "there is no attribute \"größe\""},
  };
  for (Refusal const& one : refusals) {
    lumo::Error const error = ErrorOf([&] { Read(one.condition); });
    EXPECT_THAT(error.what(), AllOf(HasSubstr("at column " + std::to_string(one.column) + ": "),
                                    HasSubstr(one.says)))
        << one.condition;
  }
  EXPECT_EQ(ErrorOf([] { Read("yield strength > 5 MPa"); }).Code(), ErrorCode::Ambiguous);
  EXPECT_EQ(ErrorOf([] { Read("densty > 5 MPa"); }).Code(), ErrorCode::NotFound);
  EXPECT_THAT(ErrorOf([] { Read("densty > 5 MPa"); }).Hint().arguments, ElementsAre("Density"));
  EXPECT_THAT(ErrorOf([] { Read(std::string(5000, '(') + "recyclable"); }).what(),
              HasSubstr("nested too deeply"));
}

TEST(Condition, IsReadOrRefusedWhateverItsTokens) {
  constexpr char const* kTokens[] = {
      "density", "young",     "recyclable", "composition", "durability", "last reviewed",
      "heat",    "(",         ")",          "[",           "]",          "Element",
      "and",     "or",        "not",        "<",           ">=",         "!=",
      "=",       "between",   "contains",   "lacks",       "exists",     "is missing",
      "*",       "/",         "^",          "|",           "3000",       "-1e9",
      "2,5",     "kg/m^3",    "GPa",        "g/cm^3",      "%",          "2026-03-17",
      "2026",    "Excellent", "\"",         "'",           "ö",          "\xff",
      " ",       "Limited",   "use",        "yes",         "to",         ".."};
  unsigned seed = 1;
  auto const next = [&seed](std::size_t end) {
    seed = seed * 1664525U + 1013904223U;
    return (seed >> 8U) % end;
  };
  std::size_t read = 0;
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (std::size_t left = 1 + next(12); left > 0; --left) {
      text += kTokens[next(std::size(kTokens))];
      if (next(4) != 0) text += ' ';
    }
    try {
      Read(text).Judge(OfAlloy);
      ++read;
    } catch (lumo::Error const& error) {
      ASSERT_THAT(error.what(), HasSubstr("at column ")) << text;
    }
  }
  EXPECT_GT(read, 100u);
}

TEST(UnitFactors, TellWhatSymbolsSay) {
  using lumo::FactorsOf;
  EXPECT_EQ(FactorsOf("W/m.K"), FactorsOf("W/(m.K)"));
  EXPECT_EQ(FactorsOf("GPa/(kg/m^3)"), FactorsOf("GPa.m^3/kg"));
  EXPECT_EQ(FactorsOf("(MPa.m^0.5)^2"), FactorsOf("MPa^2.m"));
  EXPECT_EQ(FactorsOf("lb/lb"), FactorsOf(""));
  EXPECT_EQ(lumo::SymbolOf(FactorsOf("BTU.ft/h.ft^2.degF")), "BTU/degF.ft.h");
  EXPECT_EQ(lumo::SymbolOf(FactorsOf("10^6 psi")), "10^6.psi");
  EXPECT_EQ(lumo::SymbolOf(FactorsOf("m^-2")), "1/m^2");
  EXPECT_EQ(FactorsOf(std::string(100000, '(')).size(), 0u);
  EXPECT_EQ(FactorsOf("a^b)").size(), 2u);
}

}  // namespace

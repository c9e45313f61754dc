// What the server judges of a condition and what is judged here, on a sandbox with its full
// content; and all its values as columns.

#include <gmock/gmock.h>

#include <map>
#include <set>

#include "lumo/toolkit/Columns.h"
#include "lumo/toolkit/ConditionPlan.h"
#include "lumo/toolkit/DataValues.h"
#include "tests/toolkit/Sandbox.h"
#include "tests/toolkit/Support.h"

using lumo::Condition;
using lumo::Match;
using lumo::Value;

namespace {

using Values = std::map<std::string, Value>;

class Search : public SandboxTest {
 protected:
  Condition Read(std::string const& text, Match match) {
    return Condition(text, Materials().Attributes(Link()), Materials().KnownUnits(Link()), match);
  }

  /// All values of the records, by their identities.
  static std::map<int, Values> ReadAll(std::vector<lumo::RecordHead> const& records,
                                       std::vector<lumo::Attribute> const& attributes) {
    std::map<int, Values> all;
    auto const request = GetRecordAttributesByRefRequest::CreateOne();
    for (auto const& record : records) request->AddRecordReference(lumo::ReferenceTo(record.id));
    std::map<std::string, lumo::Attribute const*> known;
    for (lumo::Attribute const& attribute : attributes) {
      request->AddAttributeReference(Materials().ReferenceTo(attribute));
      known[attribute.name] = &attribute;
    }
    auto const found = Link().Ask<GetRecordAttributesByRefResponse>([&](auto* into) {
      Link().Export()->GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(request,
                                                                                       into);
    });
    for (auto const& data : found->AccessRecordData()) {
      Values& values = all[data->GetRecordReference()->GetIdentity()];
      for (auto const& value : data->AccessAttributeValues()) {
        std::string const& name = value->GetAttributeName();
        values[name] = lumo::FromDataValue(value->GetDataValue().get(), known.at(name));
      }
    }
    return all;
  }

  static std::vector<lumo::RecordHead> AllRecords() {
    lumo::TreeWalk walk(Link(), Materials(), "", "");
    std::vector<lumo::RecordHead> records;
    for (lumo::TreeWalk::Step step; walk.Next(Link(), step, 100);) {
      if (!step.isFolder) records.push_back(step.record);
    }
    return records;
  }
};

struct Case {
  char const* condition;
  bool isOfServer;  ///< alone
};

constexpr Case kCases[] = {
    {"density < 3000 kg/m^3", true},
    {"density >= 0.3 lb/in^3", true},
    {"density between 2 and 3 g/cm^3 and recyclable = yes", true},
    {"not density < 3000 kg/m^3", false},
    {"density != 7850 kg/m^3", false},
    {"not (density < 3000 kg/m^3 or recyclable)", false},
    {"young's modulus / density > 0.025 GPa.m^3/kg", false},
    {"young's modulus / density > 25 GPa.cm^3/g and price < 5 USD/kg", false},
    {"density < 1 g/cm^3 or melting point > 3000 K", true},
    {"density < 1 g/cm^3 or young's modulus^0.5 / density > 5 GPa^0.5.cm^3/g", false},
    {"durability = Excellent|Acceptable", true},
    {"sea water != Excellent", false},
    {"typical uses contains aircraft", true},
    {"typical uses lacks aircraft and typical uses exists", true},
    {"not typical uses contains aircraft", false},
    {"designation = en 1.4301 (x5crni18-10)", false},
    {"data sheet exists or photo exists", true},
    {"elongation is missing", true},
    {"last reviewed >= 2026-01-20", true},
    {"last reviewed < 2026-01-20", true},
    {"last reviewed = 2025-11", true},
    {"not last reviewed <= 2025-11-02T14:00", true},
    {"last reviewed != 2025", false},
    {"number of suppliers = 14", true},
    {"number of suppliers > 9 and number of suppliers <= 22", true},
    {"composition[Element] contains Cr", true},
    {"composition[Most] > 20 %", false},
    {"not composition[Element] contains Al", false},
    {"yield strength against > 900 MPa", true},
    {"hardness by condition > 100 HV", true},
    {"not recyclable", true},
    {"elongation > 30 % and (density < 3 g/cm^3 or price < 1 EUR/kg) and not maximum > 400 degC",
     false},
};

TEST_F(Search, FindsTheSameOnTheServerAndHere) {
  std::vector<lumo::RecordHead> const records = AllRecords();
  std::map<int, Values> const all = ReadAll(records, Materials().Attributes(Link()));
  ASSERT_GT(all.size(), 200u);
  std::size_t readings = 0;
  lumo::ValueReader const read = [&](auto const& some, auto const& names, auto const& take) {
    ++readings;
    for (std::size_t i = 0; i < some.size(); ++i) {
      std::vector<Value> values;
      for (std::string const& name : names) {
        Values const& of = all.at(some[i].id.identity);
        values.push_back(of.count(name) == 0 ? Value() : of.at(name));
      }
      take(i, values);
    }
  };
  static Value const none;
  for (Match const match : {Match::Overlap, Match::All}) {
    for (Case const& one : kCases) {
      Condition const condition = Read(one.condition, match);
      std::set<int> here;
      for (auto const& [identity, values] : all) {
        auto const judged =
            condition.Judge([&values = values](std::string const& name) -> Value const& {
              auto const found = values.find(name);
              return found == values.end() ? none : found->second;
            });
        if (judged.value_or(false)) here.insert(identity);
      }
      readings = 0;
      std::set<int> there;
      for (auto const& record : lumo::FindWhere(Link(), Materials(), condition, "", read)) {
        EXPECT_TRUE(there.insert(record.id.identity).second) << "twice: " << record.name;
      }
      EXPECT_EQ(there, here) << one.condition;
      if (match == Match::All) continue;
      EXPECT_FALSE(here.empty()) << one.condition;
      EXPECT_LT(here.size(), records.size()) << one.condition;
      EXPECT_EQ(readings == 0, one.isOfServer) << one.condition;
    }
  }
}

TEST_F(Search, KeepsToASubset) {
  Condition const condition = Read("density > 1 g/cm^3", Match::Overlap);
  auto const inSubset = lumo::FindWhere(Link(), Materials(), condition, "polymers", nullptr);
  auto const inAll = lumo::FindWhere(Link(), Materials(), condition, "", nullptr);
  EXPECT_GT(inSubset.size(), 10u);
  EXPECT_LT(inSubset.size(), inAll.size());
}

TEST_F(Search, TellsTheUnitsThatTheServerHas) {
  lumo::Error const error =
      ErrorOf([&] { Read("young's modulus / density > 0.025", Match::Overlap); });
  EXPECT_THAT(error.what(), testing::HasSubstr("GPa.m^3/kg"));
}

TEST_F(Search, ReadsAllOfATableIntoColumns) {
  std::vector<lumo::RecordHead> const records = AllRecords();
  std::vector<lumo::Attribute> const& attributes = Materials().Attributes(Link());
  std::map<int, Values> const all = ReadAll(records, attributes);
  lumo::UnitSystem const si = Materials().SystemOf(Link(), "SI", "");
  lumo::Units const& units = Materials().KnownUnits(Link());
  lumo::ColumnBuilder wide = lumo::ColumnBuilder::Wide(attributes, units, si);
  std::map<std::string, std::size_t> rows;  // of the long forms
  for (lumo::RecordHead const& record : records) {
    std::vector<Value> values;
    for (lumo::Attribute const& attribute : attributes) {
      Values const& of = all.at(record.id.identity);
      values.push_back(of.count(attribute.name) == 0 ? Value() : of.at(attribute.name));
    }
    wide.Add(record, values);
  }
  auto const columns = wide.Take();
  EXPECT_EQ(columns->rows, records.size());
  lumo::Column const& melting = *columns->Find("Melting point.low");
  EXPECT_EQ(melting.field.unit, "K");
  for (std::size_t i = 0; i < records.size(); ++i) {
    Values const& of = all.at(records[i].id.identity);
    auto const held = of.find("Melting point");
    ASSERT_EQ(melting.IsValid(i), held != of.end());
    if (held == of.end()) continue;
    ASSERT_NEAR(melting.numbers[i], *std::get<lumo::Range>(held->second).low + 273.15, 1e-9);
  }
  for (lumo::Attribute const& attribute : attributes) {
    if (attribute.type != lumo::AttributeType::Curve &&
        attribute.type != lumo::AttributeType::Grid &&
        attribute.type != lumo::AttributeType::Number) {
      continue;
    }
    lumo::ColumnBuilder longForm = lumo::ColumnBuilder::Long(attribute, units, si);
    for (lumo::RecordHead const& record : records) {
      Values const& of = all.at(record.id.identity);
      auto const held = of.find(attribute.name);
      if (held != of.end()) longForm.Add(record, {held->second});
    }
    rows[attribute.name] = longForm.Rows();
  }
  EXPECT_GT(rows["Yield strength against temperature"], 30u);
  EXPECT_GT(rows["Composition"], 30u);
  EXPECT_GE(rows["Hardness by condition"], 3u);
  EXPECT_GE(rows["Fatigue strength by temperature"], 3u);
}

}  // namespace

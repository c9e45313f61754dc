// What the sandbox holds with its full content makes sense.

#include <map>
#include <optional>
#include <set>

#include "tests/sandbox/Sandbox.h"

namespace {

using Values = std::map<std::string, SmartPtr<IDataValue>>;

struct Leaf {
  SmartPtr<TreeRecord> record;
  std::string folder;  ///< such as "Polymers/Thermoplastics"
};

void Collect(std::vector<SmartPtr<TreeRecord>> const& tree, std::string const& folder,
             std::vector<Leaf>& leaves) {
  for (auto const& record : tree) {
    if (record->GetType() == "Record") leaves.push_back({record, folder});
    Collect(record->AccessChildren(),
            folder.empty() ? record->GetShortName() : folder + "/" + record->GetShortName(),
            leaves);
  }
}

std::vector<Leaf> RecordsOf(std::string const& table, std::string const& dbKey) {
  auto const top = GetRootNode::CreateOne();
  top->SetTable(TableNamed(table, dbKey));
  GetRootNodeResponse root;
  Browse()->GetGetRootNodeImpl()->RequestRootNode(top, &root);
  auto const below = GetChildNodes::CreateOne();
  below->SetParent(root.GetRootNode()->GetRecordReference());
  below->SetRecurse(true);
  GetChildNodesResponse children;
  Browse()->GetGetChildNodesImpl()->RequestChildNodes(below, &children);
  EXPECT_TRUE(IsFine(children));
  std::vector<Leaf> leaves;
  Collect(children.AccessTreeRecords(), "", leaves);
  return leaves;
}

struct Entry {
  std::string folder;
  Values values;  ///< by the names of their attributes

  bool IsIn(std::string const& top) const { return folder.compare(0, top.size(), top) == 0; }
  RangeDataType const* Range(std::string const& attribute) const {
    auto const found = values.find(attribute);
    return found == values.end() ? nullptr
                                 : dynamic_cast<RangeDataType const*>(found->second.get());
  }
  /// Middle of the range; nothing without a value.
  std::optional<double> Middle(std::string const& attribute) const {
    RangeDataType const* const range = Range(attribute);
    if (range == nullptr) return std::nullopt;
    return (range->GetLow() + range->GetHigh()) / 2;
  }
  double FirstPoint(std::string const& attribute) const {
    return dynamic_cast<PointDataType const&>(*values.at(attribute))
        .AccessPoints()
        .at(0)
        ->GetValue();
  }
};

/// Every record by its name.
std::map<std::string, Entry> EntriesOf(std::string const& table, std::string const& dbKey,
                                       std::vector<std::string> const& attributes) {
  auto const records = RecordsOf(table, dbKey);
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  for (auto const& name : attributes) {
    request->AddAttributeReference(AttributeNamed(name, table));
    request->AccessAttributeReferences().back()->SetDBKey(dbKey);
  }
  for (auto const& record : records)
    request->AddRecordReference(record.record->GetRecordReference());
  GetRecordAttributesByRefResponse response;
  Services()
      .GetDataExportService()
      ->GetRecordAttributesByRefImplPtr()
      ->RequestRecordAttributesByRef(request, &response);
  EXPECT_TRUE(IsFine(response));
  std::map<std::string, Entry> all;
  for (std::size_t i = 0; i < response.AccessRecordData().size(); ++i) {
    Entry& entry = all[records[i].record->GetShortName()];
    entry.folder = records[i].folder;
    for (auto const& value : response.AccessRecordData()[i]->AccessAttributeValues()) {
      entry.values[value->GetAttributeName()] = value->GetDataValue();
    }
  }
  EXPECT_EQ(all.size(), records.size()) << "a name occurs twice in " << table;
  return all;
}

}  // namespace

TEST(FullContent, MaterialsHoldSensibleFigures) {
  int composed = 0;
  int curves = 0;
  auto const materials = EntriesOf(
      "Materials", kMaterials,
      {"Density", "Price", "Young's modulus", "Yield strength (elastic limit)", "Tensile strength",
       "Elongation", "Fracture toughness", "Hardness - Vickers", "Melting point",
       "Maximum service temperature", "Thermal conductivity", "Specific heat capacity",
       "Electrical resistivity", "CO2 footprint, primary production", "Composition",
       "Yield strength against temperature", "Stress strain curve",
       "Young's modulus against temperature"});
  EXPECT_GE(materials.size(), 150U);
  for (auto const& [name, entry] : materials) {
    for (auto const& [attribute, value] : entry.values) {
      SCOPED_TRACE(name + ": " + attribute);
      if (auto const* const range = dynamic_cast<RangeDataType const*>(value.get())) {
        EXPECT_LE(range->GetLow(), range->GetHigh());
      } else if (auto const* const table = dynamic_cast<TabularDataType const*>(value.get())) {
        ++composed;
        double sums[2] = {0, 0};
        for (auto const& row : table->GetRows()) {
          auto const figure = [&](std::size_t i) {
            auto const& cell = dynamic_cast<PointDataType&>(*row->At(i)->GetData());
            return cell.AccessPoints().at(0)->GetValue();
          };
          EXPECT_LE(figure(1), figure(2));
          sums[0] += figure(1);
          sums[1] += figure(2);
        }
        EXPECT_LE(sums[0], 100.001);
        EXPECT_GE(sums[1], 95);
      } else if (auto const* const curve =
                     dynamic_cast<FloatFunctionalSeriesDataType const*>(value.get())) {
        ++curves;
        double last = -274;
        for (auto const& point :
             curve->GetGraph()->AccessSeries().at(0)->GetXYPoints()->AccessPoints()) {
          EXPECT_LT(last, point->GetX()->GetValue_Numeric());
          last = point->GetX()->GetValue_Numeric();
        }
      }
    }
  }
  EXPECT_GE(composed, 40);
  EXPECT_GE(curves, 12);
}

namespace {

std::map<std::string, Entry> const& Materials() {
  static auto const materials = EntriesOf(
      "Materials", kMaterials,
      {"Density", "Young's modulus", "Poisson's ratio", "Shear modulus",
       "Yield strength (elastic limit)", "Tensile strength", "Compressive strength",
       "Melting point", "Glass transition temperature", "Maximum service temperature",
       "Thermal conductivity", "Electrical resistivity", "Young's modulus against temperature"});
  return materials;
}

}  // namespace

TEST(FullContent, StrengthsAreInTheirOrder) {
  for (auto const& [name, entry] : Materials()) {
    SCOPED_TRACE(name);
    auto const* const yield = entry.Range("Yield strength (elastic limit)");
    auto const* const tensile = entry.Range("Tensile strength");
    ASSERT_NE(tensile, nullptr);
    if (yield != nullptr) {
      EXPECT_LE(yield->GetLow(), tensile->GetLow());
      EXPECT_LE(yield->GetHigh(), tensile->GetHigh());
    }
    bool const isFibre = name.find("fibre") != std::string::npos;
    if (!entry.IsIn("Ceramics and glasses") || isFibre) continue;
    EXPECT_EQ(yield, nullptr) << "brittle materials break before they yield";
    EXPECT_GT(entry.Middle("Compressive strength"), 2 * *entry.Middle("Tensile strength"));
  }
}

TEST(FullContent, NothingServesWhereItMeltsOrSoftens) {
  // Cross-linked too densely, or crystallised, to have one.
  std::set<std::string> const withoutTransition = {"Melamine", "Melamine foam", "Glass ceramic"};
  for (auto const& [name, entry] : Materials()) {
    SCOPED_TRACE(name);
    auto const* const service = entry.Range("Maximum service temperature");
    auto const* const melting = entry.Range("Melting point");
    auto const* const transition = entry.Range("Glass transition temperature");
    ASSERT_NE(service, nullptr);
    bool const isGlassy = entry.IsIn("Polymers") || entry.IsIn("Ceramics and glasses/Glasses");
    EXPECT_EQ(transition != nullptr, isGlassy && withoutTransition.count(name) == 0);
    if (melting != nullptr) {
      EXPECT_LT(service->GetHigh(), melting->GetLow());
    } else if (transition != nullptr && transition->GetLow() > 20) {  // not a rubber
      EXPECT_LE(service->GetLow(), transition->GetLow());
      EXPECT_LE(service->GetHigh(), transition->GetHigh());
    }
    if (melting != nullptr && transition != nullptr) {
      EXPECT_LT(transition->GetHigh(), melting->GetLow());
    }
  }
}

TEST(FullContent, ElasticConstantsAgree) {
  int compared = 0;
  for (auto const& [name, entry] : Materials()) {
    SCOPED_TRACE(name);
    bool const hasDirection = entry.IsIn("Composites") || entry.IsIn("Natural materials") ||
                              name == "Single-crystal superalloy";
    auto const modulus = entry.Middle("Young's modulus");
    auto const shear = entry.Middle("Shear modulus");
    auto const ratio = entry.Middle("Poisson's ratio");
    if (ratio) {
      EXPECT_GE(*ratio, 0);
      EXPECT_LE(*ratio, 0.5);
    }
    if (hasDirection || !ratio) continue;
    ++compared;
    ASSERT_TRUE(modulus && shear);
    EXPECT_NEAR(2 * *shear * (1 + *ratio) / *modulus, 1, 0.1);
  }
  EXPECT_GE(compared, 230);
}

TEST(FullContent, ModulusFallsWithTemperature) {
  int curves = 0;
  for (auto const& [name, entry] : Materials()) {
    SCOPED_TRACE(name);
    auto const found = entry.values.find("Young's modulus against temperature");
    if (found == entry.values.end()) continue;
    ++curves;
    auto const& curve = dynamic_cast<FloatFunctionalSeriesDataType const&>(*found->second);
    auto const& points = curve.GetGraph()->AccessSeries().at(0)->GetXYPoints()->AccessPoints();
    double last = entry.Range("Young's modulus")->GetHigh();
    auto const modulusAt = [&](std::size_t i) {
      return dynamic_cast<XYPoint const&>(*points.at(i)).GetY();
    };
    EXPECT_GE(modulusAt(0), entry.Range("Young's modulus")->GetLow());
    for (std::size_t i = 0; i < points.size(); ++i) {
      EXPECT_LT(modulusAt(i), last);
      last = modulusAt(i);
    }
  }
  EXPECT_GE(curves, 12);
}

// Electrons carry heat and current alike: their conductivities are as the law of Wiedemann and
// Franz says. In alloys that conduct badly the lattice carries a share, some W/m.K.
TEST(FullContent, MetalsConductHeatAsTheyConductCurrent) {
  constexpr double kLorenz = 2.44e-8;  // W.ohm/K^2
  constexpr double kRoom = 293;        // K
  constexpr double kLattice = 5;       // W/m.K
  for (auto const& [name, entry] : Materials()) {
    // Graphite carries the heat of these cast irons, and chromium is known to deviate.
    if (!entry.IsIn("Metals and alloys") || name.compare(0, 4, "EN-G") == 0 || name == "Cr")
      continue;
    SCOPED_TRACE(name);
    auto const heat = entry.Middle("Thermal conductivity");
    auto const resistivity = entry.Middle("Electrical resistivity");
    ASSERT_TRUE(heat && resistivity);
    double const electrons = kLorenz * kRoom / (*resistivity * 1e-8);
    EXPECT_GT(*heat, electrons / 1.5);
    EXPECT_LT(*heat, (electrons + kLattice) * 1.5);
  }
}

TEST(FullContent, PureMetalsAreNearTheirElements) {
  auto const elements = EntriesOf("Elements", "ELEMENTS", {"Density at 20 degC", "Melting point"});
  for (auto const& [name, symbol] : std::map<std::string, std::string>{{"Ag 99.9", "Ag"},
                                                                       {"AW-1050A-H14", "Al"},
                                                                       {"Au 99.99", "Au"},
                                                                       {"Be S-200", "Be"},
                                                                       {"Cr", "Cr"},
                                                                       {"Cu-ETP", "Cu"},
                                                                       {"Cu-OF", "Cu"},
                                                                       {"Mo", "Mo"},
                                                                       {"Nickel 200", "Ni"},
                                                                       {"Pb 99.9", "Pb"},
                                                                       {"Pd", "Pd"},
                                                                       {"Pt", "Pt"},
                                                                       {"Re", "Re"},
                                                                       {"Silicon", "Si"},
                                                                       {"Sn 99.9", "Sn"},
                                                                       {"Ta", "Ta"},
                                                                       {"Ti-grade-1", "Ti"},
                                                                       {"V", "V"},
                                                                       {"W", "W"}}) {
    SCOPED_TRACE(name);
    Entry const& metal = Materials().at(name);
    Entry const& element = elements.at(symbol);
    EXPECT_NEAR(*metal.Middle("Density") / element.FirstPoint("Density at 20 degC"), 1, 0.02);
    // What little else is in a commercial grade lets it melt a few degrees below the element.
    double const melting = element.FirstPoint("Melting point") - 273.15;
    EXPECT_GE(melting, metal.Range("Melting point")->GetLow());
    EXPECT_LE(melting, metal.Range("Melting point")->GetHigh() + 10);
  }
}

TEST(FullContent, ElementsAreInOrder) {
  std::map<int, double> weights;
  for (auto const& [symbol, entry] :
       EntriesOf("Elements", "ELEMENTS", {"Atomic number", "Atomic weight"})) {
    auto const& number = dynamic_cast<IntegerDataType&>(*entry.values.at("Atomic number"));
    weights[number.GetValue()] = entry.FirstPoint("Atomic weight");
  }
  ASSERT_EQ(weights.size(), 118U);
  std::set<int> const heavierThanTheNext = {18, 27, 52, 90, 92, 94, 107};
  for (int i = 1; i < 118; ++i) {
    EXPECT_EQ(weights.at(i) > weights.at(i + 1), heavierThanTheNext.count(i) == 1) << i;
  }
}

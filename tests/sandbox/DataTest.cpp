// What the sandbox holds with its full content makes sense.

#include <map>
#include <set>

#include "tests/sandbox/Sandbox.h"

namespace {

using Values = std::map<std::string, SmartPtr<IDataValue>>;

void Collect(std::vector<SmartPtr<TreeRecord>> const& tree,
             std::vector<SmartPtr<TreeRecord>>& leaves) {
  for (auto const& record : tree) {
    if (record->GetType() == "Record") leaves.push_back(record);
    Collect(record->AccessChildren(), leaves);
  }
}

std::vector<SmartPtr<TreeRecord>> RecordsOf(std::string const& table, std::string const& dbKey) {
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
  std::vector<SmartPtr<TreeRecord>> leaves;
  Collect(children.AccessTreeRecords(), leaves);
  return leaves;
}

/// Values of every record by its name and theirs.
std::map<std::string, Values> ValuesOf(std::string const& table, std::string const& dbKey,
                                       std::vector<std::string> const& attributes) {
  auto const records = RecordsOf(table, dbKey);
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  for (auto const& name : attributes) {
    request->AddAttributeReference(AttributeNamed(name, table));
    request->AccessAttributeReferences().back()->SetDBKey(dbKey);
  }
  for (auto const& record : records) request->AddRecordReference(record->GetRecordReference());
  GetRecordAttributesByRefResponse response;
  Services()
      .GetDataExportService()
      ->GetRecordAttributesByRefImplPtr()
      ->RequestRecordAttributesByRef(request, &response);
  EXPECT_TRUE(IsFine(response));
  std::map<std::string, Values> all;
  for (std::size_t i = 0; i < response.AccessRecordData().size(); ++i) {
    Values& values = all[records[i]->GetShortName()];
    for (auto const& value : response.AccessRecordData()[i]->AccessAttributeValues()) {
      values[value->GetAttributeName()] = value->GetDataValue();
    }
  }
  EXPECT_EQ(all.size(), records.size()) << "a name occurs twice in " << table;
  return all;
}

}  // namespace

TEST(FullContent, MaterialsHoldSensibleFigures) {
  int composed = 0;
  int curves = 0;
  auto const materials = ValuesOf(
      "Materials", kMaterials,
      {"Density", "Price", "Young's modulus", "Yield strength (elastic limit)", "Tensile strength",
       "Elongation", "Fracture toughness", "Hardness - Vickers", "Melting point",
       "Maximum service temperature", "Thermal conductivity", "Specific heat capacity",
       "Electrical resistivity", "CO2 footprint, primary production", "Composition",
       "Yield strength against temperature", "Stress strain curve"});
  EXPECT_GE(materials.size(), 150U);
  for (auto const& [name, values] : materials) {
    for (auto const& [attribute, value] : values) {
      SCOPED_TRACE(name + ": " + attribute);
      if (auto const* const range = dynamic_cast<RangeDataType const*>(value.get())) {
        EXPECT_LE(range->GetLow(), range->GetHigh());
      } else if (auto const* const table = dynamic_cast<TabularDataType const*>(value.get())) {
        ++composed;
        double sums[2] = {0, 0};
        for (auto const& row : table->GetRows()) {
          auto const figure = [&](int i) {
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

TEST(FullContent, ElementsAreInOrder) {
  std::map<int, double> weights;
  for (auto const& [symbol, values] :
       ValuesOf("Elements", "ELEMENTS", {"Atomic number", "Atomic weight"})) {
    int const number = dynamic_cast<IntegerDataType&>(*values.at("Atomic number")).GetValue();
    auto const& weight = dynamic_cast<PointDataType&>(*values.at("Atomic weight"));
    weights[number] = weight.AccessPoints().at(0)->GetValue();
  }
  ASSERT_EQ(weights.size(), 118U);
  std::set<int> const heavierThanTheNext = {18, 27, 52, 90, 92, 94, 107};
  for (int i = 1; i < 118; ++i) {
    EXPECT_EQ(weights.at(i) > weights.at(i + 1), heavierThanTheNext.count(i) == 1) << i;
  }
}

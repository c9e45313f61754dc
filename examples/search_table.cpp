// Searches a table's records by a condition on one attribute and prints some properties of those
// that were found.
//
//     search-table DATABASE TABLE ATTRIBUTE MOST UNIT http://server/service_layer
//
// lists the records whose ATTRIBUTE is less than MOST, for example
//
//     search-table ENG_MATERIALS Materials Density 3 g/cm^3 http://localhost:8080

#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "Common.h"

namespace {

char const* const kProperties[] = {"Density", "Young's modulus", "Tensile strength", "Price"};

SmartPtr<AttributeReference> AttributeOf(SmartPtr<TableReference> const& table,
                                         std::string const& name) {
  auto attribute = AttributeReference::CreateOne();
  attribute->SetDBKey(table->GetDBKey());
  attribute->SetName(name);
  attribute->SetPartialTableReference(
      PartialTableReference::CreateOneFromTableName(table->GetTableName()));
  return attribute;
}

/// The records whose attribute is less than that; false when the call failed.
bool Search(LumoServiceLayerServices& services, SmartPtr<AttributeReference> const& attribute,
            double most, std::string const& unit, SimpleTextSearchResponse& found) {
  auto const condition = LessThanSearchValue::CreateOne();
  condition->SetValue(most);
  condition->SetUnit(unit);
  auto const criterion = RecordSearchCriterion::CreateOne();
  criterion->SetSearchAttribute(attribute);
  criterion->SetSearchValue(condition);
  auto const request = CriteriaSearch::CreateOne();
  request->SetDBKey(attribute->GetDBKey());
  request->AddSearchCriterion(criterion);
  services.GetSearchService()->GetCriteriaSearchImpl()->Search(request, &found);
  return Succeeded(found);
}

/// "low-high unit" of a range; empty for every other value.
std::string TextOf(SmartPtr<IDataValue> const& value) {
  auto const* const range = dynamic_cast<RangeDataType const*>(value.get());
  if (range == nullptr) return "";
  std::ostringstream text;
  text << std::setprecision(4) << range->GetLow();
  if (range->GetHigh() != range->GetLow()) text << " - " << range->GetHigh();
  text << ' ' << range->GetUnitSymbol();
  return text.str();
}

bool PrintProperties(LumoServiceLayerServices& services, SmartPtr<TableReference> const& table,
                     SimpleTextSearchResponse const& found) {
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  for (char const* const name : kProperties)
    request->AddAttributeReference(AttributeOf(table, name));
  for (auto const& result : found.AccessSearchResults()) {
    request->AddRecordReference(result->GetRecordReference());
  }
  GetRecordAttributesByRefResponse response;
  services.GetDataExportService()->GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(
      request, &response);
  if (!Succeeded(response)) return false;
  std::size_t row = 0;
  for (auto const& record : response.AccessRecordData()) {
    std::cout << found.AccessSearchResults()[row++]->GetShortName() << '\n';
    for (auto const& value : record->AccessAttributeValues()) {
      std::cout << "  " << std::left << std::setw(20) << value->GetAttributeName()
                << TextOf(value->GetDataValue()) << '\n';
    }
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 7) {
    std::cerr << "usage: search-table DATABASE TABLE ATTRIBUTE MOST UNIT URL\n";
    return 2;
  }
  return RunExample(argv[6], "", "", [&](LumoServiceLayerServices& services) {
    auto const table = TableNamed(argv[1], argv[2]);
    SimpleTextSearchResponse found;
    if (!Search(services, AttributeOf(table, argv[3]), std::strtod(argv[4], nullptr), argv[5],
                found)) {
      return false;
    }
    std::cout << found.AccessSearchResults().size() << " records\n";
    return found.AccessSearchResults().empty() || PrintProperties(services, table, found);
  });
}

// Prints the attributes of a table with their type, unit and range of values.
//
//     print-attributes DATABASE TABLE http://server/service_layer

#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "Common.h"

namespace {

using Attributes = std::vector<SmartPtr<AttributeReference>>;

/// The attributes of the table; none when the call failed.
Attributes AttributesOf(BrowseService& browse, std::string const& dbKey, std::string const& name) {
  auto const request = GetTables::CreateOne();
  request->SetDBKey(dbKey);
  GetTablesResponse response;
  browse.GetGetTablesImpl()->RequestTables(request, &response);
  if (!Succeeded(response)) return {};
  for (auto const& table : response.AccessTableDetails()) {
    auto const reference = table->GetTableReference();
    if (reference && reference->GetTableName() == name) return table->AccessAttributeReferences();
  }
  std::cerr << "There is no table " << name << ".\n";
  return {};
}

std::string TextOf(SmartPtr<MinMaxValue> const& value) {
  if (!value) return "";
  switch (value->GetType()) {
    case MinMaxValue::Date: return value->GetDate();
    case MinMaxValue::Integer: return std::to_string(value->GetInteger());
    case MinMaxValue::Double: {
      std::ostringstream text;
      text << std::setprecision(4) << value->GetDouble();
      return text.str();
    }
    default: return "";
  }
}

/// "least to most" by the identity of the attribute.
std::map<int, std::string> RangesOf(BrowseService& browse, Attributes const& attributes) {
  auto const request = GetAttributeMinMaxRequest::CreateOne();
  request->AccessAttributeReferences() = attributes;
  GetAttributeMinMaxResponse response;
  browse.GetGetAttributeMinMaxImpl()->RequestAttributeMinMax(request, &response);
  std::map<int, std::string> ranges;
  if (!Succeeded(response)) return ranges;
  for (auto const& minMax : response.AccessMinMaxes()) {
    if (!minMax->GetMin() || !minMax->GetMax() || !minMax->GetAttributeReference()) continue;
    ranges[minMax->GetAttributeReference()->GetAttributeID()] =
        TextOf(minMax->GetMin()) + " to " + TextOf(minMax->GetMax());
  }
  return ranges;
}

bool PrintAttributes(BrowseService& browse, Attributes const& attributes) {
  if (attributes.empty()) return false;
  std::map<int, std::string> const ranges = RangesOf(browse, attributes);
  auto const request = GetAttributeDetailsRequest::CreateOne();
  request->AccessAttributeReferences() = attributes;
  GetAttributeDetailsResponse response;
  browse.GetGetAttributeDetailsImpl()->RequestAttributeDetails(request, &response);
  if (!Succeeded(response)) return false;
  for (auto const& detail : response.AccessAttributeDetails()) {
    auto const range = ranges.find(detail->GetIdentity());
    std::cout << std::left << std::setw(38) << detail->GetName() << std::setw(6)
              << detail->GetType() << std::setw(14) << detail->GetDatabaseUnit()
              << (range == ranges.end() ? "" : range->second) << '\n';
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: print-attributes DATABASE TABLE URL\n";
    return 2;
  }
  return RunExample(argv[3], "", "", [&](LumoServiceLayerServices& services) {
    BrowseService& browse = *services.GetBrowseService();
    return PrintAttributes(browse, AttributesOf(browse, argv[1], argv[2]));
  });
}

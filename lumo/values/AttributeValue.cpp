#include "lumo/values/AttributeValue.h"

#include <string_view>
#include <utility>

#include "lumo/platform/core/Early.h"
#include "lumo/values/AttributeTypes.h"
#include "lumo/values/BuildValue.h"
#include "lumo/xml/UnbuiltValues.h"
#include "lumo/xml/XMLUtilites.h"

namespace {

constexpr char kUnsupported[] = "UNSUPPORTED DATA TYPE";

/// Whether the element holds a value, of whatever type.
bool HoldsValue(XmlNode<char> const& node) {
  constexpr std::string_view kEnd = "DataValue";
  std::string_view const name = lumo::LocalName(node);
  return name.size() > kEnd.size() && name.substr(name.size() - kEnd.size()) == kEnd;
}

}  // namespace

LUMO_EARLY lumo::NameRegistry AttributeValue::s_factory;

void AttributeValue::RegisterTypes() {
  s_factory = {
      {"IntegerDataValue", AttributeTypes::INTEGER_TYPE_STRING},
      {"RangeDataValue", AttributeTypes::RANGE_TYPE_STRING},
      {"PointDataValue", AttributeTypes::POINT_TYPE_STRING},
      {"TabularDataValue", AttributeTypes::TABULAR_TYPE_STRING},
      {"LogicalDataValue", AttributeTypes::LOGICAL_TYPE_STRING},
      {"ShortTextDataValue", AttributeTypes::SHORT_TEXT_TYPE_STRING},
      {"LongTextDataValue", AttributeTypes::LONG_TEXT_TYPE_STRING},
      {"HyperlinkDataValue", AttributeTypes::HYPERLINK_TYPE_STRING},
      {"DiscreteDataValue", AttributeTypes::DISCRETE_TYPE_STRING},
      {"DateDataValue", AttributeTypes::DATE_TIME_TYPE_STRING},
      {"FileDataValue", AttributeTypes::FILE_TYPE_STRING},
      {"PictureDataValue", AttributeTypes::PICTURE_TYPE_STRING},
      {"FloatFunctionalSeriesDataValue", AttributeTypes::FLOAT_FUNCTIONAL_SERIES_TYPE_STRING},
      {"FloatFunctionalGriddedDataValue", AttributeTypes::FLOAT_FUNCTIONAL_GRIDDED_TYPE_STRING},
  };
}

AttributeValue::AttributeValue() : m_dataType(kUnsupported) {}

AttributeValue::AttributeValue(XmlNode<char> const* node) : FromXml(node) {
  XmlNode<char> const* child = node == nullptr ? nullptr : node->first_node();
  for (; child != nullptr && !m_dataValue; child = child->next_sibling()) {
    if (s_factory.empty() && HoldsValue(*child)) lumo::UnbuiltValues::Note();
    auto [typeCode, value] = lumo::BuildRegistered(s_factory, *child);
    if (!typeCode.empty()) m_dataType = typeCode;
    m_dataValue = std::move(value);
  }
  if (m_dataType.empty()) m_dataType = kUnsupported;
}

bool AttributeValue::IsSupported() const { return m_dataType != kUnsupported; }

#include "lumo/values/AttributeValue.h"

#include <string_view>
#include <utility>

#include "lumo/platform/core/Early.h"
#include "lumo/values/AttributeTypes.h"
#include "lumo/values/BuildValue.h"
#include "lumo/values/TypeCode.h"
#include "lumo/xml/UnbuiltValues.h"

namespace {

std::string const& Unsupported() {
  static std::string const& code = lumo::KeptTypeCode("UNSUPPORTED DATA TYPE");
  return code;
}

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

AttributeValue::AttributeValue() : m_dataType(&Unsupported()) {}

AttributeValue::AttributeValue(XmlNode<char> const* node) : m_dataType(&Unsupported()) {
  lumo::NodeReader in(node);
  ReadName(in);
  ReadRest(in);
  ReadValue(in);
}

SmartPtr<AttributeValue> AttributeValue::CreateOneOfRecord(XmlNode<char> const& node) {
  lumo::NodeReader in(&node);
  SmartPtr<AttributeValue> value = CreateOne();
  if (!value->ReadName(in)) return nullptr;
  value->ReadRest(in);
  value->ReadValue(in);
  return value->IsSupported() ? value : nullptr;
}

void AttributeValue::ReadValue(lumo::NodeReader const& in) {
  for (auto* child = in.Rest(); child != nullptr && !m_dataValue; child = child->next_sibling()) {
    if (s_factory.empty() && HoldsValue(*child)) lumo::UnbuiltValues::Note();
    auto [typeCode, value] = lumo::BuildRegistered(s_factory, *child);
    if (typeCode != nullptr) m_dataType = typeCode;
    m_dataValue = std::move(value);
  }
}

bool AttributeValue::IsSupported() const { return m_dataType != &Unsupported(); }

#include "lumo/values/BuildValue.h"

#include "lumo/values/AttributeTypes.h"
#include "lumo/values/DataValueFactoryNew.h"
#include "lumo/values/TypeCode.h"
#include "lumo/xml/GrowingTree.h"
#include "lumo/xml/UnbuiltValues.h"
#include "lumo/xml/XMLUtilites.h"

namespace lumo {

RegisteredValue BuildRegistered(NameRegistry const& registry, XmlNode<char> const& node) {
  auto const entry = registry.find(LocalName(node));
  if (entry == registry.end()) return {nullptr, nullptr};
  auto const factory = DataValueFactoryNew::s_factories.find(entry->second);
  if (factory == DataValueFactoryNew::s_factories.end()) {
    UnbuiltValues::Note();
    return {&KeptTypeCode(entry->second), nullptr};
  }
  if (factory->second->NeedsWholeTree()) RequireWholeTree(node);
  return {&factory->second->GetTypeCode(), factory->second->CreateInstance(&node)};
}

SmartPtr<IDataValue> BuildFirst(NameRegistry const& registry, XmlNode<char> const& node) {
  XmlNode<char> const* child = node.first_node();
  while (child != nullptr && child->type() != rapidxml::node_element) child = child->next_sibling();
  if (child == nullptr) return nullptr;
  if (registry.empty()) UnbuiltValues::Note();
  return BuildRegistered(registry, *child).value;
}

NameRegistry ShortNames() {
  return {
      {"Logical", AttributeTypes::LOGICAL_TYPE_STRING},
      {"ShortText", AttributeTypes::SHORT_TEXT_TYPE_STRING},
      {"Integer", AttributeTypes::INTEGER_TYPE_STRING},
      {"Range", AttributeTypes::RANGE_TYPE_STRING},
      {"Point", AttributeTypes::POINT_TYPE_STRING},
      {"LongText", AttributeTypes::LONG_TEXT_TYPE_STRING},
      {"Hyperlink", AttributeTypes::HYPERLINK_TYPE_STRING},
      {"Discrete", AttributeTypes::DISCRETE_TYPE_STRING},
      {"Date", AttributeTypes::DATE_TIME_TYPE_STRING},
      {"List", AttributeTypes::LIST_TYPE_STRING},
      {"Picture", AttributeTypes::PICTURE_TYPE_STRING},
      {"Empty", AttributeTypes::EMPTY_TYPE_STRING},
      {"File", AttributeTypes::FILE_TYPE_STRING},
  };
}

}  // namespace lumo

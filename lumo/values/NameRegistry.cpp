#include "lumo/values/NameRegistry.h"

#include "lumo/values/DataValueFactoryNew.h"
#include "lumo/xml/XMLUtilites.h"

namespace lumo {

RegisteredValue BuildRegistered(NameRegistry const& registry, XmlNode<char> const& node) {
  auto const entry = registry.find(LocalName(node));
  if (entry == registry.end()) return {};
  auto const factory = DataValueFactoryNew::s_factories.find(entry->second);
  if (factory == DataValueFactoryNew::s_factories.end()) return {entry->second, nullptr};
  return {entry->second, factory->second->CreateInstance(&node)};
}

}  // namespace lumo

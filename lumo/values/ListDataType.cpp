#include "lumo/values/ListDataType.h"

#include "lumo/platform/core/Early.h"
#include "lumo/values/BuildValue.h"

namespace {

LUMO_EARLY lumo::NameRegistry registry;

}  // namespace

lumo::NameRegistry& ListDataType::AccessRegistry() { return registry; }

void ListDataType::RegisterTypes() {
  registry = lumo::ShortNames();
  registry.erase("List");
  registry.erase("Empty");
}

ListDataType::ListDataType(XmlNode<char> const* node) {
  lumo::NodeReader(node).ForEach("listItem", [this](XmlNode<char> const& item) {
    m_items.push_back(lumo::BuildFirst(registry, item));
  });
}

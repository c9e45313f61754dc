#include "sandbox/model/Attributes.h"
#include "sandbox/operations/Handlers.h"

namespace sandbox {

void GetMetaAttributes(Store& store, Checker& request, pugi::xml_node response) {
  auto const attributes = ReadAttributes(store, request.Required("zbt:attributeReferences"));
  request.End();
  for (Attribute const& attribute : attributes) {
    pugi::xml_node node = response.append_child("Attribute");
    WriteNamedAttribute(store, node.append_child("b:ParentAttribute"), attribute);
    pugi::xml_node list = node.append_child("b:MetaAttributes");
    for (Attribute const& meta : Attributes(store, "a.about_id = ?", {Id(attribute.id)})) {
      WriteNamedAttribute(store, list.append_child("b:MetaAttribute"), meta);
    }
  }
}

}  // namespace sandbox

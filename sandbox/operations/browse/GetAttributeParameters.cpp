#include "sandbox/operations/Handlers.h"
#include "sandbox/operations/browse/Details.h"

namespace sandbox {

void GetAttributeParameters(Store& store, Checker& request, pugi::xml_node response) {
  auto const attributes = ReadAttributes(store, request.Required("zbt:attributeReferences"));
  request.End();
  pugi::xml_node details = response.append_child("parameterDetails");
  for (Attribute const& attribute : attributes) {
    WriteParameters(store, details, kOfAttribute, {Id(attribute.id)}, &attribute, nullptr);
  }
}

}  // namespace sandbox

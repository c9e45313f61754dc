#include "lumo/session/ServiceOperation.h"

#include "lumo/xml/Namespaces.h"

namespace lumo {

std::string Endpoint::Namespace(std::string const& version) const {
  return std::string(VendorNamespaceBase()).append(version).append(segment);
}

std::string Endpoint::Namespace(LumoSession const* session) const {
  if (session == nullptr) return {};
  return std::string(session->GetNamespaceBase())
      .append(session->GetInterfaceVersion())
      .append(segment);
}

}  // namespace lumo

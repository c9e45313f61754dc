#include "lumo/session/ServiceOperation.h"

#include "lumo/xml/Namespaces.h"

namespace lumo {

Endpoint const Endpoints::Browse = {L"/Browse.svc", "/Browse", "brow"};
Endpoint const Endpoints::Search = {L"/Search.svc", "/Search", "sear"};
Endpoint const Endpoints::DataExport = {L"/DataExport.svc", "/DataExport", "exp"};
Endpoint const Endpoints::DataImport = {L"/DataImport.svc", "/DataImport", "dat"};
Endpoint const Endpoints::EngineeringData = {L"/EngineeringData.svc", "/EngineeringData", "eng"};

std::string Endpoint::Namespace(std::string const& version) const {
  return std::string(VendorNamespaceBase()) + version + segment;
}

std::string Endpoint::Namespace(LumoSession const* session) const {
  return Namespace(session == nullptr ? std::string() : session->GetInterfaceVersion());
}

}  // namespace lumo

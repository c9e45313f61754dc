#pragma once

#include <string_view>

namespace lumo {

/// Namespace URIs of the wire. The vendor base ends in "/"; it is the build's, and sessions may
/// have another.
std::string_view VendorNamespaceBase();
constexpr std::string_view kSoapEnvelopeNamespace = "http://schemas.xmlsoap.org/soap/envelope/";
constexpr std::string_view kSchemaInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";

}  // namespace lumo

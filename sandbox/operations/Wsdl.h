#pragma once

#include <string>

#include "sandbox/wire/Soap.h"

namespace sandbox {

/// The description of a service (WSDL 1.1): its namespace, operations, actions and address. The
/// forms of its messages are left open.
std::string Wsdl(Service const& service, Namespaces const& namespaces, std::string const& url);

}  // namespace sandbox

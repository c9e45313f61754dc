#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// Addresses of servers. Not installed.
namespace lumo {

/// Throws `Error` (InvalidArgument) unless the text is an address for http or https without a
/// password in it.
LUMO_API void CheckUrl(std::string const& url);
/// The host's name, or its address.
LUMO_API std::string HostOf(std::string const& url);
/// Scheme, host and port in one spelling, "https://server:443", by which servers are told apart.
LUMO_API std::string ServerOf(std::string const& url);

}  // namespace lumo

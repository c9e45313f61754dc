#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lumo/platform/core/Export.h"

namespace lumo {

/// What the description (WSDL) of a server's service Browse tells of its namespaces. Not installed.
struct ServerNamespace {
  std::string base;     ///< "http://www.example.com/lumo/"
  std::string version;  ///< "16/01"
};

/// Nothing when the text is not such a description.
LUMO_API std::optional<ServerNamespace> ServerNamespaceIn(std::string_view wsdl);

}  // namespace lumo

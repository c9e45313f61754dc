#pragma once

#include <string>
#include <string_view>

namespace lumo {

/// The one string with that type code, which lives as long as the process: a value keeps a pointer
/// to it. There are as many codes as programs register. Locked: a code that no factory has comes up
/// only when a reply is read, perhaps on several threads.
std::string const& KeptTypeCode(std::string_view code);

}  // namespace lumo

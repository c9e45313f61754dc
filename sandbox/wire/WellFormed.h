#pragma once

#include <string>
#include <string_view>

namespace sandbox {

/// Refuses in a `Fault` what the XML parser lets pass although it is not well-formed, and what no
/// request may hold: text before the declaration, bytes that are not UTF-8, characters that XML
/// forbids, a bare "&" or an unknown entity, comments, processing instructions, document types,
/// CDATA sections, and elements nested too deep.
void CheckWellFormed(std::string_view request);

/// The text made fit for a reply: shortened when it is very long, and with "?" for every byte that
/// XML cannot hold.
std::string Legible(std::string_view text);

}  // namespace sandbox

#pragma once

#include <string>

namespace lumo {

/// UTF-8 to wide text and back; invalid sequences are dropped.
std::wstring ToWide(std::string const& utf8);
std::string ToUtf8(std::wstring const& wide);

}  // namespace lumo

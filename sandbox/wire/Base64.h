#pragma once

#include <string>

namespace sandbox {

std::string EncodeBase64(std::string const& bytes);
/// What is no Base64 is skipped.
std::string DecodeBase64(std::string const& text);

}  // namespace sandbox

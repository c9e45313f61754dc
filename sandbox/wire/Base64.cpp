#include "sandbox/wire/Base64.h"

#include <cstddef>
#include <string_view>

namespace sandbox {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string EncodeBase64(std::string const& bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    unsigned group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = group << 8U | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      text += i + k > bytes.size() ? '=' : kAlphabet[group >> (18 - 6 * k) & 63U];
    }
  }
  return text;
}

std::string DecodeBase64(std::string const& text) {
  std::string bytes;
  unsigned group = 0;
  unsigned bits = 0;
  for (char const c : text) {
    std::size_t const digit = kAlphabet.find(c);
    if (digit == std::string_view::npos) continue;
    group = group << 6U | static_cast<unsigned>(digit);
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes += static_cast<char>(group >> bits & 255U);
  }
  return bytes;
}

}  // namespace sandbox

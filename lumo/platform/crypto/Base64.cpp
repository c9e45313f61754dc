#include "lumo/platform/crypto/Base64.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace Insecure {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kInvalid = 0xFF;
constexpr std::uint8_t kSpace = 0xFE;
constexpr std::uint8_t kPadding = 0xFD;

constexpr std::array<std::uint8_t, 256> MakeValues() {
  std::array<std::uint8_t, 256> values{};
  for (auto& value : values) value = kInvalid;
  for (std::size_t i = 0; i < kAlphabet.size(); ++i) {
    values[static_cast<unsigned char>(kAlphabet[i])] = static_cast<std::uint8_t>(i);
  }
  for (char space : std::string_view(" \t\n\v\f\r")) {
    values[static_cast<unsigned char>(space)] = kSpace;
  }
  values['='] = kPadding;
  return values;
}

constexpr auto kValues = MakeValues();

}  // namespace

std::string Crypto_Base64::Encode(std::string_view bytes) {
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    std::size_t const count = bytes.size() - i < 3 ? bytes.size() - i : 3;
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = (group << 8U) | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0U);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      text += k <= count ? kAlphabet[(group >> (18U - 6U * k)) & 0x3FU] : '=';
    }
  }
  return text;
}

std::string Crypto_Base64::Decode(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3);
  std::uint32_t group = 0;
  std::size_t digits = 0;   // digits and padding seen in this group of four
  std::size_t padding = 0;  // padding seen in all; nothing but white space may follow the group
  for (char c : text) {
    std::uint8_t const value = kValues[static_cast<unsigned char>(c)];
    if (value == kSpace) continue;
    bool const isPadding = value == kPadding;
    if (value == kInvalid) throw std::runtime_error("Base64: invalid byte");
    if (isPadding ? digits < 2 : padding != 0) {
      throw std::runtime_error("Base64: misplaced padding");
    }
    if (isPadding) ++padding;
    group = (group << 6U) | (isPadding ? 0U : value);
    if (++digits < 4) continue;
    for (std::size_t k = 0; k + padding < 3; ++k) {
      bytes += static_cast<char>((group >> (16U - 8U * k)) & 0xFFU);
    }
    group = 0;
    digits = 0;
  }
  if (digits != 0) throw std::runtime_error("Base64: text is cut short");
  return bytes;
}

}  // namespace Insecure

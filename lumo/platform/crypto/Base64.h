#pragma once

#include <string>
#include <string_view>

#include "lumo/platform/core/Export.h"

namespace Insecure {

/// Standard Base64 (RFC 4648, section 4) as binary attribute data travels. An encoding, no secret.
class LUMO_API Crypto_Base64 {
 public:
  /// Padded text without line breaks.
  static std::string Encode(std::string_view bytes);
  /// The bytes that `text` stands for. White space is skipped; throws std::runtime_error for any
  /// other byte outside the alphabet and for missing or misplaced padding.
  static std::string Decode(std::string_view text);
};

}  // namespace Insecure

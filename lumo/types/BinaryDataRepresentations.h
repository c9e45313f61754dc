#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// How file and picture data travel: inside the message, or as an address.
class LUMO_API BinaryDataRepresentations {
 public:
  enum eBinaryDataRepresentation : int { Inline = 0, URL = 1 };
  /// Every value but 0 gives "URL".
  static std::string BinaryDataRepresentation_ToString(eBinaryDataRepresentation representation);
  /// `URL` for an unknown word.
  static eBinaryDataRepresentation BinaryDataRepresentation_FromString(std::string const& text);
};

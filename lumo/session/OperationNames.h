#pragma once

#include <string_view>

#include "lumo/platform/core/Export.h"

namespace lumo {

/// Names under which an operation travels, and whether it changes data on the server.
struct OperationNames {
  std::string_view service;
  std::string_view operation;
  std::string_view rootTag;      ///< element of the request
  std::string_view responseTag;  ///< element of the reply from which the response is read
  bool isWrite = false;
};

/// Names of one of the 30 operations; null for any other text.
LUMO_API OperationNames const* FindOperationNames(std::string_view operation);

}  // namespace lumo

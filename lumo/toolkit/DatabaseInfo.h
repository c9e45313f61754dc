#pragma once

#include <string>

namespace lumo {

/// A database: the key by which requests name it, and the name that people see.
struct DatabaseInfo {
  std::string key = {};   ///< by which requests name it
  std::string name = {};  ///< that people see
};

}  // namespace lumo

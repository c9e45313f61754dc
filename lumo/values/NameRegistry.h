#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace lumo {

/// Hash of the few names of value elements and type codes, which their beginnings tell apart.
struct NameHash {
  /// The hash of a name, by its length and first letters.
  std::size_t operator()(std::string_view name) const {
    std::size_t hash = name.size();
    for (char const c : name.substr(0, 4)) hash = hash * 31 + static_cast<unsigned char>(c);
    return hash;
  }
};

/// Type codes by the name of a value's element. A name is not copied and must live as long as the
/// registry, as literals do.
using NameRegistry = std::unordered_map<std::string_view, std::string, NameHash>;

}  // namespace lumo

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "lumo/platform/core/Export.h"

/// How names that people type find what they mean. Not installed.
namespace lumo {

/// Place of the one name that is meant. In this order: the name itself, the name without regard to
/// case, a name that begins so, a name with words that begin as those that were typed do ("sea wat"
/// for "Durability: sea water"). Throws `Error`: Ambiguous, with the candidates, when several are
/// equally good; NotFound, with those that are alike. `what` is the kind of thing, such as
/// "attribute", for the error.
LUMO_API std::size_t FindName(std::vector<std::string> const& names, std::string const& name,
                              std::string const& what);

/// As `FindName`, but nothing when no name is meant.
LUMO_API std::optional<std::size_t> TryName(std::vector<std::string> const& names,
                                            std::string const& name, std::string const& what);

/// The entry whose name, got by `nameOf`, is the one that is meant; as `FindName`.
template <class List, class NameOf>
auto const& FindNamed(List const& list, std::string const& name, std::string const& what,
                      NameOf nameOf) {
  std::vector<std::string> names;
  names.reserve(list.size());
  for (auto const& one : list) names.push_back(nameOf(one));
  return list[FindName(names, name, what)];
}

/// Throws what `FindName` throws when no name is meant: NotFound with a hint.
[[noreturn]] LUMO_API void ThrowNotFound(std::string const& what, std::string const& name,
                                         std::vector<std::string> const& names);

/// Folder paths, with "/" and "\" in names written "\/" and "\\".
LUMO_API std::string PathBelow(std::string const& folder, std::string const& name);
LUMO_API std::vector<std::string> PathParts(std::string const& path);

}  // namespace lumo

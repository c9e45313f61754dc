#pragma once

#include <string>
#include <vector>

#include "sandbox/Fault.h"

namespace sandbox {

/// Only one thing may answer to a name.
template <class Thing>
Thing Single(std::vector<Thing> const& found, std::string const& what) {
  if (found.empty()) throw Fault("there is no " + what);
  if (found.size() > 1) throw Fault("there are several of " + what + "; name its table");
  return found.front();
}

}  // namespace sandbox

#pragma once

#include <string>
#include <vector>

#include "lumo/toolkit/Value.h"

namespace cli {

/// A curve with the name under which the legend shows it.
struct NamedCurve {
  std::string name = {};
  lumo::Curve curve = {};
};

/// Draws curves over x in one frame so many characters wide, each with a sign of its own, and a
/// legend. Empty when there is nothing to draw.
std::string Plot(std::vector<NamedCurve> const& curves, std::size_t width);

}  // namespace cli

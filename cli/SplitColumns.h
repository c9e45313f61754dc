#pragma once

#include <string>
#include <vector>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/Import.h"

namespace cli {

/// Makes one column of those into which `get --ranges split` puts an attribute: "Density low [u]"
/// and "Density high [u]" become "Density [u]" with "2690..2730" in its cells, and what "Hardness
/// points" holds goes into "Hardness [HV]". The first line has the headings; others stay as they
/// are. Gives the cells that do not say whether a figure is estimated.
std::vector<lumo::RowFault> MergeSplitColumns(std::vector<std::vector<std::string>>& sheet,
                                              std::vector<lumo::Attribute> const& attributes);

}  // namespace cli

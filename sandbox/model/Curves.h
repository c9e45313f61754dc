#pragma once

#include "sandbox/model/FigureReader.h"

namespace sandbox {

/// Turn the content of a curve from the form of an import into that of a reply.
void ReadSeries(Store& store, FigureReader& figures, pugi::xml_node from, pugi::xml_node to);
void ReadGridded(Store& store, FigureReader& figures, pugi::xml_node from, pugi::xml_node to);

}  // namespace sandbox

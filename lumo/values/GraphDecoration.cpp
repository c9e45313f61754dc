#include "lumo/values/GraphDecoration.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<GraphDecoration::eOptions> kWords[] = {
    {GraphDecoration::Lines, "Lines"},
    {GraphDecoration::LinesAndMarkers, "LinesAndMarkers"},
    {GraphDecoration::Markers, "Markers"},
};

}  // namespace

std::string GraphDecoration::ToString(eOptions options) {
  return lumo::WordOf(kWords, options, "Markers");
}

GraphDecoration::eOptions GraphDecoration::FromString(std::string const& text) {
  return lumo::ValueOf(kWords, text, Unknown);
}

#include "lumo/xml/UnbuiltValues.h"

namespace {

thread_local std::size_t noted = 0;

}  // namespace

lumo::UnbuiltValues::UnbuiltValues() : m_before(noted) {}

std::size_t lumo::UnbuiltValues::Count() const { return noted - m_before; }

void lumo::UnbuiltValues::Note() { ++noted; }

#include "sandbox/model/FigureReader.h"

#include <algorithm>

#include "sandbox/model/Units.h"

namespace sandbox {

std::string FigureReader::Read(pugi::xml_node node, std::string const& unit) {
  double const value = Convert(m_store, RealOf(node), unit, m_attribute.unit);
  Add(value);
  return TextOfNumber(value);
}

void FigureReader::Add(double value) {
  m_low = std::min(m_low, value);
  m_high = std::max(m_high, value);
}

}  // namespace sandbox

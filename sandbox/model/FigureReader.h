#pragma once

#include <limits>
#include <string>

#include "sandbox/model/Attributes.h"
#include "sandbox/store/Store.h"

namespace sandbox {

/// Reads the figures of one value into the attribute's unit, and keeps the smallest and the largest
/// for searches.
class FigureReader {
 public:
  FigureReader(Store& store, Attribute const& attribute) : m_store(store), m_attribute(attribute) {}

  /// The figure, which was sent in that unit.
  std::string Read(pugi::xml_node node, std::string const& unit);
  void Add(double value);
  /// Empty before the first figure.
  std::string Low() const { return m_low > m_high ? "" : TextOfNumber(m_low); }
  std::string High() const { return m_low > m_high ? "" : TextOfNumber(m_high); }
  std::string const& Unit() const { return m_attribute.unit; }

 private:
  Store& m_store;
  Attribute const& m_attribute;
  double m_low = std::numeric_limits<double>::infinity();
  double m_high = -std::numeric_limits<double>::infinity();
};

}  // namespace sandbox

#include "lumo/values/RangeDataType.h"

#include <strings.h>

#include <cmath>

RangeDataType::Bound RangeDataType::ReadBound(lumo::NodeReader& in, std::string_view name) {
  Bound bound;
  in.Child(name, bound, [](std::string_view text) {
    if (text.size() == 3 && strncasecmp(text.data(), "NaN", 3) == 0) return Bound();
    return Bound{lumo::RealFromText(text), true};
  });
  return bound;
}

void RangeDataType::WriteBound(lumo::NodeWriter& out, std::string_view name, Bound const& bound) {
  if (bound.isSet) {
    out.Child(name, bound.value);
  } else {
    out.Child(name, "NaN");
  }
}

RangeDataType::RangeDataType(XmlNode<char> const* node) : DataValue(node) {
  lumo::NodeReader in(node);
  m_low = ReadBound(in, "LowValue");
  m_high = ReadBound(in, "HighValue");
}

void RangeDataType::SetLow(double low) { m_low = {low, !std::isnan(low)}; }
void RangeDataType::SetHigh(double high) { m_high = {high, !std::isnan(high)}; }

void RangeDataType::CreateXMLNode(XmlNode<char>* node) const {
  UnittedRealDataType::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  out.Attribute("zbt:isNotApplicable", false);
  WriteBound(out, "zbt:LowValue", m_low);
  WriteBound(out, "zbt:HighValue", m_high);
}

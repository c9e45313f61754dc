#include "lumo/services/browse/AttributeMinMax.h"

#include "lumo/xml/NodeReader.h"

MinMaxValue::MinMaxValue(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  if (in.Child("date", m_date)) {
    m_type = Date;
  } else if (in.Child("double", m_double)) {
    m_type = Double;
  } else if (in.Child("integer", m_integer)) {
    m_type = Integer;
  }
}

AttributeMinMax::AttributeMinMax(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("unit", m_unit);
  in.Child("attributeReference", m_attributeReference);
  in.Child("min", m_min);
  in.Child("max", m_max);
}

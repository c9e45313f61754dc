#include "lumo/values/DiscreteDataType.h"

DiscreteValue::DiscreteValue(XmlNode<char> const* node) {
  lumo::NodeReader const in(node);
  in.Text(m_value);
  in.Attribute("order", m_order);
}

void DiscreteValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Text(m_value);
  out.Attribute("zbt:order", m_order);
}

DiscreteDataType::DiscreteDataType(XmlNode<char> const* node) {
  LoadCommonAttributes(node);
  lumo::NodeReader(node).Children("Discrete", m_discreteValues);
}

void DiscreteDataType::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter(node).Children("zbt:Discrete", m_discreteValues);
}

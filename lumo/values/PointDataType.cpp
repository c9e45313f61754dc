#include "lumo/values/PointDataType.h"

PointValueWithParameters::PointValueWithParameters(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("Value", m_value);
  in.Child("ValueParameters", m_valueParameters);
}

void PointValueWithParameters::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:Value", m_value);
  out.Child("zbt:ValueParameters", m_valueParameters);
}

PointDataType::PointDataType(XmlNode<char> const* node) : DataValue(node) {
  lumo::NodeReader in(node);
  in.Children("Point", m_points);
  in.Child("Parameters", m_parameters);
}

void PointDataType::CreateXMLNode(XmlNode<char>* node) const {
  UnittedRealDataType::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  out.Attribute("zbt:isNotApplicable", false);
  out.Child("zbt:Parameters", m_parameters);
  out.Children("zbt:Point", m_points);
}

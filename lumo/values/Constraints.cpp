#include "lumo/values/Constraints.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

Constraint::Constraint(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader(node).Child("Label", m_label);
}

void Constraint::CreateXMLNode(XmlNode<char>* node) const {
  ParameterReferenceAndValue::CreateXMLNode(node);
  lumo::NodeWriter(node).Child("zbt:Label", m_label);
}

Constraints::Constraints(XmlNode<char> const* node) {
  lumo::NodeReader(node).Children("Constraint", m_constraints);
}

void Constraints::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter(node).Children("zbt:Constraint", m_constraints);
}

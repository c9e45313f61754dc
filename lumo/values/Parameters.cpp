#include "lumo/values/Parameters.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

Parameters::Parameters(XmlNode<char> const* node) {
  lumo::NodeReader(node).Children("Parameter", m_parameters);
}

void Parameters::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter(node).Children("zbt:Parameter", m_parameters);
}

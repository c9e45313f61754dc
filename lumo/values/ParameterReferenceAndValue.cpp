#include "lumo/values/ParameterReferenceAndValue.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

ParameterReferenceAndValue::ParameterReferenceAndValue(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("Parameter", m_parameter);
  in.Child("ParameterValue", m_parameterValue);
}

void ParameterReferenceAndValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:Parameter", m_parameter);
  out.Child("zbt:ParameterValue", m_parameterValue);
}

ParameterReferencesAndValues::ParameterReferencesAndValues(XmlNode<char> const* node) {
  lumo::NodeReader(node).Children("ParameterWithValue", m_parametersWithValues);
}

void ParameterReferencesAndValues::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter(node).Children("zbt:ParameterWithValue", m_parametersWithValues);
}

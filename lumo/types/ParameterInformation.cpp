#include "lumo/types/ParameterInformation.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

ParameterInformation::ParameterInformation(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("ParameterReference", m_parameterReference);
  in.Child("Name", m_name);
  in.Child("Unit", m_unit);
}

void ParameterInformation::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:ParameterReference", m_parameterReference);
  out.Child("zbt:Name", m_name);
  out.Child("zbt:Unit", m_unit);
}

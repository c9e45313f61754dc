#include "lumo/values/FloatFunctionalDataType.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

FloatFunctionalDataType::FloatFunctionalDataType(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("Parameters", m_parameters);
  in.Child("Unit", m_unit);
}

void FloatFunctionalDataType::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:Parameters", m_parameters);
  out.Child("zbt:Unit", m_unit);
}

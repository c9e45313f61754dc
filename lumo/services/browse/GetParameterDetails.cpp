#include "lumo/services/browse/GetParameterDetails.h"

#include "lumo/xml/NodeWriter.h"

void GetParameterDetailsRequest::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Into("zbt:parameterReferences").Children("zbt:parameter", m_parameterReferences);
  out.Child("brow:functionalAttribute", m_functionalAttribute);
  out.Child("brow:recordReference", m_recordReference);
}

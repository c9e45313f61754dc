#include "lumo/services/browse/GetAttributeParameters.h"

#include "lumo/xml/NodeReader.h"

GetAttributeParametersResponse::GetAttributeParametersResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("parameterDetails").Children("parameterDetail", m_parameterDetails);
}

#include "lumo/services/engineering/GraphDomain.h"

#include "lumo/values/IDataValue.h"
#include "lumo/xml/NodeReader.h"

ParameterDomain::ParameterDomain(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Attribute(" exporterParameterId", m_exporterParameterId);  // with the blank, by contract
  in.Attribute("interpolable", m_interpolable, lumo::StrictBooleanFromText);
  in.In("Values").Children("Value", m_values);
}

GraphDomain::GraphDomain(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("ParameterDomains").Children("ParameterDomain", m_parameterDomains);
}

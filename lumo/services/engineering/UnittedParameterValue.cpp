#include "lumo/services/engineering/UnittedParameterValue.h"

#include "lumo/xml/NodeWriter.h"

void UnittedParameterValue::CreateXMLNode(XmlNode<char>* node) const {
  if (!m_parameterValue) return;
  m_parameterValue->CreateXMLNode(node);
  lumo::NodeWriter(node).ChildIfSet("zbt:UnitSymbol", m_unitSymbol);
}

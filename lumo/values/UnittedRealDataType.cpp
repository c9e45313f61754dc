#include "lumo/values/UnittedRealDataType.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

UnittedRealDataType::UnittedRealDataType(XmlNode<char> const* node) {
  LoadCommonAttributes(node);
  lumo::NodeReader in(node);
  in.Child("UnitSymbol", m_unitSymbol);
  in.Child("Estimated", m_estimated);
}

void UnittedRealDataType::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:Estimated", m_estimated);
  out.Child("zbt:UnitSymbol", m_unitSymbol);
}

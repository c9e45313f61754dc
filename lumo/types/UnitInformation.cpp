#include "lumo/types/UnitInformation.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

UnitInformation::UnitInformation(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("UnitName", m_unitName);
  in.Child("UnitSymbol", m_unitSymbol);
}

void UnitInformation::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:UnitName", m_unitName);
  out.Child("zbt:UnitSymbol", m_unitSymbol);
}

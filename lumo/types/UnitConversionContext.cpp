#include "lumo/types/UnitConversionContext.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

UnitConversionContext::UnitConversionContext(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("unitSystem", m_unitSystem);
  in.Child("currency", m_currency);
  m_absoluteUnitsSet = in.Child("absoluteUnits", m_absoluteUnits);
}

void UnitConversionContext::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.ChildIfSet("zbt:unitSystem", m_unitSystem);
  out.ChildIfSet("zbt:currency", m_currency);
  if (m_absoluteUnitsSet) out.Child("zbt:absoluteUnits", m_absoluteUnits);
}

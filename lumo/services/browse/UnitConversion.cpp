#include "lumo/services/browse/UnitConversion.h"

#include "lumo/xml/NodeReader.h"

Conversion::Conversion(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Attribute("sourceSymbol", m_sourceSymbol);
  in.Attribute("targetSymbol", m_targetSymbol);
  in.Child("Factor", m_factor);
  in.Child("Offset", m_offset);
}

UnitConversion::UnitConversion(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("UnitConversionContext", m_unitConversionContext);
  in.In("Conversions").Children("Conversion", m_conversions);
}

SourceUnit::SourceUnit(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Attribute("sourceSymbol", m_sourceSymbol);
  in.Children("Conversion", m_conversions);
}

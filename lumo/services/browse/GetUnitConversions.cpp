#include "lumo/services/browse/GetUnitConversions.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetUnitConversions::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("brow:dbKey", m_dbKey);
  out.Into("brow:unitConversionContexts")
      .Children("brow:unitConversionContext", m_unitConversionContexts);
  out.ChildIfSet("brow:sourceCurrency", m_sourceCurrency);
  out.Into("brow:sourceUnits").Children("brow:unitSymbol", m_sourceUnits);
  out.ChildIfSet("brow:targetCurrency", m_targetCurrency);
}

GetUnitConversionsResponse::GetUnitConversionsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("dbKey", m_dbKey);
  in.In("unitConversionContexts").Children("unitConversionContext", m_unitConversionContexts);
  in.In("sourceUnits").Children("sourceUnit", m_sourceUnits);
}

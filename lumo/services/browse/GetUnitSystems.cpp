#include "lumo/services/browse/GetUnitSystems.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetUnitSystems::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("brow:dbKey", m_dbKey);
  out.Child("brow:excludeCurrencies", m_excludeCurrencies);
}

GetUnitSystemsResponse::GetUnitSystemsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("dbKey", m_dbKey);
  in.In("unitSystems").Children("unitSystem", m_unitSystems);
  in.In("currencies").Children("currency", m_currencies);
}

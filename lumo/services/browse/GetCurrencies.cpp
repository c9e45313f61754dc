#include "lumo/services/browse/GetCurrencies.h"

#include "lumo/xml/NodeReader.h"

GetCurrenciesResponse::GetCurrenciesResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Children("currency", m_currencies);
}

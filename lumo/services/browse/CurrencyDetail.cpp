#include "lumo/services/browse/CurrencyDetail.h"

#include "lumo/xml/NodeReader.h"

CurrencyDetail::CurrencyDetail(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("code", m_code);
  in.Child("name", m_name);
  in.Child("factor", m_factor);
}

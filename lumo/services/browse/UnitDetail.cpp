#include "lumo/services/browse/UnitDetail.h"

#include "lumo/xml/NodeReader.h"

UnitDetail::UnitDetail(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Text(m_name);
  in.Attribute("symbol", m_symbol);
  in.Attribute("hasCurrency", m_hasCurrency);
}

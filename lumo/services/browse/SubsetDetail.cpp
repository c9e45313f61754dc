#include "lumo/services/browse/SubsetDetail.h"

#include "lumo/xml/NodeReader.h"

SubsetDetail::SubsetDetail(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader(node).Child("table", m_table);
}

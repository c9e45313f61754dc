#include "lumo/services/browse/TableDetail.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

TableDetail::TableDetail(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("table", m_tableReference);
  in.In("attributeReferences").Children("attribute", m_attributeReferences);
  in.In("standardAttributeReferences").Children("attribute", m_standardAttributeReferences);
  in.In("tableFilters").Children("tableFilter", m_tableFilters, TableFilters::FromString);
}

void TableDetail::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:table", m_tableReference);
  out.Into("zbt:attributeReferences").Children("zbt:attribute", m_attributeReferences);
}

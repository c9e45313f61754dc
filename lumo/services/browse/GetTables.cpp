#include "lumo/services/browse/GetTables.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"
#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<GetTables::eAttributeSelector> kWords[] = {
    {GetTables::NonMetaAttributes, "NonMetaAttributes"},
    {GetTables::MetaAttributes, "MetaAttributes"},
    {GetTables::StandardAttributes, "StandardAttributes"},
};

}  // namespace

std::string GetTables::AttributeSelector_ToString(eAttributeSelector selector) {
  return lumo::WordOf(kWords, selector, "");
}

void GetTables::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("brow:dbKey", m_dbKey);
  out.ChildIfSet("brow:tableFilter", m_tableFilter, TableFilters::ToString);
  out.List("brow:attributeSelectors", "brow:attributeSelector", m_attributeSelectors,
           AttributeSelector_ToString);
}

GetTablesResponse::GetTablesResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("tableDetails").Children("table", m_tableDetails);
}

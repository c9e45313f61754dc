#include "lumo/services/browse/GetSubsets.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

void GetSubsets::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("brow:table", m_table);
  out.List("zbt:subsetReferences", "zbt:subset", m_subsetReferences);
}

GetSubsetsResponse::GetSubsetsResponse(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.In("subsetDetails").Children("subsetDetail", m_subsetDetails);
}

#include "lumo/values/FloatFunctionalSeriesDataType.h"

FloatFunctionalSeriesDataType::FloatFunctionalSeriesDataType(XmlNode<char> const* node)
    : DataValue(node) {
  lumo::NodeReader(node).Child("Graph", m_graph);
}

void FloatFunctionalSeriesDataType::CreateXMLNode(XmlNode<char>* node) const {
  FloatFunctionalDataType::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  out.Attribute("zbt:isNotApplicable", false);
  out.Child("zbt:Graph", m_graph);
}

#include "lumo/values/FloatFunctionalGraph.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

Series::Series(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("XYPoints", m_xyPoints);
  in.Child("Constraints", m_constraints);
}

void Series::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:Constraints", m_constraints);
  out.Child("zbt:XYPoints", m_xyPoints);
  out.Attribute("zbt:decoration", GraphDecoration::ToString(m_decoration));
}

FloatFunctionalGraph::FloatFunctionalGraph(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Attribute("HideGraph", m_hideGraph);
  in.Attribute("LogarithmicYAxis", m_logarithmicYAxis);
  in.Children("Series", m_series);
}

void FloatFunctionalGraph::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Attribute("zbt:HideGraph", m_hideGraph);
  out.Attribute("zbt:LogarithmicYAxis", m_logarithmicYAxis);
  out.Children("zbt:Series", m_series);
}

FloatFunctionalSeriesGraph::FloatFunctionalSeriesGraph(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader(node).Child("XAxisParameter", m_xAxisParameter);
}

void FloatFunctionalSeriesGraph::CreateXMLNode(XmlNode<char>* node) const {
  FloatFunctionalGraph::CreateXMLNode(node);
  lumo::NodeWriter(node).Child("zbt:XAxisParameter", m_xAxisParameter);
}

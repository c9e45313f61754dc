#include "lumo/services/search/SearchValue.h"

#include "lumo/xml/NodeWriter.h"

void UnittedRealCriterionValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  if (!m_unit.empty()) out.Attribute("sear:unit", m_unit);
  out.Text(m_value);
}

void BetweenSearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Named("sear:", m_lowEnd);
  out.Named("sear:", m_highEnd);
}

void BetweenDateTimesSearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("sear:lowEnd", m_lowEnd);
  out.Child("sear:highEnd", m_highEnd);
}

void ContainsAllSearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Children("sear:discrete", AccessValues());
}

void ContainsAnySearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Children("sear:discrete", AccessValues());
}

void ContainsSearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Text(m_value);
}

void DoesNotContainSearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Text(m_value);
}

void ExistsSearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Text("true");
}

void DoesNotExistSearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Text("true");  // only the name of the element says the contrary
}

void ExactlySearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Text(m_value);
}

void TabularColumnContainsSearchValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Text(m_value);
  out.Attribute("sear:tabularColumn", m_colName);
}

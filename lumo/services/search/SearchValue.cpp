#include "lumo/services/search/SearchValue.h"

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

void MultiValuedDiscreteCriterion::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter(node).Children("sear:discrete", m_values);
}

void lumo::ExistenceCriterion::CreateXMLNode(XmlNode<char>* node) const {
  NodeWriter(node).Text("true");
}

void TabularColumnContainsSearchValue::CreateXMLNode(XmlNode<char>* node) const {
  SingleValueCriterion::CreateXMLNode(node);
  lumo::NodeWriter(node).Attribute("sear:tabularColumn", m_colName);
}

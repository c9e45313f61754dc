#include "lumo/values/FloatFunctionalValues.h"

#include "lumo/values/IDataValue.h"
#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"

FloatFunctionalValue::FloatFunctionalValue(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("Constraints", m_constraints);
  in.Child("Estimated", m_estimated, lumo::StrictBooleanFromText);
}

void FloatFunctionalValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  out.Child("zbt:Constraints", m_constraints);
  out.Child("zbt:Estimated", m_estimated);
}

FloatFunctionalPointValue::FloatFunctionalPointValue(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader(node).Child("Value", m_value);
}

void FloatFunctionalPointValue::CreateXMLNode(XmlNode<char>* node) const {
  FloatFunctionalValue::CreateXMLNode(node);
  lumo::NodeWriter(node).Child("zbt:Value", m_value);
}

FloatFunctionalRangeValue::FloatFunctionalRangeValue(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Child("Low", m_lowValue);
  in.Child("High", m_highValue);
}

void FloatFunctionalRangeValue::CreateXMLNode(XmlNode<char>* node) const {
  FloatFunctionalValue::CreateXMLNode(node);
  lumo::NodeWriter out(node);
  out.Child("zbt:Low", m_lowValue);
  out.Child("zbt:High", m_highValue);
}

FloatFunctionalValues::FloatFunctionalValues(XmlNode<char> const* node) {
  lumo::NodeReader(node).ForEach("Value", [this](XmlNode<char> const& value) {
    lumo::NodeReader const in(&value);
    if (in.TypeContains("FloatFunctionalRangedValue")) {
      AddValue(FloatFunctionalRangeValue::CreateOne(&value));
    } else if (in.TypeContains("FloatFunctionalPointValue")) {
      AddValue(FloatFunctionalPointValue::CreateOne(&value));
    }
  });
}

FloatFunctionalValue::eValueKind FloatFunctionalValues::GetType() const {
  bool const isTyped = !m_values.empty() && m_values.front();
  return isTyped ? m_values.front()->GetType() : FloatFunctionalValue::None;
}

void FloatFunctionalValues::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  for (SmartPtr<FloatFunctionalValue> const& value : m_values) {
    lumo::NodeWriter item = out.Into("zbt:Value");
    if (!value) continue;
    item.Attribute("xsi:type", "zbt:" + value->GetNodeType());
    value->CreateXMLNode(item.Node());
  }
}
